// Links of fields, in objects and in texts.
#include <gtest/gtest.h>

#include "host/hdiplot/dxf/field_codes.h"
#include "tests/hdiplot_dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::Read;
using dxf_writing::WithEntities;
using dxf_writing::WithObjects;

constexpr const char* kText = "0 TEXT|102 {ACAD_XDICTIONARY|360 d1|102 }|10 0|20 0|40 1|1 Plan";

constexpr const char* kDictionaries =
    "0 DICTIONARY|5 D1|3 OTHER|360 F9|3 ACAD_FIELD|360 D2|0 DICTIONARY|5 D2|3 TEXT|360 F1|"
    "0 FIELD|5 F9|2 \\href \"other\"|";

Attributes AttributesOf(const std::string& entity, const std::string& objects) {
  return Read(WithObjects(WithEntities(entity), objects)).entities.at(0).attributes;
}

TEST(Fields, LinkTheirTextThroughDictionaries) {
  const std::string objects =
      std::string(kDictionaries) +
      "0 FIELD|5 F1|1 _text|2 %<\\_FldIdx 0>%%<\\_FldIdx 1>%|90 2|360 F1|360 F2|360 F3|360 gone|"
      "0 FIELD|5 F2|1 AcVar|2 \\AcVar Date|0 FIELD|5 F3|1 AcVar|2 \\AcVar Author \\href \"http://a|3 "
      ".b#c#0\"";
  EXPECT_EQ(AttributesOf(kText, objects).link, "http://a.b#c");
  EXPECT_EQ(AttributesOf(std::string(kText) + "|1001 PE_URL|1000 own", objects).link, "own");
  EXPECT_EQ(AttributesOf("0 TEXT|10 0|20 0|40 1|1 Plan", objects).link, "");
}

TEST(Fields, ThatLeadNowhereAreNone) {
  for (const char* field :
       {"0 FIELD|5 F1|360 F1|360 D1", "0 FIELD|5 F1|2 \\href|3 nothing", "0 FIELD|2 \\href \"x\"",
        "0 FIELD|5 F1|3 \\href \"x\"", "0 FIELD|5 F1|2 \\href \"", "0 DICTIONARY|3 TEXT"}) {
    EXPECT_EQ(AttributesOf(kText, kDictionaries + std::string(field)).link, "") << field;
  }
}

TEST(Fields, LeadToTheTargetAndItsPlace) {
  EXPECT_EQ(LinkOfField(R"(\AcVar Author \href "http://example.com##0")"), "http://example.com");
  EXPECT_EQ(LinkOfField(R"(\href "plan.dwg#Front#1")"), "plan.dwg#Front");
  EXPECT_EQ(LinkOfField(R"(\href "http://a#b")"), "http://a#b");
  EXPECT_EQ(LinkOfField(R"(\href "#Front#0")"), "");
  EXPECT_EQ(LinkOfField(R"(\href "C:\\a \"b\".pdf##0")"), R"(C:\a "b".pdf)");
}

TEST(Fields, InTheTextItselfShowTheirLinks) {
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
