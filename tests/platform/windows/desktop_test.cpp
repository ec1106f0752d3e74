// The companion module and the string table.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>
#include <utility>

#include "platform/companion.h"
#include "platform/files.h"
#include "platform/message_texts.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

TEST(Companion, MissingModulesAndFunctionsAnswerNo) {
  const scratch::Directory folder;
  for (const std::string& directory : {folder.Path(), std::string(HDI_EMPTY_COMPANION_DIR)}) {
    const scratch::Variable application("HDI_APP_DIR", directory);
    int32_t noHint = 0;
    EXPECT_FALSE(AskReplaceExisting(nullptr, noHint));
    EXPECT_EQ(noHint, 0);
    EditProperties(nullptr, nullptr);
  }
}

TEST(Companion, TakesTheWindowAndAnswers) {
  const scratch::Variable application("HDI_APP_DIR", HDI_COMPANION_DIR);
  int32_t noHint = 0;
  EXPECT_TRUE(AskReplaceExisting(nullptr, noHint));
  EXPECT_EQ(noHint, 1);
  EXPECT_FALSE(AskReplaceExisting(nullptr, noHint));
  EXPECT_EQ(noHint, 1);

  int window = 0;
  void* noted = nullptr;
  EditProperties(&window, reinterpret_cast<HT_Driver*>(&noted));
  EXPECT_EQ(noted, &window);
  EXPECT_EQ(GetModuleHandleW(L"PDF-UI.dll"), nullptr);
}

TEST(MessageTexts, ComeFromTheModuleInTheUsersLanguage) {
  EXPECT_EQ(MessageText(kTextFileInUse), u"");
  const std::wstring driver = std::filesystem::path(HDI_DRIVER_PATH).make_preferred().wstring();
  ASSERT_NE(LoadLibraryExW(driver.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH), nullptr)
      << GetLastError();
  const std::pair<LANGID, const char16_t*> cases[] = {
      {MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), u" Being used, please specify other files name."},
      {MAKELANGID(LANG_CHINESE, SUBLANG_CHINESE_TRADITIONAL), u" 正在使用.請指定其他文件名."},
      {MAKELANGID(LANG_CHINESE, SUBLANG_CHINESE_SIMPLIFIED), u" 正在使用.请指定其它文件名."},
      {MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT), u" Being used, please specify other files name."},
      {MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), u" Being used, please specify other files name."}};
  for (const auto& [language, text] : cases) {
    SetThreadUILanguage(language);
    SetThreadLocale(MAKELCID(language, SORT_DEFAULT));
    EXPECT_EQ(MessageText(kTextFileInUse), text) << language;
  }
  SetThreadUILanguage(MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT));
  SetThreadLocale(MAKELCID(MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT), SORT_DEFAULT));
  EXPECT_EQ(MessageText(kTextBitmapFailed), u"ビットマップの創建を失敗しました!");
  EXPECT_EQ(MessageText(4008), u"");
}

}  // namespace
}  // namespace hdi
