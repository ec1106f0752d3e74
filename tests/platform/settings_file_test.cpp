// Settings files: what is read from which text, and what a write leaves alone.
#include "platform/settings_file.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/unicode.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

constexpr const char16_t* kFallback = u"fallback";

std::string Utf16(const std::u16string& text) {
  std::string bytes = "\xFF\xFE";
  for (const char16_t unit : text)
    bytes.append({static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)});
  return bytes;
}

class SettingsFile : public testing::Test {
 protected:
  // The value of "Key" in "Dev" of a file with this content.
  std::u16string Value(const std::string& content) {
    folder.Write("s.ini", content);
    return ReadSetting(u"Dev", u"Key", kFallback, iniFile);
  }

  scratch::Directory folder;
  std::u16string iniFile = folder.Path16("s.ini");
};

TEST_F(SettingsFile, ReadsTheFormOfPrivateProfiles) {
  const std::pair<const char*, const char16_t*> cases[] = {
      {"[Dev]\r\nKey=v\r\n", u"v"},
      {"[Dev]\nKey=v\r", u"v"},
      {"[dEV]\nkEY=v", u"v"},
      {" \t[ Dev ] tail\n \tKey \t= \tv w\t \n", u"v w"},
      {"[Dev]\nKey=  \n", u""},
      {"[Dev]\nKey\n", kFallback},
      {"Key=v\n[Dev]\n", kFallback},
      {"[Other]\nKey=v\n[Dev]\n", kFallback},
      {"[Dev\nKey=v\n", kFallback},
      {"", kFallback},
      {"[Dev]\nKey=\" v \"", u" v "},
      {"[Dev]\nKey=\"'v'\"", u"'v'"},
      {"[Dev]\nKey=\"v'", u"\"v'"},
      {"[Dev]\nKey=\"", u"\""},
      {"[Dev]\nKey=a ; b", u"a ; b"},
      {"[Dev]\nKey=a:b=c", u"a:b=c"},
      {"[Dev]\nKey=v\n  more\n", u"v"},
      {"[Dev]\n#Key=w\n;Key=x\n  ; Key=y\nKey=v\n", u"v"},
      {"[Dev]\nKey=1\nKey=2\n[Dev]\nKey=3\n", u"1"},
      {"[Dev]\nOther=1\n[Dev]\nKey=3\n", kFallback}};
  for (const auto& [content, value] : cases) EXPECT_EQ(Value(content), value) << content;
  EXPECT_EQ(Value(Utf16(u"[Dev]\r\nKey= \"ü\U0001F600\" \r\n")), u"ü\U0001F600");
  EXPECT_EQ(ReadSetting(u"däv", u"Key", kFallback, iniFile), kFallback);
  folder.Write("s.ini", Utf16(u"[däV]\r\nSchlüsSel=ü建"));
  EXPECT_EQ(ReadSetting(u"Däv", u"schlüssel", kFallback, iniFile), u"ü建");
}

TEST_F(SettingsFile, CutsValuesAtTheBuffersLength) {
  EXPECT_EQ(Value("[Dev]\nKey=" + std::string(255, 'a')), std::u16string(255, u'a'));
  EXPECT_EQ(Value("[Dev]\nKey=\"" + std::string(5000, 'a') + "\""), std::u16string(255, u'a'));
  EXPECT_EQ(ReadSetting(u"Dev", u"No", std::u16string(300, u'b'), iniFile), std::u16string(255, u'b'));
  EXPECT_EQ(ReadSetting(u"Dev", u"Key", kFallback, folder.Path16("none.ini")), kFallback);
}

TEST_F(SettingsFile, WhatIsWrittenIsReadBackOrRefused) {
  folder.Write("s.ini", Utf16(u"[a]\r\n"));
  for (const char16_t* value : {u"", u" v ", u"\"v\"", u"'", u"''", u"a;b=c:[d]", u"ü建\U0001F600"}) {
    EXPECT_TRUE(WriteSetting(u"Dev", u"Key", value, iniFile));
    EXPECT_EQ(ReadSetting(u"Dev", u"Key", kFallback, iniFile), value);
  }
  const std::string before = folder.Read("s.ini");
  EXPECT_FALSE(WriteSetting(u"Dev", u"Key", u"a\nb", iniFile));
  EXPECT_FALSE(WriteSetting(u"Dev", u"a=b", u"v", iniFile));
  EXPECT_FALSE(WriteSetting(u"Dev", u";Key", u"v", iniFile));
  EXPECT_FALSE(WriteSetting(u"Dev\n", u"Key", u"v", iniFile));
  EXPECT_EQ(folder.Read("s.ini"), before);
}

TEST_F(SettingsFile, WritingMakesWhatIsMissing) {
  const std::u16string file = folder.Path16("new/deep/s.ini");
  EXPECT_TRUE(WriteSetting(u"Dev", u"Key", u"v", file));
  EXPECT_EQ(ReadSetting(u"Dev", u"Key", kFallback, file), u"v");
  EXPECT_FALSE(WriteSetting(u"Dev", u"Key", u"v", folder.Path16("new/deep")));
}

TEST_F(SettingsFile, TellsItsSections) {
  folder.Write("s.ini", "[b]\nKey=1\n;[c]\n[a]\n[B]\n");
  EXPECT_EQ(SettingSections(iniFile), (std::vector<std::u16string>{u"b", u"a", u"B"}));
  std::string many;
  for (int i = 0; i < 2000; ++i) many += "[section " + std::to_string(i) + "]\nKey=v\n";
  folder.Write("s.ini", many);
  EXPECT_EQ(SettingSections(iniFile).size(), 2000U);
  EXPECT_EQ(SettingSections(iniFile).back(), u"section 1999");
  EXPECT_TRUE(SettingSections(folder.Path16("none.ini")).empty());
}

TEST(SettingToInt, FollowsTheCRuntime) {
  constexpr int32_t kMax = std::numeric_limits<int32_t>::max();
  constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
  const std::pair<const char16_t*, int32_t> cases[] = {{u"", 0},
                                                       {u" \t\r\n\v\f12x", 12},
                                                       {u"-7", -7},
                                                       {u"+7", 7},
                                                       {u"- 7", 0},
                                                       {u"--7", 0},
                                                       {u"abc", 0},
                                                       {u"1.9", 1},
                                                       {u"007", 7},
                                                       {u"0x10", 0},
                                                       {u"2147483648", kMax},
                                                       {u"-2147483648", kMin},
                                                       {u"-2147483649", kMin},
                                                       {u"99999999999999999999999", kMax}};
  for (const auto& [text, number] : cases) EXPECT_EQ(SettingToInt(text), number) << ToUtf8(text);
}

}  // namespace
}  // namespace hdi
