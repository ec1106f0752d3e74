// Values of options that are more than a word or a number.
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "hdiplot/command/options.h"

namespace hdiplot {
namespace {

// Each text is refused by the function.
template <typename Function>
void ExpectRefused(Function parse, std::initializer_list<const char*> texts) {
  for (const char* text : texts) EXPECT_THROW((void)parse(text), std::invalid_argument) << text;
}

TEST(OptionValues, HaveTheirForms) {
  for (const auto& [text, scale] :
       {std::pair{"1:50", 50.0}, {"50", 50}, {"2:1", 0.5}, {"1:2.5", 2.5}, {"5:2", 0.4}}) {
    EXPECT_DOUBLE_EQ(ParseScale(text), scale) << text;
  }
  ExpectRefused(ParseScale, {"", "0", "1:0", "0:1", "-1", "a", "1:2:3", "1:", ":1", "1e999", "nan", "1 :2"});

  using Size = std::optional<std::pair<double, double>>;
  EXPECT_EQ(ParsePaper("600x300.5mm").sizeMillimetres, Size({600, 300.5}));
  EXPECT_EQ(ParsePaper("10x5080").sizeMillimetres, Size({10, 5080}));
  EXPECT_EQ(ParsePaper("Matrix").sizeMillimetres, Size());
  ExpectRefused(ParsePaper, {"", "9x100", "100x5081", "-100x100", "420,297", "420 297mm"});

  const auto margins = [](const char* text) {
    const Margins each = ParseMargins(text);
    return std::vector({each.left, each.top, each.right, each.bottom});
  };
  EXPECT_EQ(margins("1,2,0,5080"), std::vector<double>({1, 2, 0, 5080}));
  EXPECT_EQ(margins("2.5"), std::vector<double>({2.5, 2.5, 2.5, 2.5}));
  ExpectRefused(ParseMargins, {"", "1,2", "1,2,3,4,5", "-1", "5081", "1,,3,4", "1mm"});

  EXPECT_EQ(ParseColor("#0aFF80"), (Rgb{10, 255, 128}));
  EXPECT_EQ(ParseColor("1,2,255"), (Rgb{1, 2, 255}));
  EXPECT_EQ(ParseColor("Ivory"), (Rgb{255, 255, 240}));
  ExpectRefused(ParseColor, {"", "#12345", "#12345g", "1,2", "1,2,256", "-1,2,3", "pinkish", "#+1+1+1"});
}

}  // namespace
}  // namespace hdiplot
