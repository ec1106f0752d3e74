// The string table in the user's language.
#include "platform/message_texts.h"

#include <gtest/gtest.h>

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
    std::u16string inUse;
    std::u16string noBitmap;
  } kRows[] = {{"", "", "", english, u"Fail to create bitmap!"},
               {"", "", "de_DE.UTF-8", english, u"Fail to create bitmap!"},
               {"", "", "zh_TW.UTF-8", traditional, u"建立點陣圖失敗!"},
               {"", "", "zh_MO.big5", traditional, u"建立點陣圖失敗!"},
               {"", "", "zh_HK", traditional, u"建立點陣圖失敗!"},
               {"", "", "zh-Hant-SG", traditional, u"建立點陣圖失敗!"},
               {"", "", "zh_SG@x", simplified, u"创建位图失败!"},
               {"", "", "ZH", simplified, u"创建位图失败!"},
               {"", "", "zha_CN", english, u"Fail to create bitmap!"},
               {"", "zh_TW", "zh_CN", traditional, u"建立點陣圖失敗!"},
               {"zh_CN", "zh_TW", "C", simplified, u"创建位图失败!"},
               {"C", "zh_TW", "zh_TW", english, u"Fail to create bitmap!"},
               {"", "", "ja_JP.UTF-8", english, u"ビットマップの創建を失敗しました!"}};
  for (const auto& row : kRows) {
    const scratch::Variable all("LC_ALL", row.all);
    const scratch::Variable messages("LC_MESSAGES", row.messages);
    const scratch::Variable lang("LANG", row.lang);
    EXPECT_EQ(MessageText(kTextFileInUse), row.inUse) << row.all << ' ' << row.lang;
    EXPECT_EQ(MessageText(kTextBitmapFailed), row.noBitmap) << row.all << ' ' << row.lang;
  }
  EXPECT_EQ(MessageText(4008), u"");
}

}  // namespace
}  // namespace hdi
