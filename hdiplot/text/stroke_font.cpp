#include "hdiplot/text/stroke_font.h"

#include <unicode/unorm2.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "hdiplot/geometry/clipping.h"
#include "hdiplot/text/text_codes.h"
#include "hdiplot/text/tolerance_signs.h"

namespace hdiplot {

namespace {

constexpr double kCell = 1;      // the advance of a monospaced font
constexpr double kBlank = 0.75;  // the advance of a character without a glyph

constexpr char16_t kNoBreakSpace = 0x00A0;

// The ASCII character that looks like `unit`, or 0.
char AsciiLookalike(char16_t unit) {
  switch (unit) {
    case kNoBreakSpace:
    case 0x3000:
      return ' ';
    case 0x2010:
    case 0x2011:
    case 0x2012:
    case 0x2013:
    case 0x2014:
    case 0x2212:
      return '-';
    case 0x2018:
    case 0x2019:
    case 0x2032:
      return '\'';
    case 0x201C:
    case 0x201D:
    case 0x2033:
      return '"';
    default:
      return 0;
  }
}

// The position of a letter in the Greek fonts, which have the alphabet from 'A' and from 'a' on. 0 for none.
char GreekPlace(char16_t unit) {
  constexpr std::u16string_view kCapitals = u"ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩ";
  constexpr std::u16string_view kSmall = u"αβγδεζηθικλμνξοπρστυφχψω";
  if (unit == u'ς') unit = u'σ';
  if (unit == 0x00B5) unit = u'μ';  // micro
  if (unit == 0x2126) unit = u'Ω';  // ohm
  if (unit == 0x2206) unit = u'Δ';  // increment
  const size_t capital = kCapitals.find(unit);
  if (capital != std::u16string_view::npos) return static_cast<char>('A' + capital);
  const size_t small = kSmall.find(unit);
  return small != std::u16string_view::npos ? static_cast<char>('a' + small) : char{0};
}

// The same for the Cyrillic font in alphabetical order, which lacks the last six letters.
char CyrillicPlace(char16_t unit) {
  constexpr char16_t kLetters = 26;
  if (unit >= u'А' && unit < u'А' + kLetters) return static_cast<char>('A' + (unit - u'А'));
  if (unit >= u'а' && unit < u'а' + kLetters) return static_cast<char>('a' + (unit - u'а'));
  return 0;
}

// The last six, in the Cyrillic font in phonetic order.
char TransliteratedPlace(char16_t unit) {
  constexpr std::u16string_view kLetters = u"ЪЫЬЭЮЯъыьюя";
  constexpr std::string_view kPlaces = "]$_CU^|&~u}";
  const size_t found = kLetters.find(unit);
  return found != std::u16string_view::npos ? kPlaces[found] : char{0};
}

// A copy of the character at `place`; null when the font has none.
std::unique_ptr<StrokeGlyph> GlyphAt(const std::vector<StrokeGlyph>& alphabet, char place) {
  const size_t index = static_cast<unsigned char>(place) - size_t{' '};
  if (place < ' ' || index >= alphabet.size()) return nullptr;
  // Places without a character are as wide as a space.
  if (alphabet[index].strokes.empty() && place != ' ') return nullptr;
  return std::make_unique<StrokeGlyph>(alphabet[index]);
}

}  // namespace

StrokeFont::StrokeFont(const std::string& hersheyName, bool monospaced, const OutlineFont* bigFont)
    : own_(ReadHersheyFont(hersheyName)),
      latin_(ReadHersheyFont("rowmans")),
      greek_(ReadHersheyFont("greeks")),
      cyrillic_(ReadHersheyFont("cyrilc_1")),
      transliterated_(ReadHersheyFont("cyrillic")),
      bigFont_(bigFont),
      monospaced_(monospaced) {
  Box letters;
  for (char letter = 'A'; letter <= 'z'; ++letter) {
    const bool isLetter = letter <= 'Z' || letter >= 'a';
    const StrokeGlyph* glyph = isLetter ? Strokes(static_cast<char16_t>(letter)) : nullptr;
    if (glyph == nullptr) continue;
    for (const auto& stroke : glyph->strokes) {
      for (const Vec2& p : stroke) letters.Add(p);
    }
  }
  if (letters.Empty()) return;
  ascent_ = std::max(1.0, letters.high.y);
  descent_ = std::min(0.0, letters.low.y);
}

bool StrokeFont::Exists(const std::string& hersheyName) {
  return hersheyName.find_first_of("/\\:") == std::string::npos && !ReadHersheyFont(hersheyName).empty();
}

double StrokeFont::Advance(char16_t unit) const {
  const StrokeGlyph* glyph = Strokes(unit);
  if (glyph != nullptr) return glyph->advance;
  return bigFont_ != nullptr ? bigFont_->Advance(unit) * BigFormOf(unit).scale : kBlank;
}

// The ideographs of a shape font stand on the base line, and their em is as high as the capitals.
StrokeFont::BigForm StrokeFont::BigFormOf(char16_t unit) const {
  constexpr double kBelowBaseLine = 0.12;  // of an ideograph's em, in outline fonts
  if (bigFont_ == nullptr || !IsIdeograph(unit)) return {};
  return {1 / bigFont_->EmSize(), kBelowBaseLine};
}

const StrokeGlyph* StrokeFont::Strokes(char16_t unit) const {
  return glyphs_
      .Get(unit,
           [this](char16_t u) {
             std::unique_ptr<StrokeGlyph> glyph = Make(u);
             if (glyph != nullptr && monospaced_) {
               const double shift = (kCell - glyph->advance) / 2;
               for (auto& stroke : glyph->strokes) {
                 for (Vec2& p : stroke) p.x += shift;
               }
               glyph->advance = kCell;
             }
             return glyph;
           })
      .get();
}

std::unique_ptr<StrokeGlyph> StrokeFont::Make(char16_t unit) const {
  if (auto sign = DrawnSign(unit)) return std::make_unique<StrokeGlyph>(std::move(*sign));
  const char ascii = unit < 0x80 ? static_cast<char>(unit) : AsciiLookalike(unit);
  if (ascii != 0) {
    auto glyph = GlyphAt(own_, ascii);
    return glyph != nullptr ? std::move(glyph) : GlyphAt(latin_, ascii);
  }
  if (auto sign = DrawnToleranceSign(unit)) return std::make_unique<StrokeGlyph>(std::move(*sign));
  if (auto glyph = GlyphAt(greek_, GreekPlace(unit))) return glyph;
  if (auto glyph = GlyphAt(cyrillic_, CyrillicPlace(unit))) return glyph;
  if (auto glyph = GlyphAt(transliterated_, TransliteratedPlace(unit))) return glyph;
  if (unit == u'э') {  // as large as the capital in the font
    auto glyph = GlyphAt(transliterated_, 'C');
    constexpr double kSmall = 14.0 / 21;
    if (glyph != nullptr) {
      glyph->advance *= kSmall;
      for (auto& stroke : glyph->strokes) {
        for (Vec2& p : stroke) p = p * kSmall;
      }
    }
    return glyph;
  }
  return MakeAccented(unit);
}

// A letter and its accents, by canonical decomposition.
std::unique_ptr<StrokeGlyph> StrokeFont::MakeAccented(char16_t unit) const {
  UErrorCode status = U_ZERO_ERROR;
  const UNormalizer2* normalizer = unorm2_getNFDInstance(&status);
  if (U_FAILURE(status)) return nullptr;
  std::array<char16_t, 8> parts{};
  const int32_t count =
      unorm2_getDecomposition(normalizer, unit, parts.data(), static_cast<int32_t>(parts.size()), &status);
  if (U_FAILURE(status) || count < 2) return nullptr;
  auto glyph = Make(parts[0]);
  if (glyph == nullptr) return nullptr;
  const std::u16string_view accents(parts.data() + 1, static_cast<size_t>(count) - 1);
  constexpr double kSmallLetter = 0.7;  // an accent replaces what is above this: the dot of i and j
  if (parts[0] == u'i' || parts[0] == u'j') {
    std::erase_if(glyph->strokes, [](const auto& stroke) {
      return std::ranges::all_of(stroke, [](Vec2 p) { return p.y > kSmallLetter; });
    });
  }
  for (const char16_t accent : accents) {
    if (!AddAccent(accent, *glyph)) return nullptr;
  }
  return glyph;
}

}  // namespace hdiplot
