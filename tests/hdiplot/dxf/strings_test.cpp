// What the strings of files become: encodings, escapes, fields, and lengths.
#include <gtest/gtest.h>

#include "hdiplot/dxf/field_links.h"
#include "tests/hdiplot/dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::File;
using dxf_writing::Read;

// Of the first entity.
std::string TextOf(const Drawing& drawing) {
  const Shape& shape = drawing.entities.at(0).shape;
  const auto* text = std::get_if<TextEntity>(&shape);
  return text != nullptr ? text->text : std::get<MTextEntity>(shape).text;
}

std::string Header(const std::string& version, const std::string& codePage) {
  return "9 $ACADVER|1 " + version + (codePage.empty() ? "" : "|9 $DWGCODEPAGE|3 " + codePage);
}

struct Row {
  const char* codePage;
  const char* written;
  const char* read;
};

TEST(Strings, OfNames) {
  const auto layer = [](const std::string& header, const std::string& name) -> std::string {
    return Read(File(header, "", "", "0 POINT|10 0|20 0|8 " + name)).entities.at(0).attributes.layer;
  };
  const Row rows[] = {
      {"ANSI_1252", "W\xe4nde \x80", "W\u00e4nde \u20ac"},
      {"ANSI_1252", "W\u00e4nde", "W\u00e4nde"},
      {"ANSI_1251", "\xd1\xf2\xe5\xed\xe0", "\u0421\u0442\u0435\u043d\u0430"},
      {"NONSENSE", "\xe4", "\u00e4"},
      {"", "\\U+58C1 \\U+D83D\\U+DE00 \\U+12", "\u58c1 \U0001f600 \\U+12"},
  };
  for (const Row& row : rows) EXPECT_EQ(layer(Header("AC1015", row.codePage), row.written), row.read);
  EXPECT_EQ(layer("9 $MENU|1 .", "W\xe4nde"), "W\u00e4nde");
  // From AC1021 on files are in UTF-8, whatever code page they tell.
  EXPECT_EQ(layer(Header("AC1021", "ANSI_1252"), "W\u00e4nde"), "W\u00e4nde");
  EXPECT_EQ(layer(Header("AC1021", ""), "W\xe4nde"), "W\ufffdnde");
}

TEST(Strings, OfTexts) {
  const Row rows[] = {
      {"ANSI_1252", " \xe4\t%%d\x07 ^J ", " \u00e4^I%%d ^J "},
      {"ANSI_932", "\x95\x5c\x8e\xa6\\U+00B0", "\u8868\u793a\u00b0"},
      {"ANSI_1252", "\u697c", "\u697c"},
      {"", "\u697c", "\u697c"},
      {"unknown", "\u697c", "\u697c"},
      // Well-formed as UTF-8 too.
      {"ANSI_936", "\xc2\xa5", "\u697c"},
      {"gb2312", "\xc2\xa5", "\u697c"},
      {"DOS850", "\xc3\xa4", "\u251c\u00f1"},
      {"ANSI_874", "\xe0\xa2\xb5", "\u0e40\u0e02\u0e15"},
      {"KSC5601", "\xb0\xa1", "\uac00"},
      {"big5", "\xa4\x40", "\u4e00"},
      {"JOHAB", "\x88\x61", "\uac00"},
      {"ANSI_1252", "\\M+182A0\\M+2A440\\M+3B0A1\\M+48861\\M+5B0A1\\M+1B1\\M+10000",
       "\u3042\u4e00\uac00\uac00\u554a\\M+1B1\\M+10000"},
      {"ANSI_1252", "\\H210041; \\M+", "\\H210041; \\M+"},
      {"ANSI_1252", "\\\\U+0041 \\U+D83D\\U+DE00 \\U+D83D \\U+00e", "\\A \U0001f600 \ufffd \\U+00e"},
  };
  for (const Row& row : rows) {
    const std::string text = "0 TEXT|10 0|20 0|1 " + std::string(row.written);
    EXPECT_EQ(TextOf(Read(File(Header("AC1015", row.codePage), "", "", text))), row.read);
  }
  // Here backslashes and braces have a meaning, so that escapes for them stay escaped.
  const Drawing paragraph =
      Read(File(Header("AC1015", "JOHAB"), "", "",
                "0 MTEXT|10 0|20 0|1 \\\\U+0041\\\\\\U+0041 \\U+007B\\U+005C\x88\x61\\P{\\fArial;x}"));
  EXPECT_EQ(TextOf(paragraph), "\\\\U+0041\\\\A \\{\\\\\uac00\\P{\\fArial;x}");
}

TEST(Strings, OfLongParagraphsAreJoinedBeforeTheyAreDecoded) {
  std::string text;
  while (text.size() < 200000) text += "W\u00e4nde und T\u00fcren \U0001f6aa ";
  std::string groups = "0 MTEXT|10 0|20 0|40 1";
  size_t at = 0;
  for (; text.size() - at > 250; at += 250) groups += "|3 " + text.substr(at, 250);
  groups += "|1 " + text.substr(at);
  EXPECT_EQ(TextOf(Read(File(Header("AC1021", ""), "", "", groups))), text);
}

TEST(Strings, OfTextsThatAreTooLongAreCutAndCounted) {
  std::string text = "a";
  while (text.size() < 300000) text += "\u00e4";
  const Drawing drawing = Read(File(Header("AC1021", ""), "", "", "0 TEXT|10 0|20 0|1 " + text));
  EXPECT_EQ(TextOf(drawing), text.substr(0, 262143));
  EXPECT_EQ(drawing.skipped.at("TEXT cut off behind 262144 bytes"), 1U);
}

TEST(Strings, OfFieldsLeadToTheTargetAndItsPlace) {
  EXPECT_EQ(LinkOfField(R"(\AcVar Author \href "http://example.com##0")"), "http://example.com");
  EXPECT_EQ(LinkOfField(R"(\href "plan.dwg#Front#1")"), "plan.dwg#Front");
  EXPECT_EQ(LinkOfField(R"(\href "http://a#b")"), "http://a#b");
  EXPECT_EQ(LinkOfField(R"(\href "#Front#0")"), "");
  EXPECT_EQ(LinkOfField(R"(\href "C:\\a \"b\".pdf##0")"), R"(C:\a "b".pdf)");
}

TEST(Strings, OfFieldsInTheTextItselfShowTheirLinks) {
  std::string text = R"(See %<\AcExpr (%<\AcVar A \href "a\\b##0">%) \f "%lu2">% or %<\AcVar Date>%, 5%)";
  std::string plain = text;
  EXPECT_EQ(ReplaceFieldCodes(text, Backslash::kStartsCode), R"(a\b)");
  EXPECT_EQ(text, R"(See a\\b or ----, 5%)");
  EXPECT_EQ(ReplaceFieldCodes(plain, Backslash::kItself), R"(a\b)");
  EXPECT_EQ(plain, R"(See a\b or ----, 5%)");
  std::string open = R"(%<\AcVar \href "x" %<5>%)";
  EXPECT_EQ(ReplaceFieldCodes(open, Backslash::kItself), "");
  EXPECT_EQ(open, R"(%<\AcVar \href "x" %<5>%)");
}

}  // namespace
}  // namespace hdiplot
