// Compares hatch patterns with a test of single points.
#include <gtest/gtest.h>

#include <random>

#include "hdiplot/plot/hatch_pattern.h"

namespace hdiplot {
namespace {

// By the winding angle, not by crossings like the cutter.
bool IsInside(const std::vector<Ring>& rings, Vec2 p) {
  int windings = 0;
  for (const Ring& ring : rings) {
    double turn = 0;
    for (size_t i = 0; i < ring.size(); ++i) {
      const Vec2 a = ring[i] - p;
      const Vec2 b = ring[(i + 1) % ring.size()] - p;
      turn += std::atan2(Cross(a, b), Dot(a, b));
    }
    windings += static_cast<int>(std::lround(turn / 6.283185307179586));
  }
  return windings % 2 != 0;
}

// Whether line `line` of the family has a dash at `along` from its base point.
bool IsDash(const HatchPatternLine& family, double along) {
  if (family.dashes.empty()) return true;
  double period = 0;
  for (const double d : family.dashes) period += std::abs(d);
  double rest = along - std::floor(along / period) * period;
  for (const double d : family.dashes) {
    if (rest < std::abs(d)) return d > 0;
    rest -= std::abs(d);
  }
  return false;
}

bool IsCovered(const std::vector<PatternPiece>& pieces, Vec2 p) {
  for (const PatternPiece& piece : pieces) {
    const Vec2 run = piece.to - piece.from;
    const double part = Dot(p - piece.from, run) / Dot(run, run);
    if (part >= 0 && part <= 1 && Length(Between(piece.from, piece.to, part) - p) < 1e-6) return true;
  }
  return false;
}

TEST(PatternCutter, DrawsWhatIsInsideAndNothingElse) {
  // A star with an island; some corners are on lines of the first family.
  const std::vector<Ring> rings{{{0, 0}, {10, 2}, {20, 0}, {18, 10}, {20, 20}, {10, 14}, {0, 20}, {4, 10}},
                                {{8, 6.5}, {12, 6.5}, {12, 10.5}, {8, 10.5}}};
  const std::vector<HatchPatternLine> families{
      {0, {0, 0}, {0, 2}, {}},
      {0.7853981633974483, {1, 1}, {-1, 1}, {}},
      {0.5, {-3, 4}, {0.3, -1.7}, {1.5, -0.5, 0.25, -0.75}},
      {2.0, {5, 5}, {1.1, 0.4}, {-1, 2}},
  };
  std::mt19937 random(3);
  std::uniform_real_distribution<double> along(-30, 30);
  PatternCutter cutter(rings, {});
  for (const HatchPatternLine& family : families) {
    const std::vector<PatternPiece>& pieces = cutter.Cut(family);
    const Vec2 direction{std::cos(family.angle), std::sin(family.angle)};
    int covered = 0;
    for (int line = -30; line <= 30; ++line) {
      const Vec2 base = family.base + family.offset * line;
      for (int i = 0; i < 60; ++i) {
        const double at = along(random);
        const Vec2 p = base + direction * at;
        const bool wanted = IsInside(rings, p) && IsDash(family, at);
        EXPECT_EQ(IsCovered(pieces, p), wanted) << family.angle << " line " << line << " at " << at;
        covered += wanted;
      }
    }
    EXPECT_GT(covered, 50);
    for (const PatternPiece& piece : pieces) EXPECT_TRUE(IsInside(rings, Between(piece.from, piece.to, 0.5)));
  }
}

TEST(PatternCutter, HoldsItsLimits) {
  const std::vector<Ring> square{{{0, 0}, {100, 0}, {100, 100}, {0, 100}}};
  PatternCutter close(square, {.closestLines = 1, .shortestPattern = 0, .mostPieces = 400'000});
  EXPECT_NEAR(static_cast<double>(close.Cut({0, {0, 0}, {0, 1e-5}, {}}).size()), 100, 2);

  PatternCutter shortDashes(square, {.closestLines = 0, .shortestPattern = 0.5, .mostPieces = 400'000});
  EXPECT_EQ(shortDashes.Cut({0, {0, 0.5}, {0, 1}, {0.1, -0.1}}).size(), 100U);

  PatternCutter few(square, {.closestLines = 0, .shortestPattern = 0, .mostPieces = 500});
  EXPECT_LE(few.Cut({0, {0, 0.5}, {0, 1}, {0.5, -0.5}}).size(), 500U);
  EXPECT_LE(few.Cut({0, {0, 0.5}, {0, 1e-9}, {}}).size(), 500U);

  // Dots; a zero offset, an offset along the lines, and huge coordinates.
  EXPECT_EQ(few.Cut({0, {1, 1}, {0, 50}, {0, -50}}).size(), 4U);
  EXPECT_TRUE(few.Cut({0, {0, 0}, {0, 0}, {}}).empty());
  EXPECT_TRUE(few.Cut({0, {0, 0}, {1, 0}, {}}).empty());
  EXPECT_TRUE(few.Cut({0, {1e300, 1e300}, {0, 1}, {1, -1}}).empty());
  const std::vector<Ring> huge{{{-1e308, -1e308}, {1e308, -1e308}, {0, 1e308}}};
  EXPECT_TRUE(PatternCutter(huge, {}).Cut({0.3, {0, 0}, {0, 1}, {}}).empty());
}

}  // namespace
}  // namespace hdiplot
