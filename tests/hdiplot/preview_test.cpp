// The picture of the first page, and what keeps it from being made.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "host/hdiplot/image/image_file.h"
#include "tests/hdiplot/command.h"

namespace {

using command::Outcome;
using command::Workplace;
using testing::HasSubstr;

// A sheet of four by two inches with its left half red, half of it seen through; a second page is empty.
constexpr const char* kTrace =
    R"({"job": {"devMode": {"dmPrintQuality": 100, "dmPaperSize": 0}, "customPaper": {"name": "Card", "width": 1016, "height": 508, "left": 0, "right": 0, "top": 0, "bottom": 0}}}
{"call": "DevStartPage"}
{"call": "DevSetFillMode", "mode": 2}
{"call": "DevSetBrush", "color": [255, 0, 0]}
{"call": "DevSetAlpha", "alpha": 128}
{"call": "DevPolygon", "points": [[-50, -50], [200, -50], [200, 250], [-50, 250], [-50, -50]]}
{"call": "DevFillPath"}
{"call": "DevEndPage"}
{"call": "DevStartPage"}
{"call": "DevEndPage"}
)";

class Previews : public testing::Test {
 protected:
  Previews() { place.Write("job.jsonl", kTrace); }

  // One message and nothing but it, and the status.
  void ExpectFailure(const Outcome& outcome, int status, const std::string& message) {
    EXPECT_EQ(outcome.status, status);
    EXPECT_EQ(std::ranges::count(outcome.err, '\n'), 1) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr(message));
  }

  Workplace place;
};

TEST_F(Previews, ShowTheFirstPage) {
  const Outcome outcome =
      place.RunReal({"job.jsonl", "-o", "job.pdf", "--preview", "job.png", "--preview-dpi", "50"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const hdiplot::ImageData image = hdiplot::ReadImageFile(place.Path("job.png"));
  ASSERT_EQ(image.bitCount, 32);
  EXPECT_EQ(std::pair(image.width, image.height), std::pair(200, 100));
  const auto blueAt = [&image](size_t column) { return image.pixels[(200 * 50 + column) * 4]; };
  EXPECT_NEAR(blueAt(50), 127, 2);
  EXPECT_EQ(blueAt(150), 255);
}

TEST_F(Previews, FailWithOneMessage) {
  place.Write("job.png", "an old picture");
  ExpectFailure(place.RunReal({"job.jsonl", "-o", "a.pdf", "--preview", "none/job.png"}), 2,
                "none/job.png: cannot be written");
  ExpectFailure(place.RunReal({"job.jsonl", "--preview", "job.png"}), 2, "no output file");
  ExpectFailure(place.RunReal({"job.jsonl", "-o", "file:", "--preview", "job.png"}), 2,
                "needs an output file");
  EXPECT_FALSE(place.Has("a.pdf"));

  // More pixels than a picture takes, and a plot without a page: the PDF is there all the same.
  place.Write(
      "wide.jsonl",
      R"({"job": {"devMode": {"dmPaperSize": 0}, "customPaper": {"name": "Wide", "width": 30000, "height": 30000, "left": 0, "right": 0, "top": 0, "bottom": 0}}}
{"call": "DevStartPage"}
{"call": "DevEndPage"}
)");
  ExpectFailure(
      place.RunReal({"wide.jsonl", "-o", "wide.pdf", "--preview", "job.png", "--preview-dpi", "2400"}), 1,
      "too large for a preview");
  EXPECT_TRUE(place.Has("wide.pdf"));
  EXPECT_EQ(place.Read("job.png"), "an old picture");
}

}  // namespace
