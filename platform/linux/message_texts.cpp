// The string table and the user's language on Linux.
#include "platform/message_texts.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace hdi {
namespace {

enum class Language : uint8_t { kEnglish, kTraditionalChinese, kSimplifiedChinese, kJapanese };

struct TextRow {
  uint32_t id;
  std::array<std::u16string_view, 4> texts;  // by Language
};

constexpr TextRow kTexts[] = {
    {kTextFileInUse,
     {u" Being used, please specify other files name.", u" 正在使用.請指定其他文件名.",
      u" 正在使用.请指定其它文件名.", u" Being used, please specify other files name."}},
    {kTextBitmapFailed,
     {u"Fail to create bitmap!", u"建立點陣圖失敗!", u"创建位图失败!", u"ビットマップの創建を失敗しました!"}},
};

std::string LocaleName() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

// Accepts both "zh_TW.UTF-8" and "zh-Hant-TW".
Language UserLanguage() {
  std::string name = LocaleName();
  name.resize(std::min(name.find_first_of(".@"), name.size()));
  for (char& letter : name) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    if (letter == '-') letter = '_';
  }
  const std::string_view language = std::string_view(name).substr(0, name.find('_'));
  const std::string_view rest = std::string_view(name).substr(language.size());
  if (language == "ja") return Language::kJapanese;
  if (language != "zh") return Language::kEnglish;
  const bool traditional = rest == "_tw" || rest == "_hk" || rest == "_mo" || rest.starts_with("_hant");
  return traditional ? Language::kTraditionalChinese : Language::kSimplifiedChinese;
}

}  // namespace

std::u16string MessageText(uint32_t id) {
  for (const TextRow& row : kTexts) {
    if (row.id == id) return std::u16string(row.texts[static_cast<size_t>(UserLanguage())]);
  }
  return {};
}

}  // namespace hdi
