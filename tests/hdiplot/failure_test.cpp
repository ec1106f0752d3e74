// Failures: one message, the right exit status, and unchanged files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/hdiplot/command.h"
#include "tests/support/rows.h"

namespace {

using command::ExpectFailure;
using command::Outcome;
using command::Workplace;

class Failures : public testing::Test {
 protected:
  Failures() {
    place.Write("good.jsonl", "{\"call\": \"DevStartPage\"}\n{\"call\": \"DevEndPage\"}\n");
    place.Write("bad.jsonl", "{\"call\": \"DevStartPage\"}\n{\"call\": \"DevEndPag\"}\n");
    place.Write("a.dxf", command::LineDrawing());
    place.Write("text.dxf", "This is no drawing.\n");
    place.Write("bad.map", "arial.ttf = DejaVu Sans\nsimplex\n");
    place.Write("old.pdf", "an old file");
    place.Fetch("sheets.dxf");
    std::filesystem::create_directory(place.Path("directory.pdf"));
    std::filesystem::create_symlink("new.pdf", place.Path("trap.jsonl"));
    mkfifo(place.Path("pipe.pdf").c_str(), 0600);
    mkfifo(place.Path("pipe.jsonl").c_str(), 0600);
  }

  Workplace place;
};

TEST_F(Failures, GiveOneMessageAndTouchNothing) {
  const std::vector<std::string> names = place.Names();
  for (const auto& [words, message] : rows::Read("hdiplot/failures.txt")) {
    SCOPED_TRACE(words);
    ExpectFailure(place.RunReal(words), message);
  }
  ExpectFailure(place.RunReal("a.dxf -o 'latin\xe4'"), "--output: must be a file name in UTF-8");
  ExpectFailure(place.RunReal("'miss\x1b[1m\xc2\x80\x7f.dxf'"),
                "hdiplot: miss?[1m\xc2??.dxf: cannot be opened");
  EXPECT_EQ(place.Names(), names);
  EXPECT_EQ(place.Read("old.pdf"), "an old file");
}

TEST_F(Failures, OfAnEmptyCommandLineShowAnExample) {
  const Outcome outcome = place.RunReal("");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, testing::MatchesRegex("hdiplot: [^\n]*--help\\)\nexample: hdiplot [^\n]*\n"));
  const std::string help = place.RunReal("--help").out;
  EXPECT_THAT(help, testing::Not(testing::ContainsRegex("Excludes:|Needs:")));
}

TEST_F(Failures, OfTheDriverLeaveNoRecord) {
  const std::string words = "good.jsonl -o new.pdf --record new.jsonl";
  ExpectFailure(place.RunFake(words, "FAKE_REFUSE=1"), "new.pdf: the driver did not start the document");
  EXPECT_FALSE(place.Has("new.pdf"));
  ExpectFailure(place.RunFake(words, "FAKE_THROW=1"), "new.pdf: cannot be written: the cable is out");
  ExpectFailure(place.RunFake(words, "FAKE_TRUNCATE=1"), "new.pdf: is incomplete; is the disk full?");
  EXPECT_FALSE(place.Has("new.jsonl"));
  EXPECT_THAT(place.RunFake("good.jsonl -o new.pdf --device Third").err,
              testing::HasSubstr("has no device \"Third\"; there are: \"First\" \"Zweites Gerät\"\n"));
}

TEST_F(Failures, OfDrawingsLeaveTheOthersPlotted) {
  const Outcome none = place.RunReal("text.dxf missing.dxf -o old.pdf");
  EXPECT_EQ(none.status, 2);
  EXPECT_THAT(none.err, testing::MatchesRegex("hdiplot: text.dxf:1: [^\n]*\nhdiplot: missing.dxf: [^\n]*\n"));
  EXPECT_EQ(place.Read("old.pdf"), "an old file");

  ExpectFailure(place.RunReal("text.dxf a.dxf -o old.pdf --quiet"), "text.dxf:1: ", 1);
  EXPECT_THAT(place.Read("old.pdf"), testing::StartsWith("%PDF-"));
  ExpectFailure(place.RunReal("sheets.dxf a.dxf -o old.pdf --layout plan --quiet"), "a.dxf: has no layouts",
                1);
}

// The PDF is written nevertheless.
TEST_F(Failures, OfPreviewsLeaveTheOldOne) {
  place.Write("wide.jsonl",
              R"({"job": {"devMode": {"dmPaperSize": 0}, "customPaper": {"name": "Wide", "width": 30000,)"
              R"( "height": 30000, "left": 0, "right": 0, "top": 0, "bottom": 0}}})"
              "\n{\"call\": \"DevStartPage\"}\n{\"call\": \"DevEndPage\"}\n");
  place.Write("job.png", "an old picture");
  ExpectFailure(place.RunReal("wide.jsonl -q -o wide.pdf --preview job.png --preview-dpi 2400"),
                "too large for a preview", 1);
  EXPECT_TRUE(place.Has("wide.pdf"));
  EXPECT_EQ(place.Read("job.png"), "an old picture");
}

}  // namespace
