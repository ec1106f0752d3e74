// The command line: single values, and what may not stand together.
#include "host/hdiplot/options.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "host/hdiplot/report.h"
#include "tests/hdiplot/command.h"

namespace hdiplot {
namespace {

using testing::HasSubstr;

std::optional<CommandLine> Parse(std::vector<const char*> words) {
  words.insert(words.begin(), "hdiplot");
  return ParseArguments(static_cast<int>(words.size()), words.data()).commandLine;
}

TEST(OptionValues, Scales) {
  for (const auto& [text, scale] : std::vector<std::pair<const char*, double>>{
           {"1:50", 50}, {"50", 50}, {"2:1", 0.5}, {"1:2.5", 2.5}, {"5:2", 0.4}, {"0.5", 0.5}}) {
    EXPECT_DOUBLE_EQ(ParseScale(text), scale) << text;
  }
  for (const char* text :
       {"", "0", "1:0", "0:1", "-1", "1:-2", "a", "1:2:3", "1:", ":1", "1e999", "nan", "1 :2"}) {
    EXPECT_THROW((void)ParseScale(text), std::invalid_argument) << text;
  }
}

TEST(OptionValues, Papers) {
  using Size = std::optional<std::pair<double, double>>;
  EXPECT_EQ(ParsePaper("ANSI D").name, "ANSI D");
  EXPECT_EQ(ParsePaper("ANSI D").sizeMillimetres, Size());
  EXPECT_EQ(ParsePaper("600x300.5").sizeMillimetres, Size({600, 300.5}));
  EXPECT_EQ(ParsePaper("600x300mm").sizeMillimetres, Size({600, 300}));
  EXPECT_EQ(ParsePaper("Matrix").name, "Matrix");
  for (const char* text : {"", "9x100", "100x5081", "-100x100"}) {
    EXPECT_THROW((void)ParsePaper(text), std::invalid_argument) << text;
  }
}

TEST(OptionValues, Margins) {
  const Margins all = ParseMargins("7.5");
  EXPECT_EQ(std::vector({all.left, all.top, all.right, all.bottom}), std::vector({7.5, 7.5, 7.5, 7.5}));
  const Margins each = ParseMargins("1,2,3,4");
  EXPECT_EQ(std::vector({each.left, each.top, each.right, each.bottom}), std::vector<double>({1, 2, 3, 4}));
  for (const char* text : {"", "1,2", "1,2,3", "1,2,3,4,5", "-1", "1,,3,4", "1mm"}) {
    EXPECT_THROW((void)ParseMargins(text), std::invalid_argument) << text;
  }
}

TEST(OptionValues, Colors) {
  EXPECT_EQ(ParseColor("#0aFF80"), (Rgb{10, 255, 128}));
  EXPECT_EQ(ParseColor("1,2,255"), (Rgb{1, 2, 255}));
  EXPECT_EQ(ParseColor("ivory"), (Rgb{255, 255, 240}));
  for (const char* text :
       {"", "#12345", "#12345g", "1,2", "1,2,256", "-1,2,3", "1,2,3,4", "pinkish", "#+1+1+1"}) {
    EXPECT_THROW((void)ParseColor(text), std::invalid_argument) << text;
  }
}

TEST(Options, AreTakenAsGiven) {
  const auto line = Parse({"--layer", "A*", "a.dxf", "--skip-layer", "B?", "--layer", "C", "b.DXF", "-o",
                           "out", "--portrait", "--dpi", "300", "-q", "--scale", "1:20"});
  ASSERT_TRUE(line);
  EXPECT_THAT(line->inputs, testing::ElementsAre("a.dxf", "b.DXF"));
  EXPECT_THAT(line->plot.layers, testing::ElementsAre("A*", "C"));
  EXPECT_THAT(line->plot.skipLayers, testing::ElementsAre("B?"));
  EXPECT_EQ(line->plot.orientation, Orientation::kPortrait);
  EXPECT_EQ(line->plot.dpi, 300);
  EXPECT_EQ(line->plot.scale, 20);
  EXPECT_EQ(line->verbosity, Verbosity::kQuiet);
  EXPECT_FALSE(line->isTrace);
  EXPECT_TRUE(Parse({"job.JSONL", "-o", "x"})->isTrace);
}

TEST(Options, ThatAreWrongGiveOneMessageAndStatus2) {
  struct Case {
    std::vector<std::string> arguments;
    const char* message;
  };
  const std::vector<Case> cases = {
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
      {{"a.dxf", "--landscape", "--portrait"}, "--landscape"},
      {{"a.dxf", "--fit", "--scale", "1:2"}, "--scale"},
      {{"a.dxf", "--quiet", "--verbose"}, "--quiet"},
      {{"a.dxf", "--dpi", "40000"}, "40000"},
      {{"a.dxf", "--dpi", "fine"}, "fine"},
      {{"a.dxf", "--scale", "1:0"}, "--scale: must be 1:N, M:1 or N, above zero, not \"1:0\""},
      {{"a.dxf", "--background", "pinkish"}, "--background: must be #RRGGBB"},
  };
  const command::Workplace place;
  for (const Case& bad : cases) {
    const command::Outcome outcome = place.RunFake(bad.arguments);
    EXPECT_EQ(outcome.status, 2) << bad.message;
    EXPECT_EQ(outcome.out, "") << bad.message;
    EXPECT_THAT(outcome.err, HasSubstr(bad.message));
    EXPECT_THAT(outcome.err, testing::MatchesRegex("hdiplot: [^\n]*\n"));
  }
  EXPECT_TRUE(place.Names().empty());
}

TEST(Options, HelpAndVersionGoToStandardOutput) {
  const command::Workplace place;
  const command::Outcome help = place.RunFake({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.err, "");
  EXPECT_THAT(help.out, HasSubstr("--skip-layer"));
  EXPECT_THAT(help.out, HasSubstr("Examples:"));
  EXPECT_THAT(place.RunFake({"--version"}).out, testing::MatchesRegex("hdiplot [0-9.]+\n"));
}

TEST(Report, NamesNumbersForPeople) {
  EXPECT_EQ(FormatSummary({"plan.pdf", 234567, 3, 12345, 0.125}),
            "plan.pdf: 3 pages, 12,345 objects, 235 KB, 0.12 s");
  EXPECT_EQ(FormatSummary({"", std::nullopt, 1, 1000000, 12}), "1 page, 1,000,000 objects, 12.00 s");
  EXPECT_EQ(FormatSummary({"a", 999999, 0, 1, 0}), "a: 0 pages, 1 object, 1.0 MB, 0.00 s");
  EXPECT_EQ(FormatSkipped({{"MTEXT", 3}, {"ATTRIB", 3}, {"TEXT", 1200}}),
            "skipped: 1,200 TEXT, 3 ATTRIB, 3 MTEXT");
  EXPECT_EQ(FormatSkipped({}), "");
}

}  // namespace
}  // namespace hdiplot
