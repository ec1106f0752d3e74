// Values of dimensions as texts.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "hdiplot/dxf/dimension_text.h"

namespace hdiplot {
namespace {

struct LengthCase {
  double length;
  int unit;
  int decimals;
  int zeros;
  const char* text;
};

TEST(DimensionText, HasLengthsInTheUnitsOfTheStyle) {
  const LengthCase cases[] = {
      {2.5, 2, 3, 0, "2.500"},
      {2.5, 2, 3, 8, "2.5"},
      {0.5, 2, 2, 12, ".5"},
      {0.0004, 2, 2, 12, "0"},
      {12345, 1, 2, 0, "1.23E+04"},
      {42.5, 3, 1, 0, "3'-6.5\""},
      {42.5, 4, 4, 0, "3'-6 \\S1/2;\""},
      {6, 4, 4, 0, "6\""},
      {6, 4, 4, 1, "0'-6\""},
      {24, 4, 4, 0, "2'"},
      {24, 4, 4, 1, "2'-0\""},
      {11.99, 4, 4, 0, "1'"},
      {48.25, 4, 4, 0, "4'-0 \\S1/4;\""},
      {0.25, 5, 3, 0, "\\S1/4;"},
      {2.999, 5, 3, 0, "3"},
  };
  for (const LengthCase& c : cases) {
    DimensionStyle style;
    style.lengthUnit = c.unit;
    style.decimals = c.decimals;
    style.zeros = c.zeros;
    EXPECT_EQ(LengthText(c.length, "", style), c.text);
  }
}

TEST(DimensionText, IsRoundedScaledAndSetInItsFrame) {
  DimensionStyle style;
  style.decimals = 1;
  style.lengthFactor = 10;
  style.rounding = 5;
  style.separator = ',';
  EXPECT_EQ(LengthText(1.29, "R", style), "R15,0");
  style.around = "<> mm";
  EXPECT_EQ(LengthText(1.29, "R", style), "R15,0 mm");
  style.around = " mm";
  EXPECT_EQ(LengthText(1.29, "", style), "15,0 mm");
}

TEST(DimensionText, HasAnglesInTheUnitsOfTheStyle) {
  const auto text = [](int unit, int decimals, int zeros) {
    DimensionStyle style;
    style.angleUnit = unit;
    style.angleDecimals = decimals;
    style.angleZeros = zeros;
    return AngleText(0.5, style);
  };
  const std::vector<std::string> texts = {text(0, 2, 0), text(0, 3, 2), text(1, 4, 0), text(2, 1, 0),
                                          text(3, 2, 1)};
  EXPECT_THAT(texts, testing::ElementsAre("28.65°", "28.648°", "28°38'52\"", "31.8g", ".50r"));
}

}  // namespace
}  // namespace hdiplot
