// Texts split into runs of one font, and the fonts' names. Every case runs in a process of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "platform/host_library.h"
#include "tests/support/scratch.h"

namespace {

using hdi::HT_Text;
using hdi::LOGFONTW;
using std::u16string;
using Lines = std::vector<std::string>;

LOGFONTW Font(const u16string& family, bool isItalic = false) {
  LOGFONTW font = {};
  font.lfHeight = -40;
  font.lfWeight = 400;
  font.lfItalic = isItalic ? 1 : 0;
  font.lfCharSet = 1;
  std::copy(family.begin(), family.end(), font.lfFaceName);
  return font;
}

// A run a line: font name, characters, italics asked for, first advance.
Lines Describe(const HT_Text& text) {
  Lines lines;
  const hdi::HT_TextRun* previous = text.runs;
  for (const hdi::HT_TextRun* run = text.runs->next; run != text.runs; run = run->next) {
    EXPECT_EQ(run->previous, previous);
    previous = run;
    u16string name;
    if (hdi::GetFontFullName(run->lf, name)) {
      EXPECT_EQ(name, run->fontName);
    }
    lines.push_back(hdi::ToUtf8(run->fontName) + '|' +
                    hdi::ToUtf8({run->text, static_cast<size_t>(run->count)}) +
                    (run->lf->lfItalic != 0 ? "|italic" : "|upright"));
    if (run->advances != nullptr) lines.back() += '|' + std::to_string(static_cast<int>(run->advances[0]));
  }
  EXPECT_EQ(text.runs->previous, previous);
  EXPECT_EQ(text.runCount, lines.size());
  return lines;
}

// With the advances 0, 1, 2, ...
HT_Text Split(const LOGFONTW& font, u16string characters) {
  std::vector<double> advances(characters.size());
  std::iota(advances.begin(), advances.end(), 0.0);
  return {&font, characters.data(), static_cast<int32_t>(characters.size()), advances.data()};
}

TEST(TextRuns, AreOfOneFontEach) {
  const LOGFONTW font = Font(u"liberation sans");
  EXPECT_EQ(Describe(Split(font, u"Plan 1")), Lines{"Liberation Sans|Plan 1|upright|0"});
  const Lines mixed = {"Liberation Sans|A |upright|0", "WenQuanYi Zen Hei|中文|upright|2",
                       "Liberation Sans| b|upright|4"};
  const HT_Text text = Split(font, u"A 中文 b");
  EXPECT_EQ(Describe(text), mixed);
  EXPECT_EQ(Describe(HT_Text(text)), mixed);
  EXPECT_EQ(text.runs->next->lf->lfHeight, -40);
  EXPECT_EQ(u16string(text.runs->next->next->lf->lfFaceName), u"WenQuanYi Zen Hei");

  // What no font has stays with the font that was asked for, a surrogate for one, in whatever order.
  EXPECT_EQ(Describe(Split(font, u"中\xFFFF")),
            (Lines{"WenQuanYi Zen Hei|中|upright|0", "Liberation Sans|\xEF\xBF\xBF|upright|1"}));
  EXPECT_EQ(Describe(Split(font, u"a😀b")), Lines{"Liberation Sans|a😀b|upright|0"});
  EXPECT_EQ(Describe(Split(font,
                           u"\xFFFF"
                           "a")),
            Lines{"Liberation Sans|\xEF\xBF\xBF"
                  "a|upright|0"});

  // Italics stay asked for, but where the character is in an upright face alone.
  EXPECT_EQ(Describe(Split(Font(u"Tahoma", true), u"a")), Lines{"Tahoma|a|italic|0"});
  EXPECT_EQ(Describe(Split(Font(u"DejaVu Sans", true), u"aع")),
            (Lines{"DejaVu Sans Oblique|a|italic|0", "DejaVu Sans|ع|upright|1"}));
}

TEST(TextRuns, OfAShapeFontAreInTheInterfaceFont) {
  const LOGFONTW font = Font(u"Liberation Serif", true);
  EXPECT_EQ(Describe(HT_Text(&font, u"Ab中", 3, nullptr)),
            (Lines{"DejaVu Sans|Ab|upright", "WenQuanYi Zen Hei|中|upright"}));
}

TEST(TextRuns, NeedCharacters) {
  const LOGFONTW font = Font(u"Arial");
  const double advance = 1;
  EXPECT_EQ(Describe(HT_Text(&font, u"x", 0, &advance)), Lines());
  EXPECT_EQ(Describe(HT_Text(HT_Text(&font, u"x", -1, nullptr))), Lines());
}

TEST(FontNames, AreThoseOfTheFacesSelected) {
  u16string name;
  const LOGFONTW font = Font(u"ARIAL", true);
  ASSERT_TRUE(hdi::GetFontFullName(&font, name));
  EXPECT_EQ(name, u"Liberation Sans Italic");
}

TEST(FontNames, AreNotNeeded) {
  const scratch::Directory folder;
  const scratch::Variable configuration(
      "FONTCONFIG_FILE",
      folder.Write("fonts.conf", "<fontconfig><cachedir>" + folder.Path() + "</cachedir></fontconfig>"));
  const LOGFONTW font = Font(u"Arial");
  u16string name = u"before";
  EXPECT_FALSE(hdi::GetFontFullName(&font, name));
  EXPECT_EQ(name, u"before");
  EXPECT_EQ(Describe(Split(font, u"a中")), Lines{"Arial|a中|upright|0"});
}

}  // namespace
