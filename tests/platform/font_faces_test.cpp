// The faces that the system offers and how they are chosen, as far as it is the same on all platforms. The
// fonts are those of tests/fonts.conf, which Wine offers too.
#include "platform/font_faces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/unicode.h"

namespace {

using hdi::FontFace;
using hdi::LOGFONTW;

LOGFONTW Font(const std::u16string& family, int32_t weight = 400, bool isItalic = false,
              uint8_t charSet = 1) {
  LOGFONTW font = {};
  font.lfWeight = weight;
  font.lfItalic = isItalic ? 1 : 0;
  font.lfCharSet = charSet;
  std::copy(family.begin(), family.end(), font.lfFaceName);
  return font;
}

std::string NameOf(const FontFace* face) { return face == nullptr ? "none" : hdi::ToUtf8(face->FullName()); }

TEST(FontFaces, FollowTheRequest) {
  const struct {
    LOGFONTW font;
    const char* name;
  } kRows[] = {
      {Font(u"liberation SANS", 700, true), "Liberation Sans Bold Italic"},
      {Font(u"Liberation Sans", 0), "Liberation Sans"},
      {Font(u"Liberation Sans", 600), "Liberation Sans Bold"},
      {Font(u"Tahoma", 700, true), "Tahoma Bold"},
      {Font(u"DejaVu Sans", 200), "DejaVu Sans"},  // whose typographic family has a light face
      {Font(u"DejaVu Sans Light"), "DejaVu Sans ExtraLight"},
      {Font(u"DejaVu Sans Condensed", 700), "DejaVu Sans Condensed Bold"},
      {Font(u"DejaVu Serif Bold Italic"), "DejaVu Serif Bold Italic"},  // by its full name
      {Font(u"@WenQuanYi Zen Hei Sharp"), "WenQuanYi Zen Hei Sharp"},
      {Font(u"Wingdings"), "Wingdings"},
      {Font(u"Liberation Sans", 400, false, 161), "Liberation Sans"},
      {Font(u"Liberation Sans", 400, false, 134), "WenQuanYi Zen Hei"},  // whose letters it lacks
      {Font(u"Liberation Sans", 400, false, 222), "Liberation Sans"},    // as all others do
      // Families that are not there.
      {Font(u"Arial", 700), "Liberation Sans Bold"},
      {Font(u"", 400, false, 136), "WenQuanYi Zen Hei"},
  };
  for (const auto& row : kRows) {
    const FontFace* face = FindFace(row.font);
    ASSERT_EQ(NameOf(face), row.name) << hdi::ToUtf8(row.font.lfFaceName);
    for (const LOGFONTW& asked : {Font(u"x"), Font(u"", 700, true, 134)}) {
      EXPECT_EQ(FindFace(SelectingFont(asked, *face)), face) << row.name;
    }
  }
  EXPECT_TRUE(hdi::HasFamily(u"DEJAVU sans"));
  EXPECT_FALSE(hdi::HasFamily(u"Arial"));
  // A face without italics stays the one for italics.
  EXPECT_EQ(SelectingFont(Font(u"x", 400, true), *hdi::FindFace(Font(u"Tahoma"))).lfItalic, 1);
}

TEST(FontFaces, CharactersGoToAFaceThatHasThem) {
  const LOGFONTW like = Font(u"Liberation Sans", 700);
  EXPECT_EQ(NameOf(hdi::FindFaceWith(u'中', like)), "WenQuanYi Zen Hei");
  EXPECT_EQ(NameOf(hdi::FindFaceWith(u'ع', like)), "DejaVu Sans Bold");
  EXPECT_EQ(NameOf(hdi::FindFaceWith(0xF0FE, like)), "Wingdings");
  EXPECT_EQ(hdi::FindFaceWith(0xD800, like), nullptr);
  EXPECT_EQ(hdi::FindFaceWith(0xFFFF, like), nullptr);

  const FontFace* symbols = hdi::FindFace(Font(u"Wingdings"));
  EXPECT_TRUE(symbols->HasCharacter(0xF0FC));
  EXPECT_TRUE(symbols->HasCharacter(0xFC));
  EXPECT_FALSE(symbols->HasCharacter(u'中'));
  EXPECT_EQ(symbols->Outline(0xFC).size(), symbols->Outline(0xF0FC).size());
  // Pictures are no substitute for letters.
  EXPECT_TRUE(hdi::FindFaceWith(u'A', Font(u"Wingdings"))->HasCharacter(u'é'));
}

TEST(FontFaces, MeasureInEms) {
  const FontFace* face = hdi::FindFace(Font(u"DejaVu Sans"));
  EXPECT_DOUBLE_EQ(face->CapHeight(), 1493.0 / 2048);
  EXPECT_NEAR(face->Ascent(), 0.76, 0.001);
  EXPECT_NEAR(face->Descent(), -0.208, 0.001);
  EXPECT_DOUBLE_EQ(face->Advance(u'A'), 1401.0 / 2048);
  // Only the first advances of a font of one width are written out.
  EXPECT_DOUBLE_EQ(hdi::FindFace(Font(u"Liberation Mono"))->Advance(u'ж'), 1229.0 / 2048);
  EXPECT_DOUBLE_EQ(face->Advance(0xD800), face->Advance(0xFFFF));
}

TEST(FontFaces, HaveOutlines) {
  const FontFace* face = hdi::FindFace(Font(u"DejaVu Sans"));
  EXPECT_TRUE(face->Outline(u' ').empty());
  const std::vector<hdi::GlyphContour> outline = face->Outline(u'Ä');  // made of two glyphs
  EXPECT_EQ(outline.size(), face->Outline(u'A').size() + 2);
  double highest = 0;
  for (const hdi::GlyphContour& contour : outline) {
    ASSERT_EQ(contour.size() % 3, 1U);
    EXPECT_EQ(contour.front().x, contour.back().x);
    EXPECT_EQ(contour.front().y, contour.back().y);
    for (const hdi::GlyphPoint& point : contour) highest = std::max(highest, point.y);
  }
  EXPECT_NEAR(highest, 0.913, 0.001);

  // Its ring begins and ends with control points, and so starts halfway between them.
  const std::vector<hdi::GlyphContour> bullseye = face->Outline(u'ʘ');
  ASSERT_EQ(bullseye.size(), 3U);
  EXPECT_NEAR(bullseye[1].front().x, 1155.5 / 2048, 0.5 / 2048);
  EXPECT_NEAR(bullseye[1].front().y, 1192.0 / 2048, 0.5 / 2048);
  // In a collection a face has its own characters.
  EXPECT_EQ(hdi::FindFace(Font(u"WenQuanYi Zen Hei Mono"))->Advance(u'i'), 0.5);
}

}  // namespace
