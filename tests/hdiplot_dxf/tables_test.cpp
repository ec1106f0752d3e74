// Header variables, layers, line types, names in all encodings, and the forms a text may have.
#include <gtest/gtest.h>

#include <array>
#include <locale>
#include <memory>

#include "tests/hdiplot_dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::Read;
using dxf_writing::WithEntities;
using dxf_writing::WithSections;

TEST(Tables, HeaderVariables) {
  const Drawing drawing = Read(WithSections(
      "9 $EXTMIN|10 1e+308|20 -1e+308|9 $LTSCALE|40 2.5|9 $INSUNITS|70 6|9 $MENU|1 .", "", "", ""));
  EXPECT_EQ(drawing.lineTypeScale, 2.5);
  EXPECT_EQ(drawing.millimetresPerUnit, 1000);
  EXPECT_EQ(Read(WithSections("9 $INSUNITS|70 99", "", "", "")).millimetresPerUnit, 1);
}

TEST(Tables, LayersAndLineTypes) {
  const Drawing drawing = Read(WithSections(
      "",
      "0 TABLE|2 LTYPE|0 LTYPE|2 ByLayer|73 0|"
      "0 LTYPE|2 DashDot|3 text|72 65|73 4|40 3|49 2|74 0|49 -0.5|74 0|49 0|74 0|49 -0.5|74 2|9 GAS|0 ENDTAB|"
      "0 TABLE|2 LAYER|70 5|0 LAYER|2 0|70 0|62 7|6 Continuous|0 "
      "LAYER|2 Walls|70 0|62 -3|6 Dashed|370 50|290 0|"
      "0 LAYER|2 Ice|70 1|62 4|420 255|370 -3|0 ENDTAB",
      "", ""));
  ASSERT_EQ(drawing.lineTypes.size(), 1);
  EXPECT_EQ(drawing.lineTypes.at("DASHDOT").dashes, (std::vector<double>{2, -0.5, 0, -0.5}));
  ASSERT_EQ(drawing.layers.size(), 3);
  const Layer& walls = drawing.layers.at("Walls");
  EXPECT_EQ(walls.color, (EntityColor{EntityColor::Kind::kIndex, 3}));
  EXPECT_EQ(walls.lineType, "DASHED");
  EXPECT_EQ(walls.lineWeight, 50);
  EXPECT_TRUE(walls.off && !walls.frozen && !walls.plottable);
  const Layer& ice = drawing.layers.at("Ice");
  EXPECT_EQ(ice.color, (EntityColor{EntityColor::Kind::kTrue, 0x0000ff}));
  EXPECT_TRUE(!ice.off && ice.frozen);
}

TEST(Tables, NamesComeAsUtf8) {
  const std::array<const char*, 3> cases[] = {
      std::array{"9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 ANSI_1252", "W\xe4nde \x80", "W\u00e4nde \u20ac"},
      std::array{"9 $MENU|1 .", "W\xe4nde", "W\u00e4nde"},
      std::array{"9 $ACADVER|1 AC1021|9 $DWGCODEPAGE|3 ANSI_1252", "W\u00e4nde", "W\u00e4nde"},
      std::array{"9 $ACADVER|1 AC1021", "W\xe4nde", "W\ufffdnde"},
      std::array{"9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 ANSI_1251", "\xd1\xf2\xe5\xed\xe0",
                 "\u0421\u0442\u0435\u043d\u0430"},
      std::array{"9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 ANSI_1252", "W\u00e4nde", "W\u00e4nde"},
      std::array{"9 $ACADVER|1 AC1015", "\\U+58C1 \\U+D83D\\U+DE00 \\U+12", "\u58c1 \U0001f600 \\U+12"},
      std::array{"9 $ACADVER|1 AC1015|9 $DWGCODEPAGE|3 NONSENSE", "\xe4", "\u00e4"},
  };
  for (const auto& [header, written, name] : cases) {
    const std::string layer = std::string("0 POINT|10 0|20 0|8 ") + written;
    EXPECT_EQ(Read(WithSections(header, "", "", layer)).entities.at(0).attributes.layer, name) << written;
  }
}

TEST(Forms, LineEndsBlanksCommentsAndAMark) {
  const std::string text = WithEntities("999 a comment|0 LINE|8 A B |10 1|999 in between|20 2|11 3|21 4");
  std::string spaced;
  std::string crlf;
  std::string cr;
  bool atStart = true;
  for (const char c : text) {
    if (atStart) spaced += "  ";
    atStart = c == '\n';
    spaced += atStart ? std::string("\t\n") : std::string(1, c);
    crlf += atStart ? std::string("\r\n") : std::string(1, c);
    cr += atStart ? '\r' : c;
  }
  for (const std::string& form : {text, crlf, cr, spaced, "\xef\xbb\xbf" + text, text + "\n\n\x1a",
                                  "999\nhello\n" + text, text.substr(0, text.size() - 1)}) {
    const Drawing drawing = Read(form);
    ASSERT_EQ(drawing.entities.size(), 1) << form;
    EXPECT_EQ(drawing.entities[0].attributes.layer, "A B");
    EXPECT_EQ(std::get<LineEntity>(drawing.entities[0].shape).end, (Vec2{3, 4}));
  }
}

// A comma for the decimal point, and dots between thousands.
TEST(Forms, TheProgramsLocaleDoesNotMatter) {
  struct Commas : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Commas));
  const Drawing drawing = Read(WithEntities("0 LINE|10 1.5|20 1234567.25|11 3|21 4"));
  const bool kept = std::use_facet<std::numpunct<char>>(std::locale()).decimal_point() == ',';
  std::locale::global(before);
  EXPECT_EQ(std::get<LineEntity>(drawing.entities.at(0).shape).start, (Vec2{1.5, 1234567.25}));
  EXPECT_TRUE(kept);
}

}  // namespace
}  // namespace hdiplot
