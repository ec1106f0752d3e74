// Files, the process's environment and text conversion.
#include "platform/files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <system_error>

#include "platform/environment.h"
#include "platform/unicode.h"
#include "tests/support/scratch.h"

#if defined(_WIN32)
#include <windows.h>

#include "platform/windows/wide.h"
#else
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "platform/whole_file.h"
#endif

namespace hdi {
namespace {

class Files : public testing::Test {
 protected:
  void ExpectRemoval(const char* name, bool exists, bool removed) const {
    EXPECT_EQ(FileExists(folder.Path16(name)), exists) << name;
    EXPECT_EQ(RemoveFile(folder.Path16(name)), removed) << name;
    EXPECT_EQ(FileExists(folder.Path16(name)), exists && !removed) << name;
  }

  scratch::Directory folder;
  OutputFile file;
};

TEST_F(Files, OpenKeepsTheContentAndWriteOverwritesIt) {
  EXPECT_THROW(file.Write("x", 1), std::system_error);  // not open
  folder.Write("ü.pdf", "0123456789");
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
  ExpectRemoval("file ü", true, true);
  ExpectRemoval("dir", true, false);
  ExpectRemoval("none", false, true);
  ExpectRemoval("none/none", false, true);
}

#if defined(_WIN32)

TEST_F(Files, FilesOpenElsewhereAreUnchanged) {
  folder.Write("held ü.pdf", "content");
  const std::u16string path = folder.Path16("held ü.pdf");
  const HANDLE held = CreateFileW(Wide(path), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  ExpectRemoval("held ü.pdf", true, false);
  EXPECT_FALSE(file.Open(path));
  CloseHandle(held);
  EXPECT_EQ(folder.Read("held ü.pdf"), "content");

  EXPECT_TRUE(file.Open(path));
  OutputFile second;
  EXPECT_FALSE(second.Open(path)) << "exclusive access";
  ExpectRemoval("held ü.pdf", true, false);
  file.Close();
  EXPECT_TRUE(second.Open(path));
}

TEST_F(Files, DevicesTakeOutputButAreNotFiles) {
  EXPECT_FALSE(FileExists(u"NUL"));
  ASSERT_TRUE(file.Open(u"NUL"));
  EXPECT_NO_THROW(file.Write("x", 1));
  EXPECT_TRUE(FileExists(u"C:\\"));
}

#else

TEST_F(Files, LinksAreRemovedAndDevicesAreNotFiles) {
  folder.Write("kept", "x");
  std::filesystem::create_symlink("kept", folder.Path("link"));
  std::filesystem::create_symlink("nowhere", folder.Path("dangling"));
  std::filesystem::create_symlink("/dev/null", folder.Path("device"));
  ExpectRemoval("link", true, true);
  ExpectRemoval("dangling", true, true);
  ExpectRemoval("device", false, false);
  EXPECT_EQ(folder.Read("kept"), "x");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("device")));
}

TEST_F(Files, FullDiskTruncatesSilently) {
  ASSERT_TRUE(file.Open(folder.Path16("cut.pdf")));
  const std::string block(3000, 'x');
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit limit = {4096, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  file.Write(block.data(), block.size());
  file.Write(block.data(), block.size());  // partly fits
  file.Write(block.data(), block.size());  // does not fit; the signal would end the process
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(folder.Read("cut.pdf"), std::string(4096, 'x'));
  sigset_t pending;
  sigpending(&pending);
  EXPECT_EQ(sigismember(&pending, SIGXFSZ), 0);
  sigset_t blocked;
  sigprocmask(SIG_BLOCK, nullptr, &blocked);
  EXPECT_EQ(sigisemptyset(&blocked), 1);

  ASSERT_TRUE(file.Open(u"/dev/full"));
  EXPECT_NO_THROW(file.Write("x", 1));
}

TEST_F(Files, ReplacingKeepsLinksAndPermissions) {
  const std::string target = folder.Write("target.ini", "old");
  chmod(target.c_str(), 0640);
  std::filesystem::create_symlink("target.ini", folder.Path("link.ini"));
  EXPECT_TRUE(ReplaceWholeFile(folder.Path16("link.ini"), "new"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link.ini")));
  EXPECT_EQ(folder.Read("target.ini"), "new");
  EXPECT_EQ(std::filesystem::status(target).permissions(), std::filesystem::perms{0640});
}

#endif

TEST(Process, HasAFileAndVariables) {
  EXPECT_TRUE(std::filesystem::is_regular_file(ProcessFileName()));
  const scratch::Variable variable("HDI_TEST_VARIABLE", std::string(5000, 'v'));
  EXPECT_EQ(EnvironmentVariable(u"HDI_TEST_VARIABLE"), std::u16string(5000, u'v'));
  EXPECT_EQ(EnvironmentVariable(u"HDI_TEST_NONE"), u"");
  const scratch::Directory temporary;
  for (const char* name : {"TMPDIR", "TMP"}) scratch::SetVariable(name, temporary.Path().c_str());
  EXPECT_EQ(TemporaryDirectory(), temporary.Path16());
}

TEST(Unicode, ConvertsWellFormedTextAndReplacesTheRest) {
  const std::u16string text = std::u16string(u"a\0ü建\U0001F600", 6);
  EXPECT_EQ(ToUtf8(text), std::string("a\0\xC3\xBC\xE5\xBB\xBA\xF0\x9F\x98\x80", 11));
  EXPECT_EQ(ToUtf16(ToUtf8(text)), text);
  EXPECT_EQ(ToUtf8(u"\xD800x\xDC00"), "\xEF\xBF\xBDx\xEF\xBF\xBD");
  EXPECT_EQ(ToUtf16("\x80x\xC3"), u"\xFFFDx\xFFFD");
  EXPECT_EQ(ToUtf16("\xED\xA0\x80x").back(), u'x');  // a surrogate in UTF-8
  EXPECT_EQ(ToUtf16(""), u"");
  EXPECT_TRUE(SameName(u"däv 1", u"DÄV 1"));
  EXPECT_FALSE(SameName(u"a", u"ä"));
  EXPECT_FALSE(SameName(u"a", u"ab"));
  EXPECT_TRUE(SameName(u"", {}));
}

}  // namespace
}  // namespace hdi
