// The faces that the system offers and how they are chosen, as far as it is the same on all platforms. The
// fonts are those of tests/fonts.conf, which Wine offers too.
#include "platform/font_faces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/unicode.h"
#include "tests/support/log_font.h"

namespace hdi {
namespace {

std::string NameOf(const FontFace* face) { return face == nullptr ? "none" : ToUtf8(face->FullName()); }

TEST(FontFaces, FollowTheRequest) {
  const struct {
    const char16_t* family;
    FontStyle style;
    const char* name;
  } kRows[] = {
      {u"liberation SANS", {700, true}, "Liberation Sans Bold Italic"},
      {u"Liberation Sans", {0}, "Liberation Sans"},
      {u"Liberation Sans", {600}, "Liberation Sans Bold"},
      {u"Tahoma", {700, true}, "Tahoma Bold"},
      {u"DejaVu Sans", {200}, "DejaVu Sans"},  // whose typographic family has a light face
      {u"DejaVu Sans Light", {}, "DejaVu Sans ExtraLight"},
      {u"DejaVu Sans Condensed", {700}, "DejaVu Sans Condensed Bold"},
      {u"DejaVu Serif Bold Italic", {}, "DejaVu Serif Bold Italic"},  // by its full name
      {u"@WenQuanYi Zen Hei Sharp", {}, "WenQuanYi Zen Hei Sharp"},
      {u"Wingdings", {}, "Wingdings"},
      {u"Liberation Sans", {400, false, 161}, "Liberation Sans"},
      {u"Liberation Sans", {400, false, 134}, "WenQuanYi Zen Hei"},  // whose letters it lacks
      {u"Liberation Sans", {400, false, 222}, "Liberation Sans"},    // as all others do
      // Families that are not there.
      {u"Arial", {700}, "Liberation Sans Bold"},
      {u"", {400, false, 136}, "WenQuanYi Zen Hei"},
  };
  for (const auto& row : kRows) {
    const FontFace* face = FindFace(MakeLogFont(row.family, row.style));
    ASSERT_EQ(NameOf(face), row.name) << ToUtf8(row.family);
    for (const LOGFONTW& asked : {MakeLogFont(u"x"), MakeLogFont(u"", {700, true, 134})}) {
      EXPECT_EQ(FindFace(SelectingFont(asked, *face)), face) << row.name;
    }
  }
  EXPECT_TRUE(HasFamily(u"DEJAVU sans"));
  EXPECT_FALSE(HasFamily(u"Arial"));
  // A face without italics stays the one for italics.
  EXPECT_EQ(SelectingFont(MakeLogFont(u"x", {400, true}), *FindFace(MakeLogFont(u"Tahoma"))).lfItalic, 1);
}

TEST(FontFaces, CharactersGoToAFaceThatHasThem) {
  const LOGFONTW like = MakeLogFont(u"Liberation Sans", {700});
  EXPECT_EQ(NameOf(FindFaceWith(u'中', like)), "WenQuanYi Zen Hei");
  EXPECT_EQ(NameOf(FindFaceWith(u'ع', like)), "DejaVu Sans Bold");
  EXPECT_EQ(NameOf(FindFaceWith(0xF0FE, like)), "Wingdings");
  EXPECT_EQ(FindFaceWith(0xD800, like), nullptr);
  EXPECT_EQ(FindFaceWith(0xFFFF, like), nullptr);

  const FontFace* symbols = FindFace(MakeLogFont(u"Wingdings"));
  EXPECT_TRUE(symbols->HasCharacter(0xF0FC));
  EXPECT_TRUE(symbols->HasCharacter(0xFC));
  EXPECT_FALSE(symbols->HasCharacter(u'中'));
  EXPECT_EQ(symbols->Outline(0xFC).size(), symbols->Outline(0xF0FC).size());
  // Pictures are no substitute for letters.
  EXPECT_TRUE(FindFaceWith(u'A', MakeLogFont(u"Wingdings"))->HasCharacter(u'é'));
}

TEST(FontFaces, MeasureAndOutlineInEms) {
  const FontFace* face = FindFace(MakeLogFont(u"DejaVu Sans"));
  EXPECT_DOUBLE_EQ(face->CapHeight(), 1493.0 / 2048);
  EXPECT_NEAR(face->Ascent(), 0.76, 0.001);
  EXPECT_NEAR(face->Descent(), -0.208, 0.001);
  EXPECT_DOUBLE_EQ(face->Advance(u'A'), 1401.0 / 2048);
  EXPECT_DOUBLE_EQ(face->Advance(0xD800), face->Advance(0xFFFF));
  // Only the first advances of a font of one width are written out.
  EXPECT_DOUBLE_EQ(FindFace(MakeLogFont(u"Liberation Mono"))->Advance(u'ж'), 1229.0 / 2048);
  // In a collection a face has its own characters.
  EXPECT_EQ(FindFace(MakeLogFont(u"WenQuanYi Zen Hei Mono"))->Advance(u'i'), 0.5);

  EXPECT_TRUE(face->Outline(u' ').empty());
  const std::vector<GlyphContour> outline = face->Outline(u'Ä');  // made of two glyphs
  EXPECT_EQ(outline.size(), face->Outline(u'A').size() + 2);
  double highest = 0;
  for (const GlyphContour& contour : outline) {
    ASSERT_EQ(contour.size() % 3, 1U);
    EXPECT_EQ(contour.front().x, contour.back().x);
    EXPECT_EQ(contour.front().y, contour.back().y);
    for (const GlyphPoint& point : contour) highest = std::max(highest, point.y);
  }
  EXPECT_NEAR(highest, 0.913, 0.001);

  // Its ring begins and ends with control points, and so starts halfway between them.
  const std::vector<GlyphContour> bullseye = face->Outline(u'ʘ');
  ASSERT_EQ(bullseye.size(), 3U);
  EXPECT_NEAR(bullseye[1].front().x, 1155.5 / 2048, 0.5 / 2048);
  EXPECT_NEAR(bullseye[1].front().y, 1192.0 / 2048, 0.5 / 2048);
}

}  // namespace
}  // namespace hdi
