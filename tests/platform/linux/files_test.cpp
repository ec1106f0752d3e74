// Files on Linux: links and devices in the way of an output file, and what a full disk does.
#include "platform/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>

#include "platform/whole_file.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

class LinuxFiles : public testing::Test {
 protected:
  scratch::Directory folder;
};

TEST_F(LinuxFiles, OnlyFilesAndLinksToThemAreRemoved) {
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

TEST_F(LinuxFiles, AFullDiskTruncatesInSilence) {
  OutputFile file;
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

TEST_F(LinuxFiles, ReplacingKeepsLinksAndPermissions) {
  folder.Write("target.ini", "old");
  chmod(folder.Path("target.ini").c_str(), 0640);
  std::filesystem::create_symlink("target.ini", folder.Path("link.ini"));
  EXPECT_TRUE(ReplaceWholeFile(folder.Path16("link.ini"), "new"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Path("link.ini")));
  EXPECT_EQ(folder.Read("target.ini"), "new");
  struct stat status = {};
  stat(folder.Path("target.ini").c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777, 0640U);
}

}  // namespace
}  // namespace hdi
