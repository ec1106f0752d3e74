// Files and directories: what is in the way of an output file, and what a full disk does.
#include "platform/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <system_error>

#include "platform/unicode.h"
#include "tests/platform/scratch.h"

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
  EXPECT_EQ(folder.Read("ü.pdf"), "0123456789");
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

TEST_F(Files, OnlyFilesAndLinksToThemAreRemoved) {
  folder.Write("file", "x");
  folder.Write("kept", "x");
  std::filesystem::create_symlink("kept", folder.Path("link"));
  std::filesystem::create_symlink("nowhere", folder.Path("dangling"));
  std::filesystem::create_symlink("/dev/null", folder.Path("device"));
  MakeDirectory(folder.Path16("dir"));
  MakeDirectory(folder.Path16("dir"));
  const struct {
    const char* name;
    bool exists;
    bool removed;
  } kCases[] = {{"file", true, true}, {"link", true, true},     {"dangling", true, true},
                {"dir", true, false}, {"device", false, false}, {"none", false, true}};
  for (const auto& row : kCases) {
    EXPECT_EQ(FileExists(folder.Path16(row.name)), row.exists) << row.name;
    EXPECT_EQ(RemoveFile(folder.Path16(row.name)), row.removed) << row.name;
  }
  EXPECT_EQ(folder.Read("kept"), "x");
  EXPECT_FALSE(FileExists(folder.Path16("link")));
  EXPECT_TRUE(std::filesystem::is_directory(folder.Path("dir")));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("device")));
}

TEST_F(Files, AFullDiskTruncatesInSilenceAndOtherFailuresThrow) {
  OutputFile file;
  EXPECT_THROW(file.Write("x", 1), std::system_error);
  ASSERT_TRUE(file.Open(folder.Path16("cut.pdf")));
  const std::string block(3000, 'x');
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit limit = {4096, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  file.Write(block.data(), block.size());
  file.Write(block.data(), block.size());  // a part fits
  file.Write(block.data(), block.size());  // nothing fits, and the signal would end the process
  setrlimit(RLIMIT_FSIZE, &before);
  file.Close();
  EXPECT_EQ(folder.Read("cut.pdf"), std::string(4096, 'x'));
  sigset_t pending;
  sigpending(&pending);
  EXPECT_EQ(sigismember(&pending, SIGXFSZ), 0);

  ASSERT_TRUE(file.Open(u"/dev/full"));
  EXPECT_NO_THROW(file.Write("x", 1));
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

}  // namespace
}  // namespace hdi
