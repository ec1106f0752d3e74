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

  [[nodiscard]] std::u16string Path(const std::string& name) const {
    return Utf16((sandbox.Out() / name).string());
  }
  [[nodiscard]] std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(sandbox.Out())) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
  }
  void PlotPage() {
    ASSERT_EQ(device.StartPage(), 1);
    ASSERT_EQ(device.Polyline({{10, 10}, {4000, 6000}, {4000, 10}}), 1);
    ASSERT_EQ(device.EndPage(), 1);
  }

  Driver driver = FirstDriver();
  Device device{driver};
};

TEST_F(JobTest, EndingIsAppendedUnlessItIsThere) {
  const std::pair<const char*, const char*> cases[] = {
      {"b", "b.pdf"},         {"c.PDF", "c.PDF"},   {"d.pDf", "d.pDf"}, {"e.pdfx", "e.pdfx.pdf"},
      {"f.dwg", "f.dwg.pdf"}, {"gpdf", "gpdf.pdf"}, {".pdf", ".pdf"}};
  device.Close();
  for (const auto& [output, file] : cases) {
    Device other(driver);
    other.Open();
    EXPECT_EQ(other.StartDoc(Path(output).c_str()), 1) << output;
    EXPECT_EQ(other.EndDoc(), 1);
    EXPECT_EQ(Files(), std::vector<std::string>{file});
    EXPECT_TRUE(IsSoundPdf(sandbox.Out() / file));
    fs::remove(sandbox.Out() / file);
  }
}

TEST_F(JobTest, ShortOutputNamesGetTheEnding) {
  const fs::path before = fs::current_path();
  fs::current_path(sandbox.Out());
  EXPECT_EQ(device.StartDoc(u"ab"), 1);
  EXPECT_EQ(device.EndDoc(), 1);
  fs::current_path(before);
  EXPECT_EQ(Files(), std::vector<std::string>{"ab.pdf"});
}

TEST_F(JobTest, DefaultOutputStandsAsItIs) {
  device.Close();
  for (const char16_t* output : {static_cast<const char16_t*>(nullptr), u""}) {
    Device other(driver);
    other.Open();
    const std::u16string file = Path("x");
    other.SetDefaultOutput(file.c_str());
    EXPECT_EQ(other.StartDoc(output), 1);
    EXPECT_EQ(other.EndDoc(), 1);
    EXPECT_EQ(Files(), std::vector<std::string>{"x"});
  }
}

TEST_F(JobTest, NamesBeyondAscii) {
  EXPECT_EQ(device.StartDoc((Path("Pl") + u"än \u5716 \U0001F4D0").c_str()), 1);
  PlotPage();
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_EQ(Files(), std::vector<std::string>{"Plän \u5716 \U0001F4D0.pdf"});
}

TEST_F(JobTest, FileIsEmptyUntilTheEndAndAnOldOneIsReplaced) {
  const fs::path file = sandbox.Out() / "old.pdf";
  std::ofstream(file) << std::string(100000, 'x');
  EXPECT_EQ(device.StartDoc(Path("old").c_str()), 1);
  EXPECT_EQ(fs::file_size(file), 0U);
  PlotPage();
  EXPECT_EQ(fs::file_size(file), 0U);
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_LT(fs::file_size(file), 100000U);
  EXPECT_TRUE(IsSoundPdf(file));
  EXPECT_EQ(PageCount(file), 1);
}

TEST_F(JobTest, JobWithoutPages) {
  EXPECT_EQ(device.StartDoc(Path("none").c_str()), 1);
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "none.pdf"));
  EXPECT_EQ(PageCount(sandbox.Out() / "none.pdf"), 0);
}

TEST_F(JobTest, PagesWithoutObjects) {
  EXPECT_EQ(device.StartDoc(Path("empty").c_str()), 1);
  for (int i = 0; i < 3; ++i) {
    device.StartPage();
    device.EndPage();
  }
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "empty.pdf"));
  EXPECT_EQ(PageCount(sandbox.Out() / "empty.pdf"), 3);
}

TEST_F(JobTest, FinishedJobTakesNoSecondDocument) {
  EXPECT_EQ(device.StartDoc(Path("one").c_str()), 1);
  PlotPage();
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_EQ(device.StartDoc(Path("two").c_str()), 0);
  EXPECT_EQ(Files(), std::vector<std::string>{"one.pdf"});
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "one.pdf"));

  // A host that clears the mark may go on; the list still holds what was plotted.
  device.SetStarted(0);
  EXPECT_EQ(device.StartDoc(Path("two").c_str()), 1);
  PlotPage();
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "two.pdf"));
  EXPECT_EQ(PageCount(sandbox.Out() / "two.pdf"), 2);
}

TEST_F(JobTest, FreshDeviceOfTheSameDriverStartsAnEmptyList) {
  EXPECT_EQ(device.StartDoc(Path("one").c_str()), 1);
  PlotPage();
  PlotPage();
  EXPECT_EQ(device.EndDoc(), 1);
  device.Close();
  Device other(driver);
  other.Open();
  EXPECT_EQ(other.StartDoc(Path("two").c_str()), 1);
  other.StartPage();
  other.EndPage();
  EXPECT_EQ(other.EndDoc(), 1);
  EXPECT_EQ(PageCount(sandbox.Out() / "two.pdf"), 1);
}

TEST_F(JobTest, OutputThatCannotBeReplacedLeavesEverythingAndSaysSo) {
  const fs::path taken = sandbox.Out() / "taken.pdf";
  fs::create_directory(taken);
  std::ofstream(taken / "inside") << "kept";
  testing::internal::CaptureStderr();
  EXPECT_EQ(device.StartDoc(Path("taken").c_str()), 0);
  const std::string message = testing::internal::GetCapturedStderr();
  EXPECT_NE(message.find(taken.string() + " Being used, please specify other files name."), std::string::npos)
      << message;
  EXPECT_TRUE(fs::exists(taken / "inside"));
  EXPECT_NE(device.Job(), nullptr);
  EXPECT_EQ(device.Started(), 0);

  testing::internal::CaptureStderr();
  EXPECT_EQ(device.StartDoc(Path("missing/x").c_str()), 0);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("missing/x.pdf Being used"), std::string::npos);
  EXPECT_EQ(Files(), std::vector<std::string>{"taken.pdf"});

  EXPECT_EQ(device.StartDoc(Path("free").c_str()), 1) << "the job is still open";
  PlotPage();
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "free.pdf"));
}

TEST_F(JobTest, MessageIsInTheUsersLanguage) {
  const std::pair<const char*, const char*> cases[] = {
      {"zh_TW.UTF-8", " 正在使用.請指定其他文件名."},
      {"zh_CN.UTF-8", " 正在使用.请指定其它文件名."},
      {"ja_JP.UTF-8", " Being used, please specify other files name."},
      {"de_DE.UTF-8", " Being used, please specify other files name."}};
  for (const auto& [locale, text] : cases) {
    sandbox.SetVariable("LC_ALL", locale);
    testing::internal::CaptureStderr();
    EXPECT_EQ(device.StartDoc(Path("missing/x").c_str()), 0);
    EXPECT_NE(testing::internal::GetCapturedStderr().find(std::string("x.pdf") + text), std::string::npos)
        << locale;
  }
}

TEST_F(JobTest, ViewerIsStartedAndNotWaitedFor) {
  sandbox.AddTool("xdg-open", "sleep 1\necho \"viewer $# [$1]\" >> \"$HDI_TEST_LOG\"\n");
  WriteAt<int32_t>(driver.Settings(), kOpenAfterPlot, 1);
  EXPECT_EQ(device.StartDoc(Path("with blank; $HOME").c_str()), 1);
  PlotPage();
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(900));
  const std::string file = (sandbox.Out() / "with blank; $HOME.pdf").string();
  EXPECT_TRUE(IsSoundPdf(file));
  EXPECT_TRUE(sandbox.WaitForLog("viewer 1 [" + file + "]")) << sandbox.Log();
}

TEST_F(JobTest, ViewerStaysAwayWhenTurnedOff) {
  driver.Call<int32_t>(19, uint32_t{189}, int64_t{0});
  EXPECT_EQ(device.StartDoc(Path("quiet").c_str()), 1);
  PlotPage();
  EXPECT_EQ(device.EndDoc(), 1);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_EQ(sandbox.Log(), "");
}

TEST_F(JobTest, MissingViewerIsNoFailure) {
  WriteAt<int32_t>(driver.Settings(), kOpenAfterPlot, 1);
  sandbox.SetVariable("PATH", "/nowhere");
  EXPECT_EQ(device.StartDoc(Path("noviewer").c_str()), 1);
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_GT(fs::file_size(sandbox.Out() / "noviewer.pdf"), 0U);
}

TEST_F(JobTest, FullDiskTruncatesInSilence) {
  EXPECT_EQ(device.StartDoc(Path("full").c_str()), 1);
  device.StartPage();
  std::vector<Point> points;
  points.reserve(20000);
  for (int i = 0; i < 20000; ++i) points.push_back({double(i * 7919 % 4000), double(i * 104729 % 6000)});
  device.Polyline(points);
  device.EndPage();

  constexpr rlim_t kRoom = 10000;
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit = {kRoom, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  testing::internal::CaptureStderr();
  const int32_t result = device.EndDoc();
  const std::string message = testing::internal::GetCapturedStderr();
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(message, "");
  EXPECT_EQ(fs::file_size(sandbox.Out() / "full.pdf"), kRoom);
}

// What goes through the table in DevStartDoc, in order, and what DevEndDoc calls past it.
std::vector<std::string> steps;
std::array<void*, kPositionCount> real;
void* expectedDevice = nullptr;

void SpyPrepare(void* device) {
  steps.emplace_back("prepare");
  reinterpret_cast<void (*)(void*)>(real[2])(device);
}
void* SpyOpenOutput(void* device) {
  steps.emplace_back(device == expectedDevice ? "open output" : "?");
  return reinterpret_cast<void* (*)(void*)>(real[7])(device);
}
int32_t SpyCreateDocument(void** device) {
  steps.emplace_back(*device == expectedDevice && ReadAt<int32_t>(*device, 32) == 1 ? "create document"
                                                                                    : "?");
  return reinterpret_cast<int32_t (*)(void**)>(real[5])(device);
}
int32_t SpyFinish(void**) {
  steps.emplace_back("finish");
  return 0;
}
void SpyNormalize(void*, void*) { steps.emplace_back("normalize"); }

TEST_F(JobTest, StartGoesThroughTheTableAndEndDoesNot) {
  std::copy_n(device.Table(), kPositionCount, real.begin());
  device.Table()[2] = reinterpret_cast<void*>(&SpyPrepare);
  device.Table()[5] = reinterpret_cast<void*>(&SpyCreateDocument);
  device.Table()[6] = reinterpret_cast<void*>(&SpyFinish);
  device.Table()[7] = reinterpret_cast<void*>(&SpyOpenOutput);
  SlotPatch patch(driver);
  patch.Set(22, reinterpret_cast<void*>(&SpyNormalize));
  steps.clear();
  expectedDevice = device.Object();

  EXPECT_EQ(device.StartDoc(Path("steps").c_str()), 1);
  EXPECT_EQ(steps, (std::vector<std::string>{"prepare", "open output", "normalize", "create document"}));
  steps.clear();
  EXPECT_EQ(device.StartPage(), 1);
  EXPECT_TRUE(steps.empty()) << "a page without a record of its own takes the sheet as it stands";
  const Record page = driver.Copy();
  EXPECT_EQ(device.StartPage(page.data()), 1);
  EXPECT_EQ(steps, std::vector<std::string>{"normalize"});
  device.EndPage();
  steps.clear();
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_TRUE(steps.empty());
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "steps.pdf"));
}

TEST_F(JobTest, CreateAndFinishDoNothingBeforeTheStart) {
  void* object = device.Object();
  void** address = &object;
  reinterpret_cast<int32_t (*)(void**)>(device.Table()[5])(address);
  reinterpret_cast<int32_t (*)(void**)>(device.Table()[6])(address);
  EXPECT_EQ(device.Started(), 0);
  EXPECT_EQ(device.StartDoc(Path("later").c_str()), 1);
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "later.pdf"));
}

}  // namespace
}  // namespace border
