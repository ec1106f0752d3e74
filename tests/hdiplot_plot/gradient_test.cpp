// Gradients: the areas of their bands, the clip to their boundary, and what is drawn of them.
#include "host/hdiplot/plot/gradient.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/hdiplot_plot/logging_driver.h"

namespace hdiplot {
namespace {

using Form = HatchGradient::Form;

bool IsInside(const Ring& ring, Vec2 p) {
  bool inside = false;
  for (size_t i = 0; i < ring.size(); ++i) {
    const Vec2 a = ring[i];
    const Vec2 b = ring[(i + 1) % ring.size()];
    if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (b.x - a.x) * (p.y - a.y) / (b.y - a.y)) inside = !inside;
  }
  return inside;
}

// The last area around a point: the band that shows there, as a share of all.
double BandAt(const std::vector<Ring>& outlines, Vec2 p) {
  size_t band = 0;
  for (size_t i = 0; i < outlines.size(); ++i) {
    const bool isIn = IsInside(outlines[i], p);
    EXPECT_TRUE(!isIn || band + 1 >= i) << "not nested at area " << i;
    if (isIn) band = i;
  }
  return static_cast<double>(band) / static_cast<double>(outlines.size() - 1);
}

HatchGradient Gradient(Form form) {
  HatchGradient gradient;
  gradient.form = form;
  gradient.first = {EntityColor::Kind::kTrue, 0x000000};
  gradient.last = {EntityColor::Kind::kTrue, 0xFF0000};
  return gradient;
}

const std::vector<Ring> kBox{{{0, 0}, {100, 0}, {100, 40}, {0, 40}}};

TEST(NestedOutlines, RunAsTheFormSays) {
  const auto bandAt = [](const HatchGradient& gradient, Vec2 p) {
    return BandAt(NestedOutlines(gradient, kBox, 64, 0.01), p);
  };
  constexpr double kNear = 0.02;
  EXPECT_NEAR(bandAt(Gradient(Form::kLinear), {25, 20}), 0.25, kNear);
  EXPECT_NEAR(bandAt(Gradient(Form::kCylinder), {75, 20}), 0.5, kNear);
  EXPECT_NEAR(bandAt(Gradient(Form::kSpherical), {50, 20}), 1, kNear);
  EXPECT_NEAR(bandAt(Gradient(Form::kSpherical), {100, 40}), 0, kNear);
  EXPECT_NEAR(bandAt(Gradient(Form::kHemispherical), {50, 0.1}), 1, kNear);
  EXPECT_NEAR(bandAt(Gradient(Form::kHemispherical), {0, 40}), 0, kNear);
  EXPECT_NEAR(bandAt(Gradient(Form::kCurved), {50, 0.1}), 1, kNear);
  EXPECT_NEAR(bandAt(Gradient(Form::kCurved), {1, 39.9}), 0, kNear);

  HatchGradient upwards = Gradient(Form::kLinear);
  upwards.right = {0, 1};
  upwards.up = {-1, 0};
  EXPECT_NEAR(bandAt(upwards, {99, 30}), 0.75, kNear);
  HatchGradient shifted = Gradient(Form::kSpherical);
  shifted.shift = 1;
  EXPECT_NEAR(bandAt(shifted, {25, 30}), 1, kNear);
  HatchGradient endOn = Gradient(Form::kLinear);
  endOn.up = {1, 0};
  EXPECT_TRUE(NestedOutlines(endOn, kBox, 64, 0.01).empty());
}

TEST(TurnedForWinding, HolesRunTheOtherWay) {
  const auto square = [](double low, double high) {
    return Ring{{low, low}, {high, low}, {high, high}, {low, high}};
  };
  const auto turned = TurnedForWinding({square(2, 8), square(0, 10), square(4, 6), square(20, 30)});
  const auto runsLeft = [](const Ring& ring) { return Cross(ring[1] - ring[0], ring[2] - ring[1]) > 0; };
  EXPECT_FALSE(runsLeft(turned[0])) << "a hole";
  EXPECT_TRUE(runsLeft(turned[1]));
  EXPECT_TRUE(runsLeft(turned[2])) << "an island in it";
  EXPECT_TRUE(runsLeft(turned[3]));
}

TEST(Gradients, AreClippedBandsOnlyWhereTheyShow) {
  HatchEntity hatch;
  hatch.solid = true;
  hatch.loops.resize(1);
  hatch.loops[0].polyline.vertices = {{{10, 10}, 0, 0, 0}, {{90, 10}, 0, 0, 0}, {{50, 90}, 0, 0, 0}};
  hatch.gradient = Gradient(Form::kLinear);
  Drawing drawing = SheetDrawing();
  drawing.entities.push_back(Thing(hatch));
  const auto areas = [&](const PlotOptions& options) {
    return Named(PlotOnSheet(drawing, options), "PolyPolygon");
  };
  const auto calls = PlotOnSheet(drawing);
  const auto clips = Named(calls, "SetClip");
  ASSERT_EQ(clips.size(), 2U) << "the boundary and its end";
  EXPECT_EQ(clips[0].points.at(0).size(), 3U);
  EXPECT_EQ(clips[1].points.at(0).size(), 4U);
  ASSERT_EQ(areas(OneToOne()).size(), 64U);
  EXPECT_EQ(areas(OneToOne())[0].points.size(), 1U) << "opaque bands lie on one another";

  auto& attributes = drawing.entities.back().attributes;
  attributes.alpha = {EntityAlpha::Kind::kOwn, 128};
  const auto bands = areas(OneToOne());
  ASSERT_EQ(bands.size(), 11U) << "none narrower than a pixel of a screen";
  for (size_t i = 1; i + 1 < bands.size(); ++i) {
    ASSERT_EQ(bands[i].points.size(), 2U) << "they lie beside one another";
    const auto last = std::ranges::max(bands[i].points[0], {}, [](const auto& p) { return p.x; });
    EXPECT_GT(last.x, 120) << "the side that all share is to be far from the clip";
  }

  PlotOptions monochrome = OneToOne();
  monochrome.monochrome = true;
  ASSERT_EQ(areas(monochrome).size(), 1U);
  EXPECT_EQ(areas(monochrome)[0].points[0].size(), 4U) << "the boundary itself, closed";
}

}  // namespace
}  // namespace hdiplot
