// Settings files and profiles: parsing, editing and replacing. On Windows the system reads settings, and
// profiles are only used for paper lists.
#include "platform/settings_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <utility>

#include "platform/profile.h"
#include "platform/unicode.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
constexpr int32_t kMin = std::numeric_limits<int32_t>::min();

std::string Utf16(const std::u16string& text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text)
    bytes.append({static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)});
  return bytes;
}

class SettingsFile : public testing::Test {
 protected:
  std::u16string Read(const std::u16string& key, const std::u16string& fallback = u"fallback") const {
    return ReadSetting(u"Dev", key, fallback, iniFile);
  }
  bool Write(const std::u16string& section, const std::u16string& key, const std::u16string& value) const {
    return WriteSetting(section, key, value, iniFile);
  }

  scratch::Directory folder;
  std::u16string iniFile = folder.Path16("ü.ini");
  Profile profile;
};

TEST_F(SettingsFile, ParsesProfiles) {
  const std::pair<std::string, std::optional<std::u16string>> kCases[] = {
      {"[DÄV]\r\nKey=v\r\n", u"v"},
      {"[däv]\nkEY=v\r", u"v"},
      {" \t[ Däv ] tail\n \tKey \t= \tv w\t \n", u"v w"},
      {"[Däv]\nKey=  \n", u""},
      {"[Däv]\nKey\n", std::nullopt},
      {"Key=v\n[Däv]\n", std::nullopt},
      {"[Other]\nKey=v\n[Däv]\n", std::nullopt},
      {"[Däv\nKey=v\n", std::nullopt},
      {"", std::nullopt},
      {"[Däv]\nKey=\" v \"", u" v "},
      {"[Däv]\nKey=\"'v'\"", u"'v'"},
      {"[Däv]\nKey=\"v'", u"\"v'"},
      {"[Däv]\nKey=\"", u"\""},
      {"[Däv]\nKey=a ; b", u"a ; b"},
      {"[Däv]\nKey=a:b=c", u"a:b=c"},
      {"[Däv]\nKey=v\n  more\n", u"v"},
      {"[Däv]\n;" + std::string(16371, 'x') + "\nKey=v", u"v"},  // the value starts at byte 16,385
      {"[Däv]\n#Key=w\n;Key=x\n  ; Key=y\nKey=v\n", u"v"},
      {"[Däv]\nKey=1\nKey=2\n[Däv]\nKey=3\n", u"1"},
      {"[Däv]\nOther=1\n[Däv]\nKey=3\n", std::nullopt},
      {"\xEF\xBB\xBF[Däv]\nKey=ü建", u"ü建"},
      {Utf16(u"[DÄV]\r\nKey= \"ü\U0001F600\" \r\n"), u"ü\U0001F600"},
      {Utf16(u"[Däv]\nKey=v") + "x", u"v"}};  // half a unit at the end
  for (const auto& [content, value] : kCases) {
    folder.Write("ü.ini", content);
    EXPECT_EQ(profile.Load(iniFile), LoadResult::kLoaded);
    EXPECT_EQ(profile.Find(u"däv", u"Key"), value) << content;
  }
}

TEST_F(SettingsFile, EditingAProfileKeepsAllOtherBytes) {
  const std::pair<std::string, std::string> kCases[] = {
      {"; c\n\n[a]\nx = 1 ; y\n[DEV]\n  KEY \t= old\nz=\xFF\n\n; tail",
       "; c\n\n[a]\nx = 1 ; y\n[DEV]\n  KEY \t=new\nz=\xFF\n\n; tail"},
      {"[Dev]\na=1\n\n; of the next\n[b]\n", "[Dev]\na=1\nKey=new\n\n; of the next\n[b]\n"},
      {"[a]\r\nx=1", "[a]\r\nx=1\r\n[Dev]\r\nKey=new\r\n"},
      {"", "[Dev]\nKey=new\n"},
      {"\xEF\xBB\xBF[Dev]\n", "\xEF\xBB\xBF[Dev]\nKey=new\n"},
      {Utf16(u"[ü]\r\nx=\xD800\r\n"), Utf16(u"[ü]\r\nx=\xD800\r\n[Dev]\r\nKey=new\r\n")}};
  for (const auto& [before, after] : kCases) {
    folder.Write("ü.ini", before);
    EXPECT_EQ(profile.Load(iniFile), LoadResult::kLoaded);
    EXPECT_TRUE(profile.Set(u"Dev", u"Key", u"new") && profile.Save(iniFile)) << before;
    EXPECT_EQ(folder.Read("ü.ini"), after);
  }
  // A section is removed with its entries and the blank line after them.
  folder.Write("ü.ini", "[a]\n\n[Dev]\nx=1\n\n; c\n[b]\ny=2\n[c]\n");
  EXPECT_EQ(profile.Load(iniFile), LoadResult::kLoaded);
  EXPECT_TRUE(profile.RemoveSection(u"dev") && profile.RemoveSection(u"b") && profile.Save(iniFile));
  EXPECT_FALSE(profile.RemoveSection(u"dev"));
  EXPECT_EQ(folder.Read("ü.ini"), "[a]\n\n; c\n[c]\n");
}

TEST_F(SettingsFile, ValuesAreReadBackOrRefused) {
  folder.Write("ü.ini", Utf16(u"[a]\r\n"));
  for (const char16_t* value : {u"", u" v ", u"\"v\"", u"'", u"''", u"a;b=c:[d]", u"ü建\U0001F600"}) {
    EXPECT_TRUE(Write(u"Dev", u"Key", value));
    EXPECT_EQ(Read(u"Key"), value);
  }
  const std::string before = folder.Read("ü.ini");
  EXPECT_FALSE(Write(u"Dev", u"Key", u"a\nb"));
  EXPECT_FALSE(Write(u"Dev", u"a=b", u"v"));
  EXPECT_FALSE(Write(u"Dev", u";Key", u"v"));
  EXPECT_FALSE(Write(u"Dev\n", u"Key", u"v"));
  EXPECT_EQ(folder.Read("ü.ini"), before);

  // Values are truncated to the length of the platform's buffer.
  folder.Write("ü.ini", "[Dev]\nKey=\"" + std::string(5000, 'a') + "\"");
  EXPECT_EQ(Read(u"Key"), std::u16string(255, u'a'));
  EXPECT_EQ(Read(u"No", std::u16string(300, u'b')), std::u16string(255, u'b'));
}

TEST_F(SettingsFile, IsCreatedWithItsDirectoriesAndReplacedWhole) {
  const std::u16string directory = folder.Path16("new/deep");
  const std::u16string file = folder.Path16("new/deep/s.ini");
  EXPECT_TRUE(WriteSetting(u"Dev", u"Key", u"v", file));
  EXPECT_EQ(ReadSetting(u"Dev", u"Key", u"", file), u"v");
  EXPECT_TRUE(profile.Set(u"Dev", u"Key", u"v") && profile.Save(folder.Path16("other/s.ini")));
  EXPECT_EQ(folder.Read("other/s.ini"), "[Dev]\nKey=v\n");

  EXPECT_FALSE(WriteSetting(u"Dev", u"Key", u"v", directory));
  EXPECT_FALSE(profile.Save(directory));
  EXPECT_EQ(profile.Load(directory), LoadResult::kUnreadable);
  EXPECT_EQ(profile.Load(folder.Path16("none/s.ini")), LoadResult::kMissing);
  EXPECT_EQ(profile.Load(directory + file), LoadResult::kMissing);  // an absolute path appended to another
  EXPECT_EQ(Read(u"Key"), u"fallback");
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path())) {
    EXPECT_EQ(entry.path().string().find(".tmp"), std::string::npos) << entry.path();
  }
}

TEST_F(SettingsFile, ListsItsSections) {
  EXPECT_TRUE(SettingSections(iniFile).empty());
  folder.Write("ü.ini", "[b]\nKey=1\n;[c]\n[a]\n[B]\n");
  EXPECT_EQ(SettingSections(iniFile), (std::vector<std::u16string>{u"b", u"a", u"B"}));
  std::string many;
  for (int i = 0; i < 2000; ++i) many += "[section " + std::to_string(i) + "]\nKey=v\n";
  folder.Write("ü.ini", many);
  EXPECT_EQ(SettingSections(iniFile).size(), 2000U);
  EXPECT_EQ(SettingSections(iniFile).back(), u"section 1999");
}

TEST(SettingToInt, FollowsTheCRuntime) {
  const std::pair<const char16_t*, int32_t> kCases[] = {{u"", 0},
                                                        {u" \t\r\n\v\f12x", 12},
                                                        {u"-7", -7},
                                                        {u"+7", 7},
                                                        {u"- 7", 0},
                                                        {u"--7", 0},
                                                        {u"abc", 0},
                                                        {u"1.9", 1},
                                                        {u"007", 7},
                                                        {u"0x10", 0},
                                                        {u"/1", 0},
                                                        {u"1:", 1},
                                                        {u"\x0E", 0},
                                                        {u"2147483648", kMax},
                                                        {u"-2147483648", kMin},
                                                        {u"-2147483649", kMin},
                                                        {u"99999999999999999999999", kMax}};
  for (const auto& [text, number] : kCases) EXPECT_EQ(SettingToInt(text), number) << ToUtf8(text);
}

}  // namespace
}  // namespace hdi
