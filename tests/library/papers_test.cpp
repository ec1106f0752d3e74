// The paper functions and paper files.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/host_library.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

constexpr const char* kHead = "[Papers]\nFormat=1\n";

PaperSize MakePaper(int32_t id, const std::u16string& name, int32_t width, int32_t height) {
  PaperSize paper = {id, {}, width, height, 10, 20, 30, -40, {}};  // top, bottom, left, right
  std::ranges::copy(name, paper.name);
  return paper;
}

bool Same(const PaperSize& a, const PaperSize& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

class PaperList : public testing::Test {
 protected:
  // Returns a capability's values as an array of `Value`.
  template <typename Value>
  [[nodiscard]] std::vector<Value> Ask(int capability, size_t valuesEach = 1) const {
    const auto number = static_cast<uint16_t>(capability);
    const int32_t count = HT_DefaultDeviceCapabilities(number, nullptr, nullptr, file.c_str());
    std::vector<Value> values(static_cast<size_t>(count) * valuesEach);
    HT_DefaultDeviceCapabilities(number, reinterpret_cast<char*>(values.data()), nullptr, file.c_str());
    return values;
  }
  [[nodiscard]] std::vector<PaperSize> Papers() const { return Ask<PaperSize>(19); }
  int32_t Create(const PaperSize& paper) { return HT_DefaultCreatePaper(nullptr, paper, file.c_str()); }
  int32_t Modify(const PaperSize& paper) { return HT_DefaultModifyPaper(nullptr, paper, file.c_str()); }
  int32_t Delete(int32_t id) { return HT_DefaultDeletePaper(nullptr, id, file.c_str()); }

  scratch::Directory user;
  scratch::Directory application;
  scratch::Variable applicationPath{"HDI_APP_DIR", application.Path()};
  std::u16string file = user.Path16("papers.ini");
};

TEST_F(PaperList, BuiltInListIsUsedWithoutAFile) {
  const std::vector<PaperSize> papers = Papers();
  const PaperSize a4 = {9, {u'A', u'4'}, 2100, 2970, 170, 170, 50, 50, {}};
  EXPECT_TRUE(Same(*std::ranges::find(papers, 9, &PaperSize::id), a4));
  file = ToUtf16(HDI_BUILD_DIR) + u"/papers.ini";
  EXPECT_TRUE(std::ranges::equal(Papers(), papers, Same)) << "the installed file has the same list";
}

TEST_F(PaperList, CapabilitiesUseTheSameList) {
  user.Write("papers.ini",
             std::string(kHead) +
                 "[Paper 7]\nName=\xC3\xBC\nWidth=10\nHeight=20\n[paper 300]\nwidth=30\nheight=40\n");
  std::u16string names(128, u'\0');
  names[0] = u'ü';
  EXPECT_EQ(Ask<uint16_t>(2), (std::vector<uint16_t>{7, 300}));
  EXPECT_EQ(Ask<int32_t>(3, 2), (std::vector<int32_t>{10, 20, 30, 40}));
  EXPECT_TRUE(std::ranges::equal(Ask<char16_t>(16, 64), names));
  for (const auto& [capability, answer] : {std::pair(0, -1), {1, -1}, {18, -1}, {20, 0}, {21, -1}}) {
    EXPECT_EQ(HT_DefaultDeviceCapabilities(static_cast<uint16_t>(capability), nullptr, nullptr, u""), answer);
  }
}

TEST_F(PaperList, ChangesPersist) {
  file = user.Path16("deep/er/papers.ini");
  const size_t before = Papers().size();
  const PaperSize roll = MakePaper(256, u" \"Rolle ü\" = [9] ;", 9140, 20000);
  const PaperSize wide = MakePaper(1, u"Letter, wide", 2200, 3000);
  EXPECT_EQ(Create(roll), 256);
  EXPECT_EQ(Create(MakePaper(4711, u"", 1, 2)), 257);
  EXPECT_TRUE(Same(Papers().at(before), roll));
  EXPECT_EQ(Modify(wide), 1);
  EXPECT_EQ(Delete(256), 1);
  EXPECT_EQ(Create(roll), 256) << "the first free id";
  const std::vector<PaperSize> papers = Papers();
  ASSERT_EQ(papers.size(), before + 2);
  EXPECT_TRUE(Same(*std::ranges::find(papers, 1, &PaperSize::id), wide));
  EXPECT_EQ(papers.back().id, 256);

  EXPECT_EQ(Delete(999), 0);
  EXPECT_EQ(Modify(MakePaper(999, u"x", 1, 1)), 0);
  EXPECT_EQ(Modify(MakePaper(9, u"x", 1, 0)), 0);
  EXPECT_EQ(Create(MakePaper(0, u"x", 0, 5)), 0);
  EXPECT_EQ(Create(MakePaper(0, u"x\ny", 5, 5)), 0);
  EXPECT_TRUE(std::ranges::equal(Papers(), papers, Same));
  for (const PaperSize& paper : papers) EXPECT_EQ(Delete(paper.id), 1);
  EXPECT_TRUE(Papers().empty());
  file = u"/proc/none/papers.ini";
  EXPECT_EQ(Create(roll), 0);
}

TEST_F(PaperList, InstalledFileIsUsedUntilTheUserHasOne) {
  const std::string installed =
      std::string("; ours\n") + kHead + "\n[Paper 5]\nName=Only\nWidth=10\nHeight=20\n";
  application.Write("papers.ini", installed);
  ASSERT_EQ(Papers().size(), 1U);
  EXPECT_EQ(Create(MakePaper(0, u"Mine", 1, 2)), 256);
  EXPECT_EQ(Papers().size(), 2U);
  EXPECT_EQ(application.Read("papers.ini"), installed);
  EXPECT_TRUE(user.Read("papers.ini").starts_with(installed));
}

TEST_F(PaperList, BrokenFileIsReportedOnceAndKept) {
  const std::vector<PaperSize> builtIn = Papers();
  const std::string head = kHead;
  const std::string nine = head + "[Paper 9]\nWidth=1\n";
  const std::pair<std::string, const char*> cases[] = {{"", ":1: "},
                                                       {std::string("\0\xFF\x01garbage\n", 11), ":1: "},
                                                       {"[Papers]\nFormat=2\n", ":2: "},
                                                       {head + "[Paper 0]\nWidth=1\nHeight=1\n", ":3: "},
                                                       {head + "[Paper 32768]\nWidth=1\nHeight=1\n", ":3: "},
                                                       {nine + "\n[Paper 10]\nWidth=1\nHeight=1\n", ":3: "},
                                                       {nine + "Height=2.5\n", ":5: "},
                                                       {nine + "Width=2\n", ":5: "},
                                                       {head + "[Paper 9]\nWidht=1\n", ":4: "},
                                                       {nine + "Height=1\nnothing\n", ":6: "},
                                                       {nine + "Height=1\n[Paper 9]\n", ":6: "}};
  int number = 0;
  for (const auto& [content, line] : cases) {
    const std::string name = std::to_string(number++) + ".ini";  // each file is reported once a process
    user.Write(name, content);
    file = user.Path16(name);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(std::ranges::equal(Papers(), builtIn, Same)) << content;
    EXPECT_EQ(Create(MakePaper(0, u"x", 1, 1)) + Delete(9), 0);
    const std::string message = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(message.starts_with(user.Path(name) + line)) << content << message;
    EXPECT_EQ(std::ranges::count(message, '\n'), 1) << message;
    EXPECT_EQ(user.Read(name), content);
  }
}

}  // namespace
}  // namespace hdi
