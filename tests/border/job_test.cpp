// A job from its output's name to the finished file, and the states in between.
#include <algorithm>
#include <array>
#include <fstream>

#include "tests/border/border.h"

namespace border {
namespace {
namespace fs = std::filesystem;

class JobTest : public BorderTest {
 protected:
  JobTest() { device.Open(); }

  [[nodiscard]] std::vector<std::u16string> Files() const {
    std::vector<std::u16string> names;
    for (const auto& entry : fs::directory_iterator(sandbox.Out())) {
      names.push_back(entry.path().filename().u16string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  // A document of one page.
  static void Plot(Device& target, const std::u16string& path) {
    ASSERT_EQ(target.StartDocument(path.c_str()), 1);
    target.PlotPage();
    EXPECT_EQ(target.EndDocument(), 1);
  }

  Driver driver = FirstDriver();
  Device device{driver};
};

TEST_F(JobTest, OutputNames) {
  struct Case {
    const char16_t* output;  // within out/, null for the device's default
    const char16_t* file;
  };
  const Case cases[] = {{u"b", u"b.pdf"},       {u"c.PDF", u"c.PDF"},
                        {u"d.pDf", u"d.pDf"},   {u"e.pdfx", u"e.pdfx.pdf"},
                        {u"gpdf", u"gpdf.pdf"}, {u".pdf", u".pdf"},
                        {nullptr, u"as it is"}, {u"Plän \U0001F4D0", u"Plän \U0001F4D0.pdf"}};
  const fs::path before = fs::current_path();
  fs::current_path(sandbox.Out());
  device.Close();
  for (const Case& test : cases) {
    Device other(driver);
    other.Open();
    other.SetDefaultOutput(u"as it is");
    EXPECT_EQ(other.StartDocument(test.output), 1) << fs::path(test.file);
    EXPECT_EQ(other.EndDocument(), 1);
    EXPECT_EQ(Files(), std::vector<std::u16string>{test.file});
    fs::remove(test.file);
  }
  fs::current_path(before);
}

TEST_F(JobTest, FileIsEmptyUntilTheEndAndAnOldOneIsReplaced) {
  const fs::path file = sandbox.Out() / "old.pdf";
  std::ofstream(file) << std::string(100000, 'x');
  EXPECT_EQ(device.StartDocument(sandbox.OutPath("old").c_str()), 1);
  device.PlotPage();
  EXPECT_EQ(fs::file_size(file), 0U);
  EXPECT_EQ(device.EndDocument(), 1);
  EXPECT_LT(fs::file_size(file), 100000U);
  EXPECT_TRUE(IsSoundPdf(file));
}

TEST_F(JobTest, OneDocumentForOneOpening) {
  Plot(device, sandbox.OutPath("one"));
  EXPECT_EQ(device.StartDocument(sandbox.OutPath("two").c_str()), 0);
  EXPECT_EQ(Files(), std::vector<std::u16string>{u"one.pdf"});

  device.SetStarted(0);
  Plot(device, sandbox.OutPath("two"));
  EXPECT_EQ(PageCount(sandbox.Out() / "two.pdf"), 2) << "the list still holds what was plotted";
  device.Close();

  Device other(driver);
  other.Open();
  Plot(other, sandbox.OutPath("three"));
  EXPECT_EQ(PageCount(sandbox.Out() / "three.pdf"), 1) << "a fresh device starts an empty list";
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
  EXPECT_EQ(device.StartDocument(sandbox.OutPath("steps").c_str()), 1);
  EXPECT_EQ(std::exchange(steps, {}),
            (std::vector<std::string>{"prepare", "open output", "normalize", "create document 1"}));
  EXPECT_EQ(device.StartPage(), 1);
  EXPECT_TRUE(steps.empty()) << "a page without a record of its own takes the sheet as it stands";
  const Record page = driver.Copy();
  EXPECT_EQ(device.StartPage(page.data()), 1);
  EXPECT_EQ(std::exchange(steps, {}), std::vector<std::string>{"normalize"});
  device.EndPage();
  EXPECT_EQ(device.EndDocument(), 1);
  EXPECT_TRUE(steps.empty());
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "steps.pdf"));
}

}  // namespace
}  // namespace border
