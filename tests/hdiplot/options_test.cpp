// The command line: single values, and what may not stand together.
#include "host/hdiplot/options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "tests/hdiplot/command.h"

namespace hdiplot {
namespace {

using testing::HasSubstr;

// Each text is refused by the function.
template <typename Function>
void ExpectRefused(Function parse, std::initializer_list<const char*> texts) {
  for (const char* text : texts) EXPECT_THROW((void)parse(text), std::invalid_argument) << text;
}

TEST(Options, HaveValuesInTheirForms) {
  for (const auto& [text, scale] :
       {std::pair{"1:50", 50.0}, {"50", 50}, {"2:1", 0.5}, {"1:2.5", 2.5}, {"5:2", 0.4}}) {
    EXPECT_DOUBLE_EQ(ParseScale(text), scale) << text;
  }
  ExpectRefused(ParseScale, {"", "0", "1:0", "0:1", "-1", "a", "1:2:3", "1:", ":1", "1e999", "nan", "1 :2"});
  using Size = std::optional<std::pair<double, double>>;
  EXPECT_EQ(ParsePaper("600x300.5mm").sizeMillimetres, Size({600, 300.5}));
  EXPECT_EQ(ParsePaper("Matrix").sizeMillimetres, Size());
  ExpectRefused(ParsePaper, {"", "9x100", "100x5081", "-100x100"});
  const Margins each = ParseMargins("1,2,3,4");
  EXPECT_EQ(std::vector({each.left, each.top, each.right, each.bottom}), std::vector<double>({1, 2, 3, 4}));
  ExpectRefused(ParseMargins, {"", "1,2", "1,2,3,4,5", "-1", "1,,3,4", "1mm"});
  EXPECT_EQ(ParseColor("#0aFF80"), (Rgb{10, 255, 128}));
  EXPECT_EQ(ParseColor("1,2,255"), (Rgb{1, 2, 255}));
  EXPECT_EQ(ParseColor("ivory"), (Rgb{255, 255, 240}));
  ExpectRefused(ParseColor, {"", "#12345", "#12345g", "1,2", "1,2,256", "-1,2,3", "pinkish", "#+1+1+1"});
}

TEST(Options, ThatAreWrongGiveOneMessageAndStatus2) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{}, "is required"},
      {{"a.dxf", "--unknown"}, "--unknown"},
      {{"a.txt"}, "a.txt: is neither a drawing"},
      {{"a.jsonl", "b.jsonl", "-o", "x"}, "played alone"},
      {{"a.dxf", "b.jsonl", "-o", "x"}, "played alone"},
      {{"a.dxf", "b.dxf"}, "--output"},
      {{"a.dxf", "-o", ""}, "names no file"},
      {{"a.dxf", "-o", "out/"}, "names no file"},
      {{"a.dxf", "--results"}, "--results"},
      {{"a.jsonl", "-o", "x", "--paper", "A3"}, "--paper: is for drawings"},
      {{"a.jsonl", "-o", "x", "--monochrome"}, "--monochrome: is for drawings"},
      {{"a.jsonl", "-o", "x", "--font-map", "f"}, "--font-map: is for drawings"},
      {{"a.jsonl", "-o", "x", "--no-links"}, "--no-links: is for drawings"},
      {{"a.jsonl", "--list"}, "--list: is for drawings"},
      {{"a.dxf", "--list", "--record", "x"}, "--list"},
      {{"a.dxf", "--preview", "a.jpg"}, "--preview: takes the name of a PNG file"},
      {{"a.dxf", "--preview-dpi", "50"}, "--preview"},
      {{"a.dxf", "--landscape", "--portrait"}, "--landscape"},
      {{"a.dxf", "--fit", "--scale", "1:2"}, "--scale"},
      {{"a.dxf", "--quiet", "--verbose"}, "--quiet"},
      {{"a.dxf", "--dpi", "40000"}, "40000"},
      {{"a.dxf", "--dpi", "fine"}, "fine"},
      {{"a.dxf", "--scale", "1:0"}, "--scale: must be 1:N, M:1 or N, above zero, not \"1:0\""},
      {{"a.dxf", "--background", "pinkish"}, "--background: must be #RRGGBB"},
  };
  const command::Workplace place;
  for (const auto& [arguments, message] : cases) {
    const command::Outcome outcome = place.RunFake(arguments);
    EXPECT_EQ(outcome.status, 2) << message;
    EXPECT_EQ(outcome.out, "") << message;
    EXPECT_THAT(outcome.err, HasSubstr(message));
    EXPECT_THAT(outcome.err, testing::MatchesRegex("hdiplot: [^\n]*\n"));
  }
  EXPECT_TRUE(place.Names().empty());
}

}  // namespace
}  // namespace hdiplot
