// Where the lines of paragraphs break, and where their pieces stand. Letters are 1 wide and high, base lines
// 5/3 apart; a factor of 0.6 makes that 1.
#include <gtest/gtest.h>

#include "tests/hdiplot_text/layout_fakes.h"

namespace hdiplot {
namespace {

struct Setting {
  double wrapWidth = 0;
  int attachment = 1;
  bool exact = false;
};

TextBlock LaidOut(const std::string& text, const Setting& setting) {
  MTextEntity entity;
  entity.text = text;
  entity.wrapWidth = setting.wrapWidth;
  entity.attachment = setting.attachment;
  entity.exactSpacing = setting.exact;
  entity.lineSpacing = 1.2;  // base lines 2 apart
  EvenFonts fonts;
  return LayOutMText(entity, {}, fonts);
}

struct Case {
  const char* text;
  Setting setting;
  const char* pieces;
};

void ExpectPieces(const std::vector<Case>& cases) {
  for (const Case& c : cases) EXPECT_EQ(PiecesOf(LaidOut(c.text, c.setting)), c.pieces) << c.text;
}

TEST(MTextLayout, WrapsAtBlanks) {
  ExpectPieces({
      {"one two three", {.wrapWidth = 7}, "one two@0,-1 | three@0,-3"},
      {"one two   three  ", {.wrapWidth = 7}, "one two@0,-1 | three@0,-3"},
      {"one overlong o", {.wrapWidth = 4}, "one@0,-1 | overlong@0,-3 | o@0,-5"},
      {"one two", {.wrapWidth = 0}, "one two@0,-1"},
      // No break inside a word, whatever changes there.
      {R"(a b{\C1;c}d e)", {.wrapWidth = 4}, "a@0,-1 | b@0,-3 | c@1,-3 | d@2,-3 | e@0,-5"},
      {"a\\~b c", {.wrapWidth = 2}, "a\u00a0b@0,-1 | c@0,-3"},
      // Blanks that begin a paragraph are its own, and may fill a line.
      {" abc  d", {.wrapWidth = 6}, " abc@0,-1 | d@0,-3"},
      {"     ab", {.wrapWidth = 4}, "ab@0,-3"},
      {"一二三，四「五", {.wrapWidth = 3}, "一二@0,-1 | 三，四@0,-3 | 「五@0,-5"},
  });
}

TEST(MTextLayout, AttachesTheBoxToThePlace) {
  ExpectPieces({
      {R"(ab\Pabcd)", {.attachment = 2}, "ab@-1,-1 | abcd@-2,-3"},
      {R"(ab\Pabcd)", {.attachment = 6}, "ab@-2,0.625 | abcd@-4,-1.375"},
      {R"(ab\Pabcd)", {.wrapWidth = 10, .attachment = 7}, "ab@0,2.25 | abcd@0,0.25"},
      {R"(\pqr;ab\P\pql;cd)", {.wrapWidth = 10, .attachment = 5}, "ab@3,0.625 | cd@-5,-1.375"},
      {R"(\P\Pab)", {}, "ab@0,-5"},  // empty lines keep their height
      {"overlong", {.wrapWidth = 4, .attachment = 2}, "overlong@-4,-1"},
  });
}

TEST(MTextLayout, IndentsAndTabs) {
  ExpectPieces({
      {R"(\pi1,l2,r1;aa bb cc)", {.wrapWidth = 6}, "aa@3,-1 | bb@2,-3 | cc@2,-5"},
      {R"(\pi-3,l3;1.^Iaa bb)", {.wrapWidth = 6}, "1.@0,-1 | aa@3,-1 | bb@3,-3"},
      {"a^Ib^I^Ic", {}, "a@0,-1 | b@4,-1 | c@12,-1"},
      {R"(\pt3,c7,r12;a^Ib^Icc^Iddd^Ie)", {}, "a@0,-1 | b@3,-1 | cc@6,-1 | ddd@9,-1 | e@16,-1"},
  });
}

TEST(MTextLayout, FillsJustifiedLines) {
  ExpectPieces({
      {R"(\pqj;a b c dddd)", {.wrapWidth = 7}, "a @0,-1 | b @3,-1 | c@6,-1 | dddd@0,-3"},
      {R"(\pqd;abcd)", {.wrapWidth = 8}, "abcd@0,-1"},
  });
  EXPECT_EQ(LaidOut(R"(\pqd;abcd)", {.wrapWidth = 8}).pieces.at(0).look.tracking, 2);
}

TEST(MTextLayout, SpansOfDifferentHeights) {
  ExpectPieces({
      {R"(a\P{\H2x;b}c\Pd)", {}, "a@0,-1 | b@0,-5 | c@2,-5 | d@0,-7"},
      {R"(a\P{\H2x;b}c\Pd)", {.exact = true}, "a@0,-1 | b@0,-3 | c@2,-3 | d@0,-5"},
      {R"({\H3x;a}\A1;b\A2;c)", {}, "a@0,-3 | b@3,-2 | c@4,-1"},
      {R"({\fWide|b0|i0;a}\W0.5;\T3;bc\P{\H2x;}d)", {}, "a@0,-1 | bc@2,-1 | d@0,-3"},
  });
}

TEST(MTextLayout, Stacks) {
  // 0.7 high; a fraction is 1.82 in all, a tolerance 1.61.
  ExpectPieces({
      {R"(x\S1/22;y)", {}, "x@0,-1.82 | 1@1.35,-0.7 | 22@1,-1.82 | y@2.4,-1.82"},
      {R"(\A1;x\S1^22;)", {}, "x@0,-1.305 | 1@1,-0.7 | 22@1,-1.61"},
      {R"(\S1#2;)", {}, "1@0,-0.7 | 2@1.26,-1"},
      {R"(x\S2^ ;\S^ 3;)", {}, "x@0,-1.2 | 2@1,-0.7 | 3@1.7,-1.4"},
  });
  EXPECT_EQ(RulesOf(LaidOut(R"(\S1/22;)", {})), "0,-0.91 to 1.4,-0.91");
  EXPECT_EQ(RulesOf(LaidOut(R"(\S1#2;)", {})), "0.7,-1.175 to 1.26,0.175");
}

TEST(MTextLayout, RulesRunUnderWhatIsMarked) {
  // One rule a line, over words of any colour but not over blanks at the end.
  EXPECT_EQ(RulesOf(LaidOut(R"(\La b ccc \ld)", {.wrapWidth = 4})), "0,-1.2 to 3,-1.2 | 0,-3.2 to 3,-3.2");
  EXPECT_EQ(RulesOf(LaidOut(R"(\pqj;\La b ccc)", {.wrapWidth = 4})), "0,-1.2 to 4,-1.2 | 0,-3.2 to 3,-3.2");
}

TEST(MTextLayout, ColumnsOfVerticalText) {
  MTextEntity entity;
  entity.vertical = true;
  entity.height = 21;
  entity.wrapWidth = 30;  // of no use here
  entity.text = R"(Hap\Po\S1/2;)";
  EvenFonts fonts;
  // Gaps of 10 between characters; small letters are 14 high. Columns are 15 wide, for letters have 3 of
  // white on each side, and 14 apart.
  EXPECT_EQ(PiecesOf(LayOutMText(entity, {}, fonts)),
            "H@-3,-21 | a@-3,-45 | p@-3,-69 | o@26,-14 | 1@29.15,-38.7 | 2@29.15,-62.22");
  entity.vertical = false;
  entity.attachment = 9;
  entity.lineSpacing = 2;  // behind the last column too
  entity.text = R"({\L\H0.5x;A}\PB\~C\P)";
  TextStyle style;
  style.vertical = true;
  EXPECT_EQ(PiecesOf(LayOutMText(entity, style, fonts)),
            "A@-157.75,72.5 | B@-105,62 | \u00a0@-105,31 | C@-105,0");
}

}  // namespace
}  // namespace hdiplot
