// Where texts of one line stand.
#include <gtest/gtest.h>

#include <numbers>

#include "tests/hdiplot_text/layout_fakes.h"

namespace hdiplot {
namespace {

// Of height 2, and with even letters, so 8 wide.
TextEntity Four() {
  TextEntity entity;
  entity.text = "Text";
  entity.height = 2;
  return entity;
}

TextBlock LaidOut(const TextEntity& entity, const TextStyle& style = {}) {
  EvenFonts fonts;
  return LayOutText(entity, style, fonts);
}

TEST(TextLayout, JustifiesAboutThePlace) {
  struct {
    TextAlign align;
    TextLine line;
    Vec2 at;
  } const cases[] = {
      {TextAlign::kLeft, TextLine::kBase, {0, 0}},     {TextAlign::kCenter, TextLine::kBase, {-4, 0}},
      {TextAlign::kRight, TextLine::kBase, {-8, 0}},   {TextAlign::kMiddle, TextLine::kBase, {-4, -0.75}},
      {TextAlign::kLeft, TextLine::kBottom, {0, 0.5}}, {TextAlign::kCenter, TextLine::kMiddle, {-4, -1}},
      {TextAlign::kRight, TextLine::kTop, {-8, -2}},
  };
  for (const auto& [align, line, at] : cases) {
    TextEntity entity = Four();
    entity.align = align;
    entity.line = line;
    EXPECT_EQ(PiecesOf(LaidOut(entity)), "Text@" + Place(at));
  }
}

TEST(TextLayout, StretchesBetweenTwoPoints) {
  TextEntity entity = Four();
  entity.place = {10, 10};
  entity.end = {10, 26};  // twice the length of the text, upwards
  entity.right = {1, 0};  // which the points overrule
  entity.align = TextAlign::kAligned;
  TextBlock block = LaidOut(entity);
  EXPECT_EQ(block.pieces[0].look.height, 4);
  EXPECT_EQ(Place(block.frame({block.pieces[0].width, 4})), "6,26");
  entity.align = TextAlign::kFit;
  block = LaidOut(entity);
  EXPECT_EQ(block.pieces[0].look.height, 2);
  EXPECT_EQ(block.pieces[0].look.widthFactor, 2);
  entity.backwards = true;  // stays between the points
  block = LaidOut(entity);
  EXPECT_EQ(Place(block.frame({0, 0})), "10,26");
  EXPECT_EQ(Place(block.frame({16, 0})), "10,10");
  entity.end = entity.place;
  EXPECT_EQ(LaidOut(entity).pieces[0].width, 8);
}

TEST(TextLayout, MirrorsAboutThePlace) {
  TextEntity entity = Four();
  entity.place = {100, 50};
  entity.right = {0, 1};
  entity.up = {-1, 0};
  entity.backwards = true;
  EXPECT_EQ(Place(LaidOut(entity).frame({8, 2})), "98,42");
  entity.upsideDown = true;
  EXPECT_EQ(Place(LaidOut(entity).frame({8, 2})), "102,42");
}

TEST(TextLayout, DrawsRulesAlongMarkedCharacters) {
  TextEntity entity = Four();
  entity.text = "a%%ubc%%u%%od%%o%%ke";
  entity.widthFactor = 0.5;
  const TextBlock block = LaidOut(entity);
  EXPECT_EQ(PiecesOf(block), "abcde@0,0");
  EXPECT_EQ(RulesOf(block), "1,-0.4 to 3,-0.4 | 3,2.4 to 4,2.4 | 4,1 to 5,1");
}

TEST(TextLayout, StacksVerticalStyles) {
  TextStyle style;
  style.vertical = true;
  TextEntity entity = Four();
  entity.text = "A \U0001d49c";
  EXPECT_EQ(PiecesOf(LaidOut(entity, style)), "A@-1,-2 | \U0001d49c@-2,-7.905");
  entity.align = TextAlign::kRight;
  EXPECT_EQ(PiecesOf(LaidOut(entity, style)), "A@-1,5.905 | \U0001d49c@-2,0");
}

TEST(TextLayout, MakesSizesUsable) {
  TextEntity entity = Four();
  entity.height = std::numeric_limits<double>::quiet_NaN();
  entity.widthFactor = -1;
  entity.oblique = 7;
  const TextLook look = LaidOut(entity).pieces.at(0).look;
  EXPECT_GT(look.height, 0);
  EXPECT_GT(look.widthFactor, 0);
  EXPECT_LT(look.oblique, std::numbers::pi / 2);
  entity.text = "  ";
  EXPECT_EQ(PiecesOf(LaidOut(entity)), "");
}

}  // namespace
}  // namespace hdiplot
