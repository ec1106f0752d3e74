// The text of settings files: what an edit leaves alone, and how a file is replaced.
#include "platform/profile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <utility>

#include "tests/support/scratch.h"

namespace hdi {
namespace {

std::string Utf16(const std::u16string& text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text)
    bytes.append({static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)});
  return bytes;
}

class ProfileFile : public testing::Test {
 protected:
  // Sets "Key" in "Dev" of `path`. Returns whether that was saved.
  static bool Set(const std::u16string& path) {
    Profile profile;
    return profile.Load(path) != LoadResult::kUnreadable && profile.Set(u"Dev", u"Key", u"new") &&
           profile.Save(path);
  }

  scratch::Directory folder;
};

TEST_F(ProfileFile, EditingKeepsEveryOtherByte) {
  const std::pair<std::string, std::string> cases[] = {
      {"; c\n\n[a]\nx = 1 ; y\n[DEV]\n  KEY \t= old\nz=\xFF\n\n; tail",
       "; c\n\n[a]\nx = 1 ; y\n[DEV]\n  KEY \t=new\nz=\xFF\n\n; tail"},
      {"[Dev]\na=1\n\n; of the next\n[b]\n", "[Dev]\na=1\nKey=new\n\n; of the next\n[b]\n"},
      {"[a]\r\nx=1", "[a]\r\nx=1\r\n[Dev]\r\nKey=new\r\n"},
      {"", "[Dev]\nKey=new\n"},
      {"\xEF\xBB\xBF[Dev]\n", "\xEF\xBB\xBF[Dev]\nKey=new\n"},
      {Utf16(u"[ü]\r\nx=\xD800\r\n"), Utf16(u"[ü]\r\nx=\xD800\r\n[Dev]\r\nKey=new\r\n")}};
  for (const auto& [before, after] : cases) {
    folder.Write("ü.ini", before);
    EXPECT_TRUE(Set(folder.Path16("ü.ini"))) << before;
    EXPECT_EQ(folder.Read("ü.ini"), after);
    Profile profile;
    EXPECT_EQ(profile.Load(folder.Path16("ü.ini")), LoadResult::kLoaded);
    EXPECT_EQ(profile.Find(u"dev", u"KEY"), u"new");
  }
}

TEST_F(ProfileFile, IsReadAsUtf8OrUtf16) {
  const std::pair<std::string, const char16_t*> cases[] = {
      {"[D\xC3\x84V]\nSchl\xC3\x9CSSEL=v", u"v"},
      {"\xEF\xBB\xBF[D\xC3\x84V]\nSchl\xC3\x9CSSEL=\xC3\xBC\xE5\xBB\xBA", u"ü建"},
      {Utf16(u"[DÄV]\r\nSchlÜssel= \"ü\U0001F600\" \r\n"), u"ü\U0001F600"},
      {Utf16(u"[DÄV]\nSchlÜssel=v") + "x", u"v"}};  // half a unit at the end
  for (const auto& [content, value] : cases) {
    folder.Write("s.ini", content);
    Profile profile;
    EXPECT_EQ(profile.Load(folder.Path16("s.ini")), LoadResult::kLoaded);
    EXPECT_EQ(profile.Find(u"däv", u"schlüssel"), value) << content;
  }
}

TEST_F(ProfileFile, IsReplacedInOneStepOrNotAtAll) {
  EXPECT_TRUE(Set(folder.Path16("new/deep/s.ini")));
  EXPECT_EQ(folder.Read("new/deep/s.ini"), "[Dev]\nKey=new\n");
  EXPECT_FALSE(Profile().Save(folder.Path16("new/deep")));
  EXPECT_TRUE(std::filesystem::is_directory(folder.Path("new/deep")));
  Profile profile;
  EXPECT_EQ(profile.Load(folder.Path16("new/deep")), LoadResult::kUnreadable);
  EXPECT_EQ(profile.Load(folder.Path16("none/s.ini")), LoadResult::kMissing);
  // A whole path behind another one.
  EXPECT_EQ(profile.Load(folder.Path16() + folder.Path16("s.ini")), LoadResult::kMissing);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path())) {
    EXPECT_EQ(entry.path().string().find(".tmp"), std::string::npos) << entry.path();
  }
}

}  // namespace
}  // namespace hdi
