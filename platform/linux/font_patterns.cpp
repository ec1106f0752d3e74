// Converts LOGFONTW fields to fontconfig. The numbers are those of the platform's published headers.
#include "platform/linux/font_patterns.h"

#include <algorithm>
#include <cstring>

#include "platform/unicode.h"

namespace hdi {
namespace {

constexpr int32_t kRegular = 400;

constexpr uint8_t kSymbolCharSet = 2;

// The language that a character set is for. The default set (1) has none: it follows the user's language.
struct CharSetLanguage {
  uint8_t charSet;
  const char* language;
};
constexpr CharSetLanguage kLanguages[] = {
    {kAnsiCharSet, "en"}, {128, "ja"},  // SHIFTJIS
    {129, "ko"},                        // HANGUL
    {130, "ko"},                        // JOHAB
    {134, "zh-cn"},                     // GB2312
    {136, "zh-tw"},                     // CHINESEBIG5
    {161, "el"},                        // GREEK
    {162, "tr"},                        // TURKISH
    {163, "vi"},                        // VIETNAMESE
    {177, "he"},                        // HEBREW
    {178, "ar"},                        // ARABIC
    {186, "lt"},                        // BALTIC
    {204, "ru"},                        // RUSSIAN
    {222, "th"},                        // THAI
    {238, "cs"},                        // EASTEUROPE
};

const char* LanguageOf(uint8_t charSet) {
  for (const CharSetLanguage& entry : kLanguages) {
    if (entry.charSet == charSet) return entry.language;
  }
  return nullptr;
}

// lfPitchAndFamily: pitch in the two lowest bits, family class in the upper half.
enum Pitch : uint8_t { kPitchMask = 3, kFixedPitch = 1, kVariablePitch = 2 };
enum FamilyClass : uint8_t {
  kFamilyMask = 0xF0,
  kRoman = 0x10,
  kSwiss = 0x20,
  kModern = 0x30,
  kScript = 0x40,
  kDecorative = 0x50
};

// The substitute for a missing family.
const char* GenericFamily(uint8_t pitchAndFamily) {
  if ((pitchAndFamily & kPitchMask) == kFixedPitch) return "monospace";
  switch (pitchAndFamily & kFamilyMask) {
    case kRoman:
      return "serif";
    case kModern:
      return "monospace";
    case kScript:
      return "cursive";
    case kDecorative:
      return "fantasy";
    default:
      return "sans-serif";
  }
}

const FcChar8* Text(const char* text) { return reinterpret_cast<const FcChar8*>(text); }

// A weak name ranks below everything else in the request.
void AddWeakFamily(FcPattern* pattern, const char* family) {
  FcValue value = {};
  value.type = FcTypeString;
  value.u.s = Text(family);
  FcPatternAddWeak(pattern, FC_FAMILY, value, FcTrue);
}

}  // namespace

FontRequest::FontRequest(const LOGFONTW& font)
    : weight(font.lfWeight > 0 ? font.lfWeight : kRegular),
      isItalic(font.lfItalic != 0),
      charSet(font.lfCharSet),
      pitchAndFamily(font.lfPitchAndFamily) {
  const char16_t* from = font.lfFaceName;
  const char16_t* const end = std::find(from, from + name.size() - 1, u'\0');
  if (*from == u'@') ++from;
  std::copy(from, end, name.begin());
  nameLength = static_cast<size_t>(end - from);
}

bool FontRequest::AsksForCharSet() const { return charSet != kAnsiCharSet && LanguageOf(charSet) != nullptr; }

bool FontRequest::AsksForSymbols() const { return charSet == kSymbolCharSet; }

OwnedPattern PatternFor(const FontRequest& request, FcConfig* config) {
  OwnedPattern pattern(FcPatternCreate());
  if (pattern == nullptr) return nullptr;
  if (request.nameLength != 0) {
    FcPatternAddString(pattern.get(), FC_FAMILY, Text(ToUtf8(request.Name()).c_str()));
  }
  AddWeakFamily(pattern.get(), GenericFamily(request.pitchAndFamily));
  FcPatternAddInteger(pattern.get(), FC_WEIGHT, FcWeightFromOpenType(std::min(request.weight, 1000)));
  FcPatternAddInteger(pattern.get(), FC_SLANT, request.isItalic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
  const uint8_t pitch = request.pitchAndFamily & kPitchMask;
  if (pitch == kFixedPitch) FcPatternAddInteger(pattern.get(), FC_SPACING, FC_MONO);
  if (pitch == kVariablePitch) FcPatternAddInteger(pattern.get(), FC_SPACING, FC_PROPORTIONAL);
  if (const char* language = LanguageOf(request.charSet); language != nullptr) {
    FcPatternAddString(pattern.get(), FC_LANG, Text(language));
  }
  if (FcConfigSubstitute(config, pattern.get(), FcMatchPattern) == FcFalse) return nullptr;
  FcDefaultSubstitute(pattern.get());
  return pattern;
}

bool CoversCharacterSet(FcPattern* face, const FontRequest& request) {
  const char* language = LanguageOf(request.charSet);
  FcLangSet* languages = nullptr;
  if (language == nullptr || FcPatternGetLangSet(face, FC_LANG, 0, &languages) != FcResultMatch) return true;
  const FcLangResult covered = FcLangSetHasLang(languages, Text(language));
  // Here a territory stands for a different script.
  const bool isExact = std::strchr(language, '-') != nullptr;
  return covered == FcLangEqual || (!isExact && covered != FcLangDifferentLang);
}

}  // namespace hdi
