// The paper functions and the paper file behind them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/host_library.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

constexpr uint16_t kRecords = 19;
constexpr const char* kHead = "[Papers]\nFormat=1\n";

std::vector<PaperSize> Papers(const std::u16string& file) {
  std::vector<PaperSize> papers(
      static_cast<size_t>(HT_DefaultDeviceCapabilities(kRecords, nullptr, nullptr, file.c_str())));
  HT_DefaultDeviceCapabilities(kRecords, reinterpret_cast<char*>(papers.data()), nullptr, file.c_str());
  return papers;
}

const PaperSize* Find(const std::vector<PaperSize>& papers, int32_t id) {
  const auto found =
      std::find_if(papers.begin(), papers.end(), [id](const PaperSize& paper) { return paper.id == id; });
  return found == papers.end() ? nullptr : &*found;
}

PaperSize MakePaper(const std::u16string& name, int32_t width, int32_t height) {
  PaperSize paper = {};
  paper.id = 4711;
  std::copy(name.begin(), name.end(), paper.name);
  paper.width = width;
  paper.height = height;
  paper.top = 10;
  paper.bottom = 20;
  paper.left = 30;
  paper.right = -40;
  return paper;
}

bool SamePapers(const std::vector<PaperSize>& a, const std::vector<PaperSize>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(PaperSize)) == 0;
}

class PaperList : public testing::Test {
 protected:
  scratch::Directory user;
  scratch::Directory application;
  scratch::Variable applicationPath{"HDI_APP_DIR", application.Path()};
  std::u16string paperFile = user.Path16("papers.ini");
};

TEST_F(PaperList, BuiltInListServesWithoutAFile) {
  const std::vector<PaperSize> papers = Papers(paperFile);
  const PaperSize* a4 = Find(papers, 9);
  ASSERT_NE(a4, nullptr);
  EXPECT_EQ(a4->name, std::u16string(u"A4"));
  EXPECT_EQ(std::vector({a4->width, a4->height, a4->left, a4->top, a4->right, a4->bottom}),
            std::vector({2100, 2970, 50, 170, 50, 170}));
  // The file that is installed holds the same list.
  EXPECT_TRUE(SamePapers(Papers(ToUtf16(HDI_BUILD_DIR) + u"/papers.ini"), papers));
}

TEST_F(PaperList, CapabilitiesAnswerFromTheSameList) {
  user.Write("papers.ini",
             std::string(kHead) +
                 "[Paper 7]\nName=\xC3\xBC\nWidth=10\nHeight=20\n[paper 300]\nwidth=30\nheight=40\n");
  const auto ask = [&](int capability, char* output) {
    return HT_DefaultDeviceCapabilities(static_cast<uint16_t>(capability), output, nullptr,
                                        paperFile.c_str());
  };
  uint16_t ids[3] = {0, 0, 99};
  int32_t sizes[5] = {0, 0, 0, 0, 99};
  char16_t names[2][64];
  for (const int capability : {2, 3, 16, 19}) EXPECT_EQ(ask(capability, nullptr), 2);
  EXPECT_EQ(ask(2, reinterpret_cast<char*>(ids)), 2);
  EXPECT_EQ(ask(3, reinterpret_cast<char*>(sizes)), 2);
  EXPECT_EQ(ask(16, reinterpret_cast<char*>(names)), 2);
  EXPECT_EQ(std::vector<uint16_t>(ids, ids + 3), (std::vector<uint16_t>{7, 300, 99}));
  EXPECT_EQ(std::vector<int32_t>(sizes, sizes + 5), (std::vector<int32_t>{10, 20, 30, 40, 99}));
  EXPECT_EQ(names[0], std::u16string(u"ü"));
  EXPECT_EQ(names[1], std::u16string());
  EXPECT_EQ(ask(20, nullptr), 0);
  for (const int capability : {0, 1, 18, 21}) EXPECT_EQ(ask(capability, nullptr), -1);
}

TEST_F(PaperList, ChangesPersist) {
  const std::u16string file = user.Path16("deep/er/papers.ini");
  const size_t before = Papers(file).size();
  const PaperSize wanted = MakePaper(u" \"Rolle ü\" = [9] ;", 9140, 20000);
  EXPECT_EQ(HT_DefaultCreatePaper(nullptr, wanted, file.c_str()), 256);
  EXPECT_EQ(HT_DefaultCreatePaper(nullptr, MakePaper(u"", 1, 2), file.c_str()), 257);
  std::vector<PaperSize> papers = Papers(file);
  ASSERT_EQ(papers.size(), before + 2);
  PaperSize expected = wanted;
  expected.id = 256;
  EXPECT_EQ(std::memcmp(&papers[before], &expected, sizeof expected), 0);

  PaperSize changed = MakePaper(u"A4 wide", 2200, 3000);
  changed.id = 9;
  EXPECT_EQ(HT_DefaultModifyPaper(nullptr, changed, file.c_str()), 9);
  EXPECT_EQ(HT_DefaultDeletePaper(nullptr, 256, file.c_str()), 1);
  EXPECT_EQ(HT_DefaultCreatePaper(nullptr, wanted, file.c_str()), 256);  // the first that is free
  papers = Papers(file);
  ASSERT_EQ(papers.size(), before + 2);
  EXPECT_EQ(std::memcmp(Find(papers, 9), &changed, sizeof changed), 0);
  EXPECT_EQ(papers.back().id, 256);

  EXPECT_EQ(HT_DefaultDeletePaper(nullptr, 999, file.c_str()), 0);
  changed.id = 999;
  EXPECT_EQ(HT_DefaultModifyPaper(nullptr, changed, file.c_str()), 0);
  EXPECT_EQ(HT_DefaultCreatePaper(nullptr, MakePaper(u"x", 0, 5), file.c_str()), 0);
  EXPECT_EQ(HT_DefaultCreatePaper(nullptr, MakePaper(u"x\ny", 5, 5), file.c_str()), 0);
  EXPECT_EQ(HT_DefaultCreatePaper(nullptr, wanted, u"/proc/none/papers.ini"), 0);
  EXPECT_TRUE(SamePapers(Papers(file), papers));

  for (const PaperSize& paper : papers) {
    EXPECT_EQ(HT_DefaultDeletePaper(nullptr, paper.id, file.c_str()), 1);
  }
  EXPECT_TRUE(Papers(file).empty());
}

TEST_F(PaperList, TheInstalledFileServesUntilTheUserHasOne) {
  const std::string installed =
      std::string("; ours\n") + kHead + "\n[Paper 5]\nName=Only\nWidth=10\nHeight=20\n";
  application.Write("papers.ini", installed);
  ASSERT_EQ(Papers(paperFile).size(), 1U);
  EXPECT_EQ(HT_DefaultCreatePaper(nullptr, MakePaper(u"Mine", 1, 2), paperFile.c_str()), 256);
  EXPECT_EQ(Papers(paperFile).size(), 2U);
  EXPECT_EQ(application.Read("papers.ini"), installed);
  EXPECT_TRUE(user.Read("papers.ini").starts_with(installed));
}

TEST_F(PaperList, ABrokenFileIsReportedOnceAndKept) {
  const std::vector<PaperSize> builtIn = Papers(paperFile);
  const std::string head = kHead;
  const std::pair<std::string, const char*> cases[] = {
      {"", ":1: "},
      {std::string("\0\xFF\x01garbage\n", 11), ":1: "},
      {"[Papers]\nFormat=2\n", ":2: "},
      {head + "[Paper 0]\nWidth=1\nHeight=1\n", ":3: "},
      {head + "[Paper 9]\nWidth=1\n\n[Paper 10]\nWidth=1\nHeight=1\n", ":3: "},
      {head + "[Paper 9]\nWidth=1\nHeight=2.5\n", ":5: "},
      {head + "[Paper 9]\nWidth=1\nWidth=2\n", ":5: "},
      {head + "[Paper 9]\nWidht=1\n", ":4: "},
      {head + "[Paper 9]\nWidth=1\nHeight=1\nnothing\n", ":6: "},
      {head + "[Paper 9]\nWidth=1\nHeight=1\n[Paper 9]\n", ":6: "}};
  int number = 0;
  for (const auto& [content, line] : cases) {
    const std::string name = "broken" + std::to_string(number++) + ".ini";
    user.Write(name, content);
    const std::u16string file = user.Path16(name);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(SamePapers(Papers(file), builtIn)) << content;
    EXPECT_EQ(HT_DefaultCreatePaper(nullptr, MakePaper(u"x", 1, 1), file.c_str()), 0);
    EXPECT_EQ(HT_DefaultDeletePaper(nullptr, 9, file.c_str()), 0);
    const std::string message = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(message.starts_with(user.Path(name) + line)) << content << message;
    EXPECT_EQ(std::count(message.begin(), message.end(), '\n'), 1) << message;
    EXPECT_EQ(user.Read(name), content);
  }
}

}  // namespace
}  // namespace hdi
