// Dashes of pens.
#include "hdiplot/plot/pens.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace hdiplot {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(PenDashes, AlternateFromADashOn) {
  EXPECT_THAT(PenDashes({6, -3}, 10, 0), ElementsAre(60, 30));
  EXPECT_THAT(PenDashes({8, -2, 0, -2}, 10, 0), ElementsAre(80, 20, 0, 20));
  EXPECT_THAT(PenDashes({-2, 5}, 10, 0), ElementsAre(50, 20));  // begins with a gap
  EXPECT_THAT(PenDashes({1, 2, -3, -4, 0, 5, -1}, 10, 0), ElementsAre(30, 70, 50, 10));
  EXPECT_THAT(PenDashes({2, -1, 3}, 10, 0), ElementsAre(50, 10));  // one dash across the pattern's end
  EXPECT_THAT(PenDashes({-1, 4, -2}, 10, 0), ElementsAre(40, 30));
}

TEST(PenDashes, KeepThePatternsLength) {
  EXPECT_THAT(PenDashes({1.4, -1.4, 1.4, -1.4, 1.4, -1.4}, 1, 0), ElementsAre(1, 2, 1, 2, 1, 1));
  EXPECT_THAT(PenDashes({10, -0.2, 10, -0.2}, 1, 0), ElementsAre(10, 1, 9, 1));  // a gap stays a gap
  EXPECT_THAT(PenDashes({0, -5, 0, -5}, 1, 1), ElementsAre(1, 4, 1, 4));         // for flat ends
}

TEST(PenDashes, BecomeASolidLine) {
  EXPECT_THAT(PenDashes({}, 10, 0), IsEmpty());
  EXPECT_THAT(PenDashes({5}, 10, 0), IsEmpty());
  EXPECT_THAT(PenDashes({-5, -1}, 10, 0), IsEmpty());
  EXPECT_THAT(PenDashes({3, -3}, 0.9, 0), IsEmpty());  // too small to be seen
  EXPECT_THAT(PenDashes({3, -3}, 1, 0), ElementsAre(3, 3));
  EXPECT_THAT(PenDashes({3, -3}, 1e300, 0), IsEmpty());
  EXPECT_THAT(PenDashes({3, -3}, -1, 0), IsEmpty());
}

}  // namespace
}  // namespace hdiplot
