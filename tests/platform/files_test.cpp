// Files and directories, the process, and conversions of text.
#include "platform/files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <system_error>

#include "platform/environment.h"
#include "platform/unicode.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

class Files : public testing::Test {
 protected:
  scratch::Directory folder;
};

TEST_F(Files, OpenKeepsTheContentAndWriteGoesOverIt) {
  folder.Write("ü.pdf", "0123456789");
  OutputFile file;
  EXPECT_FALSE(file.IsOpen());
  ASSERT_TRUE(file.Open(folder.Path16("ü.pdf")));
  file.Write("ab", 2);
  file.Write("c", 1);
  file.Close();
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(folder.Read("ü.pdf"), "abc3456789");

  ASSERT_TRUE(file.Open(folder.Path16("new.pdf")));
  EXPECT_TRUE(FileExists(folder.Path16("new.pdf")));
  EXPECT_FALSE(file.Open(folder.Path16("none/new.pdf")));
  EXPECT_FALSE(file.Open(folder.Path16()));
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(Files, OnlyFilesAreRemoved) {
  folder.Write("file ü", "x");
  MakeDirectory(folder.Path16("dir"));
  MakeDirectory(folder.Path16("dir"));
  const struct {
    const char* name;
    bool exists;
    bool removed;
  } kCases[] = {
      {"file ü", true, true}, {"dir", true, false}, {"none", false, true}, {"none/none", false, true}};
  for (const auto& row : kCases) {
    EXPECT_EQ(FileExists(folder.Path16(row.name)), row.exists) << row.name;
    EXPECT_EQ(RemoveFile(folder.Path16(row.name)), row.removed) << row.name;
  }
  EXPECT_FALSE(FileExists(folder.Path16("file ü")));
  EXPECT_TRUE(std::filesystem::is_directory(folder.Path("dir")));
}

TEST_F(Files, WritingWhereNothingIsOpenThrows) {
  OutputFile file;
  EXPECT_THROW(file.Write("x", 1), std::system_error);
}

TEST(Process, KnowsItsFileVariablesAndDirectories) {
  EXPECT_TRUE(std::filesystem::is_regular_file(ProcessFileName()));
  EXPECT_TRUE(std::filesystem::is_directory(TemporaryDirectory()));
  const scratch::Variable variable("HDI_TEST_VARIABLE", std::string(5000, 'v'));
  EXPECT_EQ(EnvironmentVariable(u"HDI_TEST_VARIABLE"), std::u16string(5000, u'v'));
  EXPECT_EQ(EnvironmentVariable(u"HDI_TEST_NONE"), u"");
}

TEST(Unicode, ConvertsWhatIsWellFormedAndMarksTheRest) {
  const std::u16string text = std::u16string(u"a\0ü建\U0001F600", 6);
  EXPECT_EQ(ToUtf8(text), std::string("a\0\xC3\xBC\xE5\xBB\xBA\xF0\x9F\x98\x80", 11));
  EXPECT_EQ(ToUtf16(ToUtf8(text)), text);
  EXPECT_EQ(ToUtf8(u"\xD800x\xDC00"), "\xEF\xBF\xBDx\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf16("\x80x\xC3"), u"\xFFFDx\xFFFD");
  EXPECT_EQ(ToUtf16("\xED\xA0\x80x").back(), u'x');  // a surrogate in UTF-8
  EXPECT_EQ(ToUtf16(""), u"");
}

TEST(Unicode, ComparesNamesWithoutRegardToCase) {
  EXPECT_TRUE(SameName(u"däv 1", u"DÄV 1"));
  EXPECT_FALSE(SameName(u"a", u"ä"));
  EXPECT_FALSE(SameName(u"a", u"ab"));
  EXPECT_TRUE(SameName(u"", {}));
}

}  // namespace
}  // namespace hdi
