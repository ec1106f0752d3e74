// Text runs and font names. Every case runs in its own process.
#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "platform/host_library.h"
#include "tests/support/log_font.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

using std::u16string;

// Describes each run in brackets: font name, characters, requested slant, first advance.
std::string Describe(const HT_Text& text) {
  std::string description;
  size_t count = 0;
  const HT_TextRun* previous = text.runs;
  for (const HT_TextRun* run = text.runs->next; run != text.runs; run = run->next) {
    EXPECT_EQ(run->previous, previous);
    previous = run;
    u16string name;
    if (GetFontFullName(run->lf, name)) {
      EXPECT_EQ(name, run->fontName);
    }
    description += '[' + ToUtf8(run->fontName) + '|' + ToUtf8({run->text, static_cast<size_t>(run->count)}) +
                   (run->lf->lfItalic != 0 ? "|italic" : "|upright");
    if (run->advances != nullptr) description += '|' + std::to_string(static_cast<int>(run->advances[0]));
    description += ']';
    ++count;
  }
  EXPECT_EQ(text.runs->previous, previous);
  EXPECT_EQ(text.runCount, count);
  return description;
}

// Splits with the advances 0, 1, 2, ...
HT_Text Split(const LOGFONTW& font, const u16string& characters) {
  std::vector<double> advances(characters.size());
  std::iota(advances.begin(), advances.end(), 0.0);
  return {&font, characters.data(), static_cast<int32_t>(characters.size()), advances.data()};
}

TEST(TextRuns, HaveOneFontEach) {
  const LOGFONTW sans = MakeLogFont(u"liberation sans", {.height = -40});
  const LOGFONTW italic = MakeLogFont(u"DejaVu Sans", {.isItalic = true});
  const LOGFONTW tahoma = MakeLogFont(u"Tahoma", {.isItalic = true});
  const struct {
    const LOGFONTW& font;
    u16string characters;
    const char* runs;
  } kCases[] = {
      {sans, u"Plan 1", "[Liberation Sans|Plan 1|upright|0]"},
      {sans, u"A 中 b",
       "[Liberation Sans|A |upright|0][WenQuanYi Zen Hei|中|upright|2][Liberation Sans| b|upright|3]"},
      // Characters that no font has, surrogates included, stay in the requested font, in any order.
      {sans, u"中\uFFFF", "[WenQuanYi Zen Hei|中|upright|0][Liberation Sans|\uFFFF|upright|1]"},
      {sans, u"a😀b", "[Liberation Sans|a😀b|upright|0]"},
      {sans, u"\uFFFFz", "[Liberation Sans|\uFFFFz|upright|0]"},
      // The request for italics is kept, except where only an upright face has the character.
      {tahoma, u"a", "[Tahoma|a|italic|0]"},
      {italic, u"aع", "[DejaVu Sans Oblique|a|italic|0][DejaVu Sans|ع|upright|1]"},
  };
  for (const auto& [font, characters, runs] : kCases) {
    const HT_Text text = Split(font, characters);
    EXPECT_EQ(Describe(text), runs);
    EXPECT_EQ(Describe(HT_Text(text)), runs);
    EXPECT_EQ(text.runs->next->lf->lfHeight, font.lfHeight);
  }
}

TEST(TextRuns, OfStrokeFontsUseTheInterfaceFont) {
  const LOGFONTW font = MakeLogFont(u"Liberation Serif", {.isItalic = true});
  EXPECT_EQ(Describe({&font, u"Ab中", 3, nullptr}), "[DejaVu Sans|Ab|upright][WenQuanYi Zen Hei|中|upright]");
  EXPECT_EQ(Describe({&font, u"x", 0, nullptr}), "");
  EXPECT_EQ(Describe(HT_Text(HT_Text(&font, u"x", -1, nullptr))), "");
}

TEST(FontNames, AreMissingWithoutFonts) {
  const scratch::Directory folder;
  const scratch::Variable configuration(
      "FONTCONFIG_FILE",
      folder.Write("fonts.conf", "<fontconfig><cachedir>" + folder.Path() + "</cachedir></fontconfig>"));
  const LOGFONTW font = MakeLogFont(u"Arial");
  u16string name = u"before";
  EXPECT_FALSE(GetFontFullName(&font, name));
  EXPECT_EQ(name, u"before");
  EXPECT_EQ(Describe(Split(font, u"a中")), "[Arial|a中|upright|0]");
}

}  // namespace
}  // namespace hdi
