// Text matrices, exact to the last bit, and extents.
#include "fonts/text_geometry.h"

#include <gtest/gtest.h>

#include <numbers>

namespace hdi {
namespace {

constexpr float kQuarterTurn = 1.5707964F;

// Fused multiply-adds would change the result.
TEST(TextGeometry, RunMatrixIsExact) {
  EXPECT_EQ(ComputeRunMatrix(
                {.x = 1000.25F, .y = -37.5F, .angle = 0.7F, .obliqueAngle = 0.26179939F, .widthFactor = 0.8F},
                1234.567F, true),
            (Matrix{0x1.879966p-1F, 0x1.49d6e6p-1F, -0x1.daa2p-3F, 0x1.1cbcc4p+0F, 0x1.e61ffp+10F,
                    0x1.7aea3ap+9F}));
  // Upwards: the sine is 1, the cosine nearly 0.
  EXPECT_EQ(ComputeRunMatrix({.x = 3, .y = 4, .angle = kQuarterTurn, .obliqueAngle = 0, .widthFactor = 1}, 10,
                             false),
            (Matrix{-0x1.777a5cp-25F, 1, -1, -0x1.777a5cp-25F, 0x1.7ffffcp+1F, 14}));
}

TEST(TextGeometry, SyntheticItalicsFollowTheWidthFactor) {
  TextPlacement placement{.x = 1, .y = 2, .angle = 0, .obliqueAngle = 0, .widthFactor = 1};
  EXPECT_EQ(ComputeRunMatrix(placement, 30, true), (Matrix{1, 0, 0.33916232F, 1, 31, 2}));
  EXPECT_EQ(ComputeRunMatrix(placement, 30, false), (Matrix{1, 0, 0, 1, 31, 2}));
  placement.widthFactor = 0.5F;
  EXPECT_EQ(ComputeRunMatrix(placement, 0, true)[2], 0.16958116F);
}

TEST(TextGeometry, ExtentIsTheBoxAboveTheBaseline) {
  constexpr double kTurn = std::numbers::pi;
  constexpr double kRoot = std::numbers::sqrt2 / 2;
  const struct {
    double advance, height, angle, left, bottom, right, top;
  } cases[] = {{30, 10, 0, 0, 0, 30, 10},
               {30, 10, kTurn / 2, -10, 0, 0, 30},
               {30, 10, kTurn, -30, -10, 0, 0},
               {30, 10, kTurn / 4, -10 * kRoot, 0, 30 * kRoot, 40 * kRoot},
               {-30, -10, 0, -30, -10, 0, 0}};
  for (const auto& c : cases) {
    const engine::Rectangle box = TextExtent(c.advance, c.height, c.angle);
    EXPECT_NEAR(box.left, c.left, 1e-5);
    EXPECT_NEAR(box.bottom, c.bottom, 1e-5);
    EXPECT_NEAR(box.right, c.right, 1e-5);
    EXPECT_NEAR(box.top, c.top, 1e-5);
  }
}

}  // namespace
}  // namespace hdi
