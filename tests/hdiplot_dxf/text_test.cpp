// Texts and their styles: what the strings become, where the texts stand, and which of them are seen.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

#include "tests/hdiplot_dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::Read;
using dxf_writing::ReadFirst;
using dxf_writing::WithEntities;
using dxf_writing::WithSections;

void ExpectNear(Vec2 seen, Vec2 expected) {
  EXPECT_NEAR(seen.x, expected.x, 1e-9);
  EXPECT_NEAR(seen.y, expected.y, 1e-9);
}

// The strings of all texts, in drawing order.
std::vector<std::string> TextsOf(const std::vector<Entity>& entities) {
  std::vector<std::string> texts;
  for (const Entity& entity : entities) {
    if (const auto* text = std::get_if<TextEntity>(&entity.shape)) texts.push_back(text->text);
    if (const auto* text = std::get_if<MTextEntity>(&entity.shape)) texts.push_back(text->text);
  }
  return texts;
}

TEST(Texts, Styles) {
  const Drawing drawing =
      Read(WithSections("",
                        "0 TABLE|2 STYLE|0 STYLE|2 Standard|70 0|40 0|41 0|50 0|71 0|3 |4 |1001 NOTES|1000 "
                        "Note|1002 {|1071 1|1002 "
                        "}|1001 FONTS|1000 DejaVu Serif|1071 50331682|"
                        "0 STYLE|2 Thin|70 4|40 2.5|41 -0.5|50 345|71 4|3 romans.shx|4 big.shx|"
                        "0 STYLE|2 |70 1|3 ltypeshp.shx|0 ENDTAB",
                        "", ""));
  ASSERT_EQ(drawing.textStyles.size(), 2);
  const TextStyle& standard = drawing.textStyles.at("STANDARD");
  EXPECT_EQ(standard.family, "DejaVu Serif");
  EXPECT_TRUE(standard.bold && standard.italic && !standard.backwards && !standard.vertical);
  EXPECT_EQ(standard.widthFactor, 1);
  EXPECT_EQ(standard.fontFile, "txt");
  const TextStyle& thin = drawing.textStyles.at("THIN");
  EXPECT_EQ(thin.fontFile, "romans.shx");
  EXPECT_EQ(thin.bigFontFile, "big.shx");
  EXPECT_TRUE(thin.family.empty() && thin.vertical && thin.backwards && thin.upsideDown && !thin.bold);
  EXPECT_EQ(thin.widthFactor, 0.5);
  EXPECT_NEAR(thin.oblique, -std::numbers::pi / 12, 1e-12);
  EXPECT_EQ(thin.height, 2.5);
}

TEST(Texts, JustificationChoosesThePoint) {
  struct Case {
    const char* groups;
    TextAlign align;
    TextLine line;
    Vec2 place;
  };
  const Case cases[] = {
      {"", TextAlign::kLeft, TextLine::kBase, {1, 2}},
      {"|11 5|21 6", TextAlign::kLeft, TextLine::kBase, {1, 2}},
      {"|11 5|21 6|72 1", TextAlign::kCenter, TextLine::kBase, {5, 6}},
      {"|11 5|21 6|72 2|73 3", TextAlign::kRight, TextLine::kTop, {5, 6}},
      {"|11 5|21 6|72 0|73 1", TextAlign::kLeft, TextLine::kBottom, {5, 6}},
      {"|11 5|21 6|72 4|73 2", TextAlign::kMiddle, TextLine::kBase, {5, 6}},
      {"|72 2|73 3", TextAlign::kLeft, TextLine::kBase, {1, 2}},
      {"|11 4|21 6|72 3", TextAlign::kAligned, TextLine::kBase, {1, 2}},
      {"|11 4|21 6|72 5|50 10", TextAlign::kFit, TextLine::kBase, {1, 2}},
      {"|11 1|21 2|72 5", TextAlign::kLeft, TextLine::kBase, {1, 2}},
      {"|11 5|21 6|72 9|73 -7", TextAlign::kLeft, TextLine::kBase, {1, 2}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.groups);
    const auto text = ReadFirst<TextEntity>(std::string("0 TEXT|10 1|20 2|40 3|1 a") + c.groups);
    EXPECT_EQ(text.align, c.align);
    EXPECT_EQ(text.line, c.line);
    EXPECT_EQ(text.place, c.place);
    if (c.align != TextAlign::kAligned && c.align != TextAlign::kFit) continue;
    EXPECT_EQ(text.end, (Vec2{4, 6}));
    ExpectNear(text.right, {0.6, 0.8});
    ExpectNear(text.up, {-0.8, 0.6});
  }
}

TEST(Texts, LettersAndHeights) {
  const Drawing drawing =
      Read(WithSections("", "0 TABLE|2 STYLE|0 STYLE|2 Fixed|40 7|0 ENDTAB", "",
                        "0 TEXT|10 0|20 0|40 2|1 a|41 -0.5|51 15|71 4|50 90|7 fixed|"
                        "0 TEXT|10 0|20 0|1 a|41 0|51 90|7 Fixed|0 MTEXT|10 0|20 0|40 -1|1 a"));
  const auto& full = std::get<TextEntity>(drawing.entities[0].shape);
  EXPECT_TRUE(full.backwards && full.upsideDown);
  EXPECT_EQ(full.widthFactor, 0.5);
  EXPECT_NEAR(full.oblique, std::numbers::pi / 12, 1e-12);
  EXPECT_EQ(full.height, 2);
  EXPECT_EQ(full.style, "FIXED");
  ExpectNear(full.right, {0, 1});
  const auto& bare = std::get<TextEntity>(drawing.entities[1].shape);
  EXPECT_EQ(bare.widthFactor, 1);
  EXPECT_LT(bare.oblique, 1.5) << "an upright slant would have no end";
  EXPECT_EQ(bare.height, 7);
  EXPECT_EQ(std::get<MTextEntity>(drawing.entities[2].shape).height, 1);
}

TEST(Texts, Planes) {
  const auto behind = ReadFirst<TextEntity>("0 TEXT|10 3|20 4|40 1|50 90|1 a|210 0|220 0|230 -1");
  ExpectNear(behind.place, {-3, 4});
  ExpectNear(behind.right, {0, 1});
  ExpectNear(behind.up, {1, 0});

  // Turned about Y by 60 degrees: the plane's X axis is the drawing's Y axis, its Y axis falls away to the
  // left.
  const auto tilted =
      ReadFirst<TextEntity>("0 TEXT|10 3|20 4|40 1|51 45|1 a|210 0.8660254037844386|220 0|230 0.5");
  ExpectNear(tilted.place, {-2, 3});
  ExpectNear(tilted.right, {0, 1});
  ExpectNear(tilted.up, {-1, 0});
  EXPECT_NEAR(tilted.height, 0.5, 1e-9);
  EXPECT_NEAR(tilted.widthFactor, 2, 1e-9);
  EXPECT_NEAR(std::tan(tilted.oblique), 2, 1e-9);

  const Drawing edgeOn =
      Read(WithEntities("0 TEXT|10 0|20 0|40 1|1 a|210 1|220 0|230 0|0 MTEXT|10 0|20 0|1 a|11 0|21 0|31 1|0 "
                        "TEXT|10 0|20 0|40 1"));
  EXPECT_TRUE(edgeOn.entities.empty());
  EXPECT_TRUE(edgeOn.skipped.empty());
}

TEST(Texts, ParagraphsTakeTheLastOfDirectionAndRotation) {
  const auto full = ReadFirst<MTextEntity>(
      "0 MTEXT|10 1|20 2|40 3|41 50|71 5|72 3|1 a|7 Fine|50 90|11 0|21 -2|73 2|44 1.5|210 0|220 0|230 -1|"
      "101 Embedded Object|70 1|10 9|11 9|40 9|71 9|73 0");
  EXPECT_EQ(full.place, (Vec2{1, 2})) << "of the world, unlike a TEXT's";
  ExpectNear(full.right, {0, -1});
  ExpectNear(full.up, {-1, 0});
  EXPECT_EQ(full.height, 3);
  EXPECT_EQ(full.wrapWidth, 50);
  EXPECT_EQ(full.attachment, 5);
  EXPECT_EQ(full.style, "FINE");
  EXPECT_EQ(full.lineSpacing, 1.5);
  EXPECT_TRUE(full.exactSpacing && full.vertical);

  const auto turned = ReadFirst<MTextEntity>("0 MTEXT|10 1|20 2|11 1|21 0|31 0|50 90|1 a|71 99|44 -1");
  ExpectNear(turned.right, {0, 1});
  ExpectNear(turned.up, {-1, 0});
  EXPECT_EQ(turned.attachment, 1);
  EXPECT_EQ(turned.lineSpacing, 1);
  EXPECT_FALSE(turned.vertical);

  // A direction out of the plane counts as far as it is in it.
  const auto rising = ReadFirst<MTextEntity>("0 MTEXT|10 1|20 2|1 a|11 3|21 0|31 4");
  ExpectNear(rising.right, {1, 0});
  ExpectNear(rising.up, {0, 1});
}

TEST(Texts, StringsInAllEncodings) {
  const char* const kOld = "9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 ";
  const std::array<std::string, 4> cases[] = {
      {"ANSI_1252", "TEXT", " \xe4\t%%d\x07 ^J ", " \u00e4^I%%d ^J "},
      {"ANSI_932", "TEXT", "\x95\x5c\x8e\xa6\\U+00B0", "\u8868\u793a\u00b0"},
      {"ANSI_1252", "TEXT", "\u697c", "\u697c"},
      {"", "TEXT", "\u697c", "\u697c"},
      {"unknown", "TEXT", "\u697c", "\u697c"},
      // Well-formed as UTF-8 too.
      {"ANSI_936", "TEXT", "\xc2\xa5", "\u697c"},
      {"gb2312", "TEXT", "\xc2\xa5", "\u697c"},
      {"DOS850", "TEXT", "\xc3\xa4", "\u251c\u00f1"},
      {"ANSI_874", "TEXT", "\xe0\xa2\xb5", "\u0e40\u0e02\u0e15"},
      {"KSC5601", "TEXT", "\xb0\xa1", "\uac00"},
      {"big5", "TEXT", "\xa4\x40", "\u4e00"},
      {"JOHAB", "MTEXT", "\x88\x61\\P", "\uac00\\P"},
      {"ANSI_1252", "TEXT", "\\M+182A0\\M+2A440\\M+3B0A1\\M+48861\\M+5B0A1\\M+1B1\\M+10000",
       "\u3042\u4e00\uac00\uac00\u554a\\M+1B1\\M+10000"},
      {"ANSI_1252", "TEXT", "\\\\U+0041 \\U+D83D\\U+DE00 \\U+D83D \\U+00e", "\\A \U0001f600 \ufffd \\U+00e"},
      {"ANSI_1252", "MTEXT", "\\\\U+0041\\\\\\U+0041 \\U+007B\\U+005C \\P{\\fArial;x}",
       "\\\\U+0041\\\\A \\{\\\\ \\P{\\fArial;x}"},
  };
  for (const auto& [codePage, type, written, expected] : cases) {
    SCOPED_TRACE(expected);
    std::string entity = "0 " + type;
    entity += "|10 0|20 0|1 " + written;
    EXPECT_EQ(TextsOf(Read(WithSections(kOld + codePage, "", "", entity)).entities).at(0), expected);
  }
}

TEST(Texts, LongParagraphsAreJoinedBeforeTheyAreDecoded) {
  std::string text;
  while (text.size() < 200000) text += "W\u00e4nde und T\u00fcren \U0001f6aa ";
  std::string groups = "0 MTEXT|10 0|20 0|40 1";
  size_t at = 0;
  for (; text.size() - at > 250; at += 250) groups += "|3 " + text.substr(at, 250);
  groups += "|1 " + text.substr(at);
  const Drawing drawing = Read(WithSections("9 $ACADVER|1 AC1021", "", "", groups));
  EXPECT_EQ(TextsOf(drawing.entities).at(0), text);
}

TEST(Texts, TooLongAreCutAndCounted) {
  std::string text = "a";
  while (text.size() < 300000) text += "\u00e4";
  const Drawing drawing = Read(WithSections("9 $ACADVER|1 AC1021", "", "", "0 TEXT|10 0|20 0|1 " + text));
  EXPECT_EQ(TextsOf(drawing.entities).at(0), text.substr(0, 262143));
  EXPECT_EQ(drawing.skipped.at("TEXT cut off behind 262144 bytes"), 1);
}

TEST(Texts, AttributesBelongToTheirInsert) {
  const Drawing drawing = Read(WithSections(
      "", "0 TABLE|2 LAYER|0 LAYER|2 Ice|70 1|62 1|0 ENDTAB",
      "0 BLOCK|2 DOOR|0 ATTDEF|10 0|20 0|1 value|2 VARIABLE|70 0|0 ATTDEF|10 0|20 0|1 constant|2 C|70 2|"
      "0 ATTDEF|10 0|20 0|1 hidden|2 H|70 3|0 ENDBLK",
      "0 INSERT|66 1|2 DOOR|10 0|20 0|67 1|62 3|"
      "0 ATTRIB|10 1|20 2|1 number 7|2 TAG|70 0|62 0|11 5|21 6|73 9|74 2|100 AcDbXrecord|71 2|101 Embedded "
      "Object|1 x|10 9|"
      "0 ATTRIB|10 0|20 0|1 hidden|2 TAG|70 1|0 SEQEND|"
      "0 INSERT|66 1|2 DOOR|10 0|20 0|8 Ice|0 ATTRIB|10 0|20 0|1 frozen|2 T|0 SEQEND|"
      "0 ATTDEF|10 0|20 0|1 value|2 OPEN|70 0|0 ATTDEF|10 0|20 0|1 value|2 HIDDEN|70 1"));
  EXPECT_EQ(TextsOf(drawing.blocks.at("DOOR").entities), (std::vector<std::string>{"constant"}));
  EXPECT_EQ(TextsOf(drawing.entities), (std::vector<std::string>{"number 7", "frozen", "OPEN"}));
  EXPECT_TRUE(std::holds_alternative<InsertEntity>(drawing.entities[0].shape));
  const Attributes& attributes = drawing.entities[1].attributes;
  EXPECT_TRUE(attributes.paperSpace && attributes.visible);
  EXPECT_EQ(attributes.color, (EntityColor{EntityColor::Kind::kIndex, 3}));
  const auto& text = std::get<TextEntity>(drawing.entities[1].shape);
  EXPECT_EQ(text.place, (Vec2{5, 6}));
  EXPECT_EQ(text.line, TextLine::kMiddle);
  EXPECT_FALSE(text.backwards);
  EXPECT_FALSE(drawing.entities[3].attributes.visible);
  EXPECT_FALSE(drawing.entities[4].attributes.paperSpace);
  EXPECT_TRUE(drawing.skipped.empty());
}

}  // namespace
}  // namespace hdiplot
