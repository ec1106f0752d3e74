// What Linux alone has of the border: the module's symbols, the desktop's programs, the terminal.
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

#include "tests/border/linux/tools.h"

namespace border {
namespace {
namespace fs = std::filesystem;

class DesktopTest : public BorderTest {
 protected:
  DesktopTest() { device.Open(); }

  static void Plot(Device& target, const std::u16string& path) {
    ASSERT_EQ(target.StartDocument(path.c_str()), 1);
    target.PlotPage();
    EXPECT_EQ(target.EndDocument(), 1);
  }
  // Waits a few seconds for the log to hold `text`.
  [[nodiscard]] bool WaitForLog(const std::string& text) const {
    for (int i = 0; i < 100; ++i) {
      if (sandbox.Log().find(text) != std::string::npos) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
  }

  Driver driver = FirstDriver();
  Device device{driver};
};

TEST_F(DesktopTest, ExportsOneSymbolOnly) {
  const auto [status, output] = RunCommand("nm -D --defined-only '" HDI_DRIVER_PATH "'");
  ASSERT_EQ(status, 0) << output;
  EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1) << output;
  EXPECT_NE(output.find(" T IT_Driver\n"), std::string::npos) << output;
}

TEST_F(DesktopTest, ListFilesNameIsLowerCase) {
  fs::rename(sandbox.App() / "pdf.ini", sandbox.App() / "PDF.ini");
  const size_t before = list.Size();
  EXPECT_EQ(list.Create(), 1);
  EXPECT_EQ(list.Size(), before);
}

TEST_F(DesktopTest, ExistingFileIsAskedForWithoutACompanion) {
  const fs::path chosen = sandbox.Out() / "chosen.pdf";
  std::ofstream(chosen) << "old";
  SetUpUser(sandbox);
  sandbox.SetVariable("HDI_TEST_CHOICE", chosen.string());
  EXPECT_EQ(device.StartDocument(u"FILE:"), 0);
  EXPECT_EQ(sandbox.Log(), "save Drawing1.pdf\nquestion\n");
  EXPECT_EQ(ReadFile(chosen), "old");
  sandbox.SetVariable("HDI_TEST_QUESTION", "0");
  Plot(device, u"FILE:");
  EXPECT_TRUE(IsSoundPdf(chosen));
}

TEST_F(DesktopTest, OutputThatCannotBeReplacedLeavesEverythingAndSaysSo) {
  const fs::path taken = sandbox.Out() / "taken.pdf";
  fs::create_directory(taken);
  std::ofstream(taken / "inside") << "kept";
  struct Case {
    const char* locale;
    const char* output;
    const char* message;
  };
  for (const auto& [locale, output, message] :
       {Case{"C.UTF-8", "taken", "/taken.pdf Being used, please specify other files name."},
        Case{"zh_TW.UTF-8", "missing/x", "/missing/x.pdf 正在使用.請指定其他文件名."}}) {
    sandbox.SetVariable("LC_ALL", locale);
    testing::internal::CaptureStderr();
    EXPECT_EQ(device.StartDocument(sandbox.OutPath(output).c_str()), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), sandbox.Out().string() + message + "\n");
  }
  EXPECT_TRUE(fs::exists(taken / "inside"));
  EXPECT_EQ(device.Started(), 0);
  Plot(device, sandbox.OutPath("free"));
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "free.pdf")) << "the job was still open";
}

TEST_F(DesktopTest, ViewerIsStartedAndNotWaitedFor) {
  Plot(device, sandbox.OutPath("quiet"));
  device.Close();

  AddTool(sandbox, "xdg-open", "sleep 1\necho \"viewer $# [$1]\" >> \"$HDI_TEST_LOG\"\n");
  driver.Call<int32_t>(19, uint32_t{189}, int64_t{1});
  Device other(driver);
  other.Open();
  const auto begin = std::chrono::steady_clock::now();
  Plot(other, sandbox.OutPath("with blank; $HOME"));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(900));
  const std::string file = (sandbox.Out() / "with blank; $HOME.pdf").string();
  EXPECT_TRUE(IsSoundPdf(file));
  EXPECT_TRUE(WaitForLog("viewer 1 [" + file + "]\n"));
  EXPECT_EQ(sandbox.Log().find("quiet"), std::string::npos) << "turned off for the first file";
}

TEST_F(DesktopTest, FullDiskTruncatesInSilence) {
  EXPECT_EQ(device.StartDocument(sandbox.OutPath("full").c_str()), 1);
  device.StartPage();
  std::vector<Point> points;
  points.reserve(20000);
  for (int i = 0; i < 20000; ++i) points.push_back({double(i * 7919 % 4000), double(i * 104729 % 6000)});
  device.Polyline(points);
  device.EndPage();

  constexpr rlim_t kRoom = 10000;
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit limit = {kRoom, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  testing::internal::CaptureStderr();
  const int32_t result = device.EndDocument();
  const std::string message = testing::internal::GetCapturedStderr();
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(message, "");
  EXPECT_EQ(fs::file_size(sandbox.Out() / "full.pdf"), kRoom);
}

}  // namespace
}  // namespace border
