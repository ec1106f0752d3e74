// A job from its output's name to the finished file, and the states in between.
#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <fstream>
#include <thread>

#include "border.h"

namespace border {
namespace {
namespace fs = std::filesystem;

class JobTest : public BorderTest {
 protected:
  JobTest() { device.Open(); }

  [[nodiscard]] std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(sandbox.Out())) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }
  // A document of one page.
  static void Plot(Device& target, const std::u16string& path) {
    ASSERT_EQ(target.StartDoc(path.c_str()), 1);
    target.PlotPage();
    EXPECT_EQ(target.EndDoc(), 1);
  }

  Driver driver = FirstDriver();
  Device device{driver};
};

TEST_F(JobTest, OutputNames) {
  struct Case {
    const char16_t* output;  // within out/, null for the device's default
    const char* file;
  };
  const Case cases[] = {{u"b", "b.pdf"},       {u"c.PDF", "c.PDF"},
                        {u"d.pDf", "d.pDf"},   {u"e.pdfx", "e.pdfx.pdf"},
                        {u"gpdf", "gpdf.pdf"}, {u".pdf", ".pdf"},
                        {nullptr, "as it is"}, {u"Plän \U0001F4D0", "Plän \U0001F4D0.pdf"}};
  const fs::path before = fs::current_path();
  fs::current_path(sandbox.Out());
  device.Close();
  for (const Case& test : cases) {
    Device other(driver);
    other.Open();
    other.SetDefaultOutput(u"as it is");
    EXPECT_EQ(other.StartDoc(test.output), 1) << test.file;
    EXPECT_EQ(other.EndDoc(), 1);
    EXPECT_EQ(Files(), std::vector<std::string>{test.file});
    fs::remove(test.file);
  }
  fs::current_path(before);
}

TEST_F(JobTest, FileIsEmptyUntilTheEndAndAnOldOneIsReplaced) {
  const fs::path file = sandbox.Out() / "old.pdf";
  std::ofstream(file) << std::string(100000, 'x');
  EXPECT_EQ(device.StartDoc(sandbox.OutPath("old").c_str()), 1);
  device.PlotPage();
  EXPECT_EQ(fs::file_size(file), 0U);
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_LT(fs::file_size(file), 100000U);
  EXPECT_TRUE(IsSoundPdf(file));
}

TEST_F(JobTest, OneDocumentForOneOpening) {
  Plot(device, sandbox.OutPath("one"));
  EXPECT_EQ(device.StartDoc(sandbox.OutPath("two").c_str()), 0);
  EXPECT_EQ(Files(), std::vector<std::string>{"one.pdf"});

  device.SetStarted(0);
  Plot(device, sandbox.OutPath("two"));
  EXPECT_EQ(PageCount(sandbox.Out() / "two.pdf"), 2) << "the list still holds what was plotted";
  device.Close();

  Device other(driver);
  other.Open();
  Plot(other, sandbox.OutPath("three"));
  EXPECT_EQ(PageCount(sandbox.Out() / "three.pdf"), 1) << "a fresh device starts an empty list";
}

TEST_F(JobTest, OutputThatCannotBeReplacedLeavesEverythingAndSaysSo) {
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
    EXPECT_EQ(device.StartDoc(sandbox.OutPath(output).c_str()), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), sandbox.Out().string() + message + "\n");
  }
  EXPECT_TRUE(fs::exists(taken / "inside"));
  EXPECT_EQ(device.Started(), 0);
  Plot(device, sandbox.OutPath("free"));
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "free.pdf")) << "the job was still open";
}

TEST_F(JobTest, ViewerIsStartedAndNotWaitedFor) {
  Plot(device, sandbox.OutPath("quiet"));
  device.Close();

  sandbox.AddTool("xdg-open", "sleep 1\necho \"viewer $# [$1]\" >> \"$HDI_TEST_LOG\"\n");
  driver.Call<int32_t>(19, uint32_t{189}, int64_t{1});
  Device other(driver);
  other.Open();
  const auto begin = std::chrono::steady_clock::now();
  Plot(other, sandbox.OutPath("with blank; $HOME"));
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(900));
  const std::string file = (sandbox.Out() / "with blank; $HOME.pdf").string();
  EXPECT_TRUE(IsSoundPdf(file));
  EXPECT_TRUE(sandbox.WaitForLog("viewer 1 [" + file + "]\n"));
  EXPECT_EQ(sandbox.Log().find("quiet"), std::string::npos) << "turned off for the first file";
}

TEST_F(JobTest, FullDiskTruncatesInSilence) {
  EXPECT_EQ(device.StartDoc(sandbox.OutPath("full").c_str()), 1);
  device.StartPage();
  std::vector<Point> points;
  for (int i = 0; i < 20000; ++i) points.push_back({double(i * 7919 % 4000), double(i * 104729 % 6000)});
  device.Polyline(points);
  device.EndPage();

  constexpr rlim_t kRoom = 10000;
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit limit = {kRoom, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  testing::internal::CaptureStderr();
  const int32_t result = device.EndDoc();
  const std::string message = testing::internal::GetCapturedStderr();
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(message, "");
  EXPECT_EQ(fs::file_size(sandbox.Out() / "full.pdf"), kRoom);
}

std::vector<std::string> steps;
std::array<void*, kPositionCount> real;

void SpyPrepare(void* device) {
  steps.emplace_back("prepare");
  reinterpret_cast<void (*)(void*)>(real[2])(device);
}
void* SpyOpenOutput(void* device) {
  steps.emplace_back("open output");
  return reinterpret_cast<void* (*)(void*)>(real[7])(device);
}
int32_t SpyCreateDocument(void** device) {
  steps.emplace_back("create document " + std::to_string(ReadAt<int32_t>(*device, 32)));
  return reinterpret_cast<int32_t (*)(void**)>(real[5])(device);
}
int32_t SpyFinish(void**) {
  steps.emplace_back("finish");
  return 0;
}
void SpyNormalize(void*, void*) { steps.emplace_back("normalize"); }

TEST_F(JobTest, StartGoesThroughTheTableAndEndDoesNot) {
  std::copy_n(device.Table(), kPositionCount, real.begin());
  void* object = device.Object();
  for (const size_t position : {5U, 6U}) reinterpret_cast<int32_t (*)(void**)>(real[position])(&object);
  EXPECT_EQ(device.Started(), 0) << "creating and finishing do nothing before the start";

  device.Table()[2] = reinterpret_cast<void*>(&SpyPrepare);
  device.Table()[5] = reinterpret_cast<void*>(&SpyCreateDocument);
  device.Table()[6] = reinterpret_cast<void*>(&SpyFinish);
  device.Table()[7] = reinterpret_cast<void*>(&SpyOpenOutput);
  SlotPatch patch(driver);
  patch.Set(22, reinterpret_cast<void*>(&SpyNormalize));
  steps.clear();
  EXPECT_EQ(device.StartDoc(sandbox.OutPath("steps").c_str()), 1);
  EXPECT_EQ(std::exchange(steps, {}),
            (std::vector<std::string>{"prepare", "open output", "normalize", "create document 1"}));
  EXPECT_EQ(device.StartPage(), 1);
  EXPECT_TRUE(steps.empty()) << "a page without a record of its own takes the sheet as it stands";
  const Record page = driver.Copy();
  EXPECT_EQ(device.StartPage(page.data()), 1);
  EXPECT_EQ(std::exchange(steps, {}), std::vector<std::string>{"normalize"});
  device.EndPage();
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_TRUE(steps.empty());
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "steps.pdf"));
}

}  // namespace
}  // namespace border
