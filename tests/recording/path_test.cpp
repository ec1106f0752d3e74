// How geometry calls are joined to path records.
#include "recording/path.h"

#include <gtest/gtest.h>

#include <limits>

#include "tests/recording/recorded_device.h"

namespace hdi {
namespace {

using Points = std::vector<HT_Double_Point>;

// Before a page is started the printable height is 0, so records hold the host's y negated.
constexpr HT_Double_Point kA{10, 0};
constexpr HT_Double_Point kB{20, -5};
constexpr HT_Double_Point kC{30, -9};

class PathTest : public testing::Test {
 protected:
  RecordedDevice plot_;
  HostDevice* device_ = &plot_.device;
};

TEST_F(PathTest, PolylinesJoinAndLoneMovesBecomeDots) {
  const std::pair<std::vector<Points>, const char*> cases[] = {
      {{{kA, kB}, {kB, kC}}, "M 10 0, L 20 5, L 30 9, STROKE"},
      {{{kA, kB}, {kC, kB}}, "M 10 0, L 20 5, L 30 9, STROKE"},                          // added backwards
      {{{kC, kA}, {kA, kB, kC, kA}}, "M 30 9, L 10 0, L 30 9, L 20 5, L 10 0, STROKE"},  // also for a ring
      {{{kA, kB}, {{20.4, -5.4}, kC}}, "M 10 0, L 20 5, L 30 9, STROKE"},
      {{{kA, kB}, {{20.6, -5}, kC}}, "M 10 0, L 20 5, M 21 5, L 30 9, STROKE"},
      {{{kA}, {kB, kC}}, "M 10 0, L 10 0, M 20 5, L 30 9, STROKE"},
      {{{kA, kA}}, "M 10 0, L 10 0, STROKE"},
      // loneMove is still set after that flush; the replay drops the line to infinity.
      {{{kB, kC}}, "L inf inf, M 20 5, L 30 9, STROKE"},
      {{{{0.5, -0.5}, {-0.5, 0.5}, {-0.6, 0.4}, {2.49, 0}}}, "M 1 1, L -1 -1, L -1 0, L 2 0, STROKE"},
  };
  for (const auto& [polylines, records] : cases) {
    for (const Points& points : polylines) plot_.Polyline(points);
    DevBeginPath(device_);
    EXPECT_EQ(plot_.TakeRecords(), records);
  }
}

TEST_F(PathTest, CurvesDoNotRound) {
  const Points curve = {{2.25, 0}, {3.5, -1.5}, {4.5, -2.5}, {5.25, -3.75}, {9, 9}, {8, 8}, {7, 7}};
  DevPolyBezier(device_, curve.data(), 6);  // the last two points are an incomplete group
  EXPECT_EQ(plot_.TakeRecords(), "M 2.25 0, C 3.5 1.5 4.5 2.5 5.25 3.75");
  plot_.Settings().keepFractions = 1;
  plot_.Polyline({{5.25, -3.75}, {6.5, -4.5}});
  EXPECT_EQ(plot_.TakeRecords(), "L 6.5 4.5");

  const Points still(4, kA);
  EXPECT_EQ(DevPolyBezier(device_, still.data(), 4), 1);
  EXPECT_EQ(DevPolyBezier(device_, still.data(), 3), 1);
  EXPECT_EQ(plot_.TakeRecords(), "M 10 0");  // a curve of a single point is dropped
}

TEST_F(PathTest, PolygonsAreSeparateAndWaitForAFill) {
  plot_.Polyline({kA, kB});
  const Points triangle = {kB, kC, kA};
  DevPolygon(device_, triangle.data(), 3);
  DevFillPath(device_);
  DevSetAlpha(device_, 300);
  EXPECT_EQ(plot_.TakeRecords(), "M 10 0, L 20 5, STROKE, M 20 5, L 30 9, L 10 0, FILL 1, ALPHA 300");

  const Points two = {kA, kB, kB, kC};
  const uint32_t counts[] = {2, 2};
  DevSetFillMode(device_, 2);
  DevPolyPolygon(device_, two.data(), counts, 2);
  EXPECT_EQ(plot_.TakeRecords(), "M 10 0, L 20 5, L 30 9, FILL 2");
  DevSetFillMode(device_, 0);
  DevPolyPolygon(device_, two.data(), counts, 0);
  DevStrokeFillPath(device_);
  EXPECT_EQ(plot_.TakeRecords(), "");
}

TEST_F(PathTest, FillLeavesThePathPendingAndEndPathDropsIt) {
  plot_.Polyline({kA, kB});
  DevFillPath(device_);
  DevEndPage(device_);
  EXPECT_EQ(plot_.TakeRecords(), "M 10 0, L 20 5, FILL 1, STROKE, ENDPAGE");
  plot_.Polyline({kA, kB});
  DevEndPath(device_);
  plot_.Polyline({kB, kC});  // the same point now starts a subpath
  EXPECT_EQ(plot_.TakeRecords(), "M 10 0, L 20 5, M 20 5, L 30 9");
}

TEST_F(PathTest, ClipsOfAPage) {
  const Points quad = {{5, 1}, {9, 9}, {1, 7}, {0, 0}};
  const Points triangle = {kA, kB, kC};
  const ClipPolygon second{.apply = 1, .next = nullptr, .count = 3, .points = triangle.data()};
  const ClipPolygon first{.apply = 0, .next = &second, .count = 4, .points = quad.data()};
  EXPECT_EQ(DevSetClip(device_, nullptr), 1);
  EXPECT_EQ(DevSetClip(device_, &first), 1);
  EXPECT_EQ(plot_.TakeRecords(), "CLIPRECT 1 -7 5 -1");
  EXPECT_EQ(DevSetClip(device_, &first), 1);
  EXPECT_EQ(plot_.TakeRecords(), "M 5 -1, L 9 -9, L 1 -7, L 0 0, M 10 0, L 20 5, L 30 9, CLIP");
  const ClipPolygon open{.apply = 0, .next = nullptr, .count = 3, .points = triangle.data()};
  const ClipPolygon skipped{.apply = 1, .next = &open, .count = 1, .points = quad.data()};
  DevSetClip(device_, &skipped);
  EXPECT_EQ(plot_.TakeRecords(), "M 10 0, L 20 5, L 30 9");

  DevStartPage(device_, nullptr);
  DevSetClip(device_, &open);  // not a quadrilateral: no effect, but it was the page's first clip
  EXPECT_EQ(plot_.TakeRecords(), "PAGE");
  DevSetClip(device_, &second);
  EXPECT_TRUE(plot_.TakeRecords().ends_with(", CLIP"));
}

TEST_F(PathTest, ArcRunsFromItsFirstToItsSecondAngleWithYUp) {
  const HT_Double_Point center{100, -100};
  EXPECT_EQ(DevArc(device_, &center, 40, 40, 0, 0, 1.5707963267948966), 1);
  const std::string records = plot_.TakeRecords();
  EXPECT_TRUE(records.starts_with("M 100 140, C ")) << records;
  EXPECT_TRUE(records.ends_with(" 140 100")) << records;
}

TEST(Results, WithoutAJobAWriterOrPoints) {
  HostDevice bare{};
  EXPECT_EQ(DevPolyline(&bare, &kA, 0), 1);
  EXPECT_EQ(DevPolyline(nullptr, &kA, 1), 0);
  EXPECT_EQ(DevPolygon(&bare, &kA, 1), 0);
  EXPECT_EQ(DevPolyPolygon(&bare, nullptr, nullptr, 0), 1);
  EXPECT_EQ(DevPolyBezier(&bare, &kA, 4), 0);
  EXPECT_EQ(DevArc(&bare, &kA, 1, 1, 0, 0, 1), 0);
  EXPECT_EQ(DevFillPath(&bare), 1);
  EXPECT_EQ(DevSetClip(&bare, nullptr), 0);
  EXPECT_EQ(DevSetAlpha(&bare, 1), 0);

  RecordedDevice plot;
  plot.Job().pageWriter = nullptr;
  EXPECT_EQ(plot.Polyline({kA}), 0);
  EXPECT_EQ(DevArc(&plot.device, &kA, 1, 1, 0, 0, 1), 1);
}

TEST(RoundToDot, RoundsHalfAwayFromZero) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const std::pair<float, float> cases[] = {{0.49999997F, 0},
                                           {0.5F, 1},
                                           {-0.5F, -1},
                                           {2.5F, 3},
                                           {8388607.5F, 8388608},
                                           {16777217, 16777217},
                                           {2147483648.0F, 2147483648.0F},
                                           {-3e30F, -3e30F},
                                           {kInfinity, kInfinity}};
  for (const auto& [value, dots] : cases) EXPECT_EQ(RoundToDot(value), dots) << value;
}

}  // namespace
}  // namespace hdi
