// The string table by the user's language.
#include "platform/message_texts.h"

#include <gtest/gtest.h>

#include "platform/unicode.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

TEST(MessageTexts, LanguageComesFromTheLocale) {
  const std::u16string english = u" Being used, please specify other files name.";
  const std::u16string traditional = u" 正在使用.請指定其他文件名.";
  const std::u16string simplified = u" 正在使用.请指定其它文件名.";
  const struct {
    const char* all;
    const char* messages;
    const char* lang;
    std::u16string text;
  } kCases[] = {{nullptr, nullptr, nullptr, english},
                {nullptr, nullptr, "de_DE.UTF-8", english},
                {nullptr, nullptr, "zh_TW.UTF-8", traditional},
                {nullptr, nullptr, "zh_MO.big5", traditional},
                {nullptr, nullptr, "zh-Hant-SG", traditional},
                {nullptr, nullptr, "zh_SG@x", simplified},
                {nullptr, nullptr, "zh", simplified},
                {nullptr, nullptr, "zha_CN", english},
                {nullptr, "zh_TW", "zh_CN", traditional},
                {"zh_CN", "zh_TW", "C", simplified},
                {"", "", "zh_TW", traditional},
                {"C", "zh_TW", "zh_TW", english}};
  const auto optional = [](const char* text) {
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
  };
  for (const auto& row : kCases) {
    const scratch::Variable all("LC_ALL", optional(row.all));
    const scratch::Variable messages("LC_MESSAGES", optional(row.messages));
    const scratch::Variable lang("LANG", optional(row.lang));
    EXPECT_EQ(MessageText(kTextFileInUse), row.text)
        << testing::PrintToString(row.all) << ' ' << testing::PrintToString(row.lang);
  }
  const scratch::Variable all("LC_ALL", "ja_JP.UTF-8");
  EXPECT_EQ(MessageText(kTextBitmapFailed), u"ビットマップの創建を失敗しました!");
  EXPECT_EQ(MessageText(4008), u"");
}

}  // namespace
}  // namespace hdi
