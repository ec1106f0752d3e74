// How geometry calls are stitched into path records.
#include "recording/path.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "tests/recording/recorded_device.h"

namespace hdi {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Without a page started the printable height is 0, so records hold -y of the host's y.
const HT_Double_Point kA{10, 0};
const HT_Double_Point kB{20, -5};
const HT_Double_Point kC{30, -9};

class PathTest : public testing::Test {
 protected:
  RecordedDevice plot_;
  HostDevice* device_ = &plot_.device;
};

TEST_F(PathTest, PolylinesJoinAtEitherEnd) {
  plot_.Polyline({kA, kB});
  plot_.Polyline({kB, kC});
  plot_.Polyline({kA, kC});  // ends at the current point: walked backwards
  DevBeginPath(device_);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("M 10,0", "L 20,5", "L 30,9", "L 10,0", "STROKE"));
}

TEST_F(PathTest, AClosedRingAtTheCurrentPointIsWalkedBackwards) {
  plot_.Polyline({kC, kA});
  plot_.Polyline({kA, kB, kC, kA});
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("M 30,9", "L 10,0", "L 30,9", "L 20,5", "L 10,0"));
}

TEST_F(PathTest, ALoneMoveBecomesADot) {
  plot_.Polyline({kA});
  plot_.Polyline({kB, kC});
  DevEndPage(device_);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("M 10,0", "L 10,0", "M 20,5", "L 30,9", "STROKE", "ENDPAGE"));

  plot_.Polyline({kA, kA});
  DevBeginPath(device_);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("M 10,0", "L 10,0", "STROKE"));
}

TEST_F(PathTest, TheLoneMoveFlagOutlivesAFlush) {
  plot_.Polyline({kA});
  DevBeginPath(device_);
  (void)plot_.TakeRecords();
  plot_.Polyline({kB, kC});
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("L inf,inf", "M 20,5", "L 30,9"));
}

TEST_F(PathTest, PointsRoundToDotsAndCurvesDoNot) {
  plot_.Polyline({{0.5, -0.5}, {-0.5, 0.5}, {-0.6, 0.4}, {2.49, 0}});
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("M 1,1", "L -1,-1", "L -1,0", "L 2,0"));
  const std::vector<HT_Double_Point> curve = {{2.25, 0}, {3.5, -1.5}, {4.5, -2.5}, {5.25, -3.75}, {9, 9}};
  DevPolyBezier(device_, curve.data(), 5);  // the fifth point belongs to no whole group
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("M 2.25,0", "C 3.5,1.5 4.5,2.5 5.25,3.75"));

  plot_.Settings().keepFractions = 1;
  plot_.Polyline({{5.25, -3.75}, {6.5, -4.5}});
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("L 6.5,4.5"));
}

TEST_F(PathTest, ACurveThatGoesNowhereIsDropped) {
  const std::vector<HT_Double_Point> still(4, kA);
  EXPECT_EQ(DevPolyBezier(device_, still.data(), 4), 1);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("M 10,0"));
  EXPECT_EQ(DevPolyBezier(device_, still.data(), 3), 1);
  EXPECT_THAT(plot_.TakeRecords(), IsEmpty());
}

TEST_F(PathTest, PolygonsStandAloneAndWaitForAFill) {
  plot_.Polyline({kA, kB});
  const std::vector<HT_Double_Point> triangle = {kB, kC, kA};
  DevPolygon(device_, triangle.data(), 3);
  DevFillPath(device_);
  DevSetAlpha(device_, 300);
  EXPECT_THAT(plot_.TakeRecords(),
              ElementsAre("M 10,0", "L 20,5", "STROKE", "M 20,5", "L 30,9", "L 10,0", "FILL 1", "ALPHA 300"));

  const std::vector<HT_Double_Point> two = {kA, kB, kB, kC};
  const std::vector<uint32_t> counts = {2, 2};
  DevSetFillMode(device_, 2);
  DevPolyPolygon(device_, two.data(), counts.data(), 2);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("M 10,0", "L 20,5", "L 30,9", "FILL 2"));
  DevSetFillMode(device_, 0);
  DevPolyPolygon(device_, two.data(), counts.data(), 0);
  DevStrokeFillPath(device_);
  EXPECT_THAT(plot_.TakeRecords(), IsEmpty());
}

TEST_F(PathTest, AFillLeavesThePathPendingAndEndPathForgetsIt) {
  plot_.Polyline({kA, kB});
  DevFillPath(device_);
  DevBeginPath(device_);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("M 10,0", "L 20,5", "FILL 1", "STROKE"));
  plot_.Polyline({kA, kB});
  DevEndPath(device_);
  plot_.Polyline({kB, kC});  // the very same point begins a subpath now
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("M 10,0", "L 20,5", "M 20,5", "L 30,9"));
}

TEST_F(PathTest, ClipsOfAPage) {
  const std::vector<HT_Double_Point> quad = {{5, 1}, {9, 9}, {1, 7}, {0, 0}};
  const std::vector<HT_Double_Point> triangle = {kA, kB, kC};
  const ClipPolygon second{.apply = 1, .next = nullptr, .count = 3, .points = triangle.data()};
  const ClipPolygon first{.apply = 0, .next = &second, .count = 4, .points = quad.data()};
  EXPECT_EQ(DevSetClip(device_, nullptr), 1);
  EXPECT_EQ(DevSetClip(device_, &first), 1);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("CLIPRECT 1 -7 5 -1"));
  EXPECT_EQ(DevSetClip(device_, &first), 1);
  EXPECT_THAT(plot_.TakeRecords(),
              ElementsAre("M 5,-1", "L 9,-9", "L 1,-7", "L 0,0", "M 10,0", "L 20,5", "L 30,9", "CLIP"));
  const ClipPolygon open{.apply = 0, .next = nullptr, .count = 3, .points = triangle.data()};
  const ClipPolygon skipped{.apply = 1, .next = &open, .count = 1, .points = quad.data()};
  DevSetClip(device_, &skipped);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("M 10,0", "L 20,5", "L 30,9"));

  DevStartPage(device_, nullptr);
  DevSetClip(device_, &open);  // no quadrilateral: no effect, but it was the page's first
  EXPECT_EQ(plot_.TakeRecords().size(), 1U);
  DevSetClip(device_, &second);
  EXPECT_EQ(plot_.TakeRecords().back(), "CLIP");
}

TEST_F(PathTest, AnArcRunsFromItsFirstToItsSecondAngleSeenWithYUp) {
  const HT_Double_Point center{100, -100};
  EXPECT_EQ(DevArc(device_, &center, 40, 40, 0, 0, 1.5707963267948966), 1);
  const auto records = plot_.TakeRecords();
  ASSERT_GE(records.size(), 2U);
  EXPECT_EQ(records.front(), "M 100,140");
  EXPECT_EQ(records.back().substr(records.back().rfind(' ')), " 140,100");
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

TEST(RoundToDot, IsRoundingHalfAwayFromZeroOfTheWidenedValue) {
  std::mt19937 random(7);
  std::uniform_int_distribution<uint32_t> bits;
  for (int i = 0; i < 200000; ++i) {
    const uint32_t pattern = bits(random);
    float value = 0;
    std::memcpy(&value, &pattern, sizeof value);
    if (std::isnan(value)) continue;
    EXPECT_EQ(RoundToDot(value), static_cast<float>(std::round(static_cast<double>(value)))) << value;
  }
  EXPECT_EQ(RoundToDot(0.49999997F), 0.0F);
  EXPECT_EQ(RoundToDot(-2.5F), -3.0F);
  EXPECT_EQ(RoundToDot(std::numeric_limits<float>::infinity()), std::numeric_limits<float>::infinity());
}

}  // namespace
}  // namespace hdi
