// Extents of drawings, orientation, and the place on the sheet.
#include "host/hdiplot/plot/page_setup.h"

#include <gtest/gtest.h>

#include "tests/hdiplot_plot/logging_driver.h"

namespace hdiplot {
namespace {

constexpr double kPi = 3.14159265358979;

Sheet SheetOf(double width, double height) {
  Sheet sheet;
  sheet.width = width, sheet.height = height, sheet.dotsPerMillimetre = 10;
  return sheet;
}

TEST(MeasuredPart, GoThroughInsertsAndLeaveOutWhatIsHidden) {
  Drawing drawing;
  drawing.blocks["B"].base = {1, 1};
  drawing.blocks["B"].entities = {Thing(ArcEntity{{1, 1}, 1, 0, 2 * kPi})};
  InsertEntity insert;
  insert.block = "B";
  insert.at = {10, 0};
  insert.scaleX = 3;
  insert.rotation = kPi / 2;
  insert.columns = 2;
  insert.columnSpacing = 20;
  drawing.entities = {Thing(insert), Thing(LineEntity{{-500, 0}, {500, 0}}, "hidden")};
  drawing.layers["Hidden"].off = true;
  FontBook fonts;
  const Box box = MeasuredPart(drawing, {}, fonts).extents;
  EXPECT_NEAR(box.low.x, 9, 1e-9);
  EXPECT_NEAR(box.high.x, 11, 1e-9);
  EXPECT_NEAR(box.low.y, -3, 1e-9);
  EXPECT_NEAR(box.high.y, 23, 1e-9);
}

TEST(BestOrientation, TakesTheLargerPlot) {
  const Sheet portrait = SheetOf(2000, 2900);
  const Sheet landscape = SheetOf(2900, 2000);
  Drawing drawing;
  FontBook fonts;
  const auto best = [&](const PlotOptions& options = {}) {
    return BestOrientation(MeasuredPart(drawing, options, fonts), options, portrait, landscape);
  };
  EXPECT_EQ(best(), Orientation::kPortrait);  // an empty drawing
  drawing.entities = {Thing(LineEntity{{0, 0}, {40, 30}})};
  EXPECT_EQ(best(), Orientation::kLandscape);
  PlotOptions asked;
  asked.orientation = Orientation::kPortrait;
  EXPECT_EQ(best(asked), Orientation::kPortrait);
  drawing.entities = {Thing(LineEntity{{0, 0}, {30, 40}})};
  EXPECT_EQ(best(), Orientation::kPortrait);
}

TEST(DrawingToDots, FitsOrScalesAndCentres) {
  const Sheet sheet = SheetOf(2000, 3000);
  Box extents;
  extents.Add({10, 10});
  extents.Add({110, 60});
  const Affine map = DrawingToDots(extents, 1, {}, sheet);
  EXPECT_NEAR(map({10, 10}).x, 0, 1e-9);
  EXPECT_NEAR(map({110, 60}).x, 2000, 1e-9);
  EXPECT_NEAR(map({110, 60}).y, 1000, 1e-9);  // above the middle, where Y points down
  EXPECT_NEAR(map({10, 10}).y, 2000, 1e-9);

  Box point;
  point.Add({7, 7});
  EXPECT_NEAR(DrawingToDots(point, 25.4, {}, sheet)({7, 7}).x, 1000, 1e-9);
  // Metres at 1:50 are 20 mm, 200 dots.
  PlotOptions options;
  options.scale = 50;
  const Affine scaled = DrawingToDots(extents, 1000, options, sheet);
  EXPECT_NEAR(scaled.LargestScale(), 200, 1e-9);
  EXPECT_NEAR(scaled({60, 35}).y, 1500, 1e-9);
}

}  // namespace
}  // namespace hdiplot
