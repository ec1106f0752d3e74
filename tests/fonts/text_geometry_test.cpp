// Matrices to the last bit, and extents.
#include "fonts/text_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace hdi {
namespace {

constexpr float kQuarterTurn = 1.5707964F;

TEST(TextGeometry, TheRunMatrixIsExact) {
  EXPECT_EQ(ComputeRunMatrix(
                {.x = 1000.25F, .y = -37.5F, .angle = 0.7F, .obliqueAngle = 0.26179939F, .widthFactor = 0.8F},
                1234.567F, true),
            (Matrix{0x1.879966p-1F, 0x1.49d6e6p-1F, -0x1.daa2p-3F, 0x1.1cbcc4p+0F, 0x1.e61ffp+10F,
                    0x1.7aea3ap+9F}));
  EXPECT_EQ(
      ComputeRunMatrix({.x = 0.1F, .y = 0.2F, .angle = -2.5F, .obliqueAngle = -0.3F, .widthFactor = 1.7F},
                       99.9F, true),
      (Matrix{-0x1.9a2f7ep-1F, -0x1.326afp-1F, 0x1.89998cp-2F, -0x1.ec128ep-1F, -0x1.3fbcacp+6F,
              -0x1.dcb2ecp+5F}));
  // Upwards: the sine is 1, the cosine all but 0.
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

TEST(TextGeometry, TheExtentIsTheBoxAboveTheBaseLine) {
  const auto expectBox = [](const engine::Rectangle& box, double left, double bottom, double right,
                            double top) {
    EXPECT_NEAR(box.left, left, 1e-5);
    EXPECT_NEAR(box.bottom, bottom, 1e-5);
    EXPECT_NEAR(box.right, right, 1e-5);
    EXPECT_NEAR(box.top, top, 1e-5);
  };
  expectBox(TextExtent(30, 10, 0), 0, 0, 30, 10);
  expectBox(TextExtent(30, 10, std::numbers::pi / 2), -10, 0, 0, 30);
  expectBox(TextExtent(30, 10, std::numbers::pi), -30, -10, 0, 0);
  const double root = std::numbers::sqrt2 / 2;
  expectBox(TextExtent(30, 10, std::numbers::pi / 4), -10 * root, 0, 30 * root, 40 * root);
  expectBox(TextExtent(-30, -10, 0), -30, -10, 0, 0);
}

}  // namespace
}  // namespace hdi
