// The border on Linux: the module's symbols, a replaced host library function, the desktop.
#include <chrono>
#include <cstdlib>
#include <thread>

#include "tests/border/border.h"

namespace border {
namespace {
namespace fs = std::filesystem;

std::u16string askedFile;

using DesktopTest = BorderTest;

TEST_F(DesktopTest, ExportsOnlyOneSymbol) {
  EXPECT_EQ(std::system("test \"$(nm -D --defined-only '" HDI_DRIVER_PATH "' | cut -c18-)\" = 'T IT_Driver'"),
            0);
}

TEST_F(DesktopTest, ListFileNameIsLowerCase) {
  sandbox.WriteList("[general]\n[A]\n");
  fs::rename(sandbox.App() / "pdf.ini", sandbox.App() / "PDF.ini");
  EXPECT_EQ(list.Create(), 1);
  EXPECT_EQ(list.Size(), 0U);
}

TEST_F(DesktopTest, CapabilitiesUseTheFilesOfTheSection) {
  const std::u16string app = (sandbox.App() / "").u16string();
  const std::u16string papers = (sandbox.User() / "p.ini").u16string();
  for (const auto& [keys, file] : {std::pair("PrivateFile=x.ini\n", u"x.ini"), {"", u"pdf.ini"}}) {
    const Driver driver = LastDriverOf(std::string("[general]\n[A]\nPaperFile=p.ini\n") + keys);
    const std::pair<uint16_t, std::u16string> cases[] = {{20, app + file}, {19, papers}, {21, u""}};
    for (const auto& [capability, asked] : cases) {
      askedFile.clear();
      driver.Call<int32_t>(13, capability, static_cast<uint8_t*>(nullptr), driver.Settings());
      EXPECT_EQ(askedFile, asked) << capability;
    }
  }
}

TEST_F(DesktopTest, OutputThatCannotBeReplacedIsReported) {
  fs::create_directory(sandbox.Out() / "taken.pdf");
  Device device(FirstDriver());
  device.Open();
  for (const char* output : {"taken.pdf", "missing/x.pdf"}) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(device.Plot(sandbox.OutPath(output)), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              (sandbox.Out() / output).string() + " Being used, please specify other files name.\n");
    EXPECT_EQ(device.Started(), 0);
  }
  EXPECT_EQ(device.Plot(sandbox.OutPath("free")), 1) << "the job was still open";
}

TEST_F(DesktopTest, ViewerIsStartedUnlessTurnedOff) {
  const Driver driver = FirstDriver();
  for (const auto& [name, open] :
       {std::pair("quiet.pdf", int64_t{0}), {"with blank; $HOME.pdf", int64_t{1}}}) {
    driver.Call<int32_t>(19, uint32_t{189}, open);
    Device device(driver);
    device.Open();
    EXPECT_EQ(device.Plot(sandbox.OutPath(name)), 1);
  }
  std::string log;
  for (int i = 0; i < 100 && log.empty(); ++i, log = sandbox.Log()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  EXPECT_EQ(log, "viewer 1 [" + (sandbox.Out() / "with blank; $HOME.pdf").string() + "]\n");
}

}  // namespace
}  // namespace border

// Preempts the host library's function for the module.
extern "C" __attribute__((visibility("default"))) int32_t HT_DefaultDeviceCapabilities(uint16_t capability,
                                                                                       char* output,
                                                                                       const void* devMode,
                                                                                       const char16_t* file) {
  border::askedFile = file;
  return reinterpret_cast<decltype(&HT_DefaultDeviceCapabilities)>(
      border::MemorySymbol("HT_DefaultDeviceCapabilities"))(capability, output, devMode, file);
}
