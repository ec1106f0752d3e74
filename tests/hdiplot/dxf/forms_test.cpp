// The forms that a text may have, and what its header says of all the rest.
#include <gtest/gtest.h>

#include "tests/hdiplot/dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::File;
using dxf_writing::Read;

TEST(Forms, LineEndsBlanksCommentsAndAMark) {
  const std::string text = File("", "", "", "999 a comment|0 LINE|8 A B |10 1|999 in between|20 2|11 3|21 4");
  std::string spaced;
  std::string crlf;
  std::string cr;
  for (const char c : "\n" + text.substr(0, text.size() - 1)) {
    spaced += c == '\n' ? "\t\n  " : std::string(1, c);
    crlf += c == '\n' ? "\r\n" : std::string(1, c);
    cr += c == '\n' ? '\r' : c;
  }
  for (const std::string& form :
       {text, crlf.substr(2), cr.substr(1), spaced.substr(2), "\xef\xbb\xbf" + text, text + "\n\n\x1a",
        "999\nhello\n" + text, text.substr(0, text.size() - 1)}) {
    const Drawing drawing = Read(form);
    ASSERT_EQ(drawing.entities.size(), 1U) << form;
    EXPECT_EQ(drawing.entities[0].attributes.layer, "A B");
    EXPECT_EQ(std::get<LineEntity>(drawing.entities[0].shape).end, (Vec2{3, 4}));
  }
}

TEST(Forms, HeadersTellUnitsAndScales) {
  const Drawing drawing = Read(File(
      "9 $EXTMIN|10 1e+308|20 -1e+308|9 $LTSCALE|40 2.5|9 $PSLTSCALE|70 0|9 $PDMODE|70 34|9 $PDSIZE|40 -5|"
      "9 $MENU|1 .",
      "", "", ""));
  EXPECT_EQ(drawing.lineTypeScale, 2.5);
  EXPECT_FALSE(drawing.paperLineTypes);
  EXPECT_EQ(drawing.pointMode, 34);
  EXPECT_EQ(drawing.pointSize, -5);
  const Drawing wild = Read(File("9 $LTSCALE|40 1.1e12|9 $PDSIZE|40 -1.1e12", "", "", ""));
  EXPECT_EQ(wild.lineTypeScale, 1);
  EXPECT_EQ(wild.pointSize, 0);
  EXPECT_EQ(Read(File("9 $LTSCALE|40 -1", "", "", "")).lineTypeScale, 1);

  const std::pair<int, double> units[] = {
      {0, 1},           {1, 25.4},        {2, 304.8},  {4, 1},
      {6, 1000},        {10, 914.4},      {13, 0.001}, {21, 1200000.0 / 3937},
      {22, 25.4000508}, {24, 1609347.22}, {25, 1},     {-1, 1}};
  for (const auto& [unit, millimetres] : units) {
    const std::string header = "9 $INSUNITS|70 " + std::to_string(unit);
    EXPECT_NEAR(Read(File(header, "", "", "")).millimetresPerUnit, millimetres, 1e-5 * millimetres) << unit;
  }
}

}  // namespace
}  // namespace hdiplot
