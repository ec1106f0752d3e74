// Single precision throughout, except for the trigonometric functions and the extent before its last step.
#include "fonts/text_geometry.h"

#include <algorithm>
#include <cmath>

namespace hdi {
namespace {

// The slant given to an upright face that was asked for italics: about 18.7 degrees.
constexpr float kSyntheticItalicSkew = 0x1.5B4D5Ep-2F;

constexpr double kRightAngle = 1.5707963267948966;

float Sine(float angle) { return static_cast<float>(std::sin(static_cast<double>(angle))); }
float Cosine(float angle) { return static_cast<float>(std::cos(static_cast<double>(angle))); }
float Tangent(float angle) { return static_cast<float>(std::tan(static_cast<double>(angle))); }

}  // namespace

Matrix ComputeRunMatrix(const TextPlacement& placement, float advance, bool syntheticItalic) {
  const float sine = Sine(placement.angle);
  const float cosine = Cosine(placement.angle);
  float shear = Tangent(placement.obliqueAngle);
  // The text's horizontal scale narrows glyphs without entering the matrix, so the shear has to follow it
  // here.
  if (syntheticItalic) shear += placement.widthFactor * kSyntheticItalicSkew;
  return {cosine,
          sine,
          shear * cosine - sine,
          shear * sine + cosine,
          placement.x + cosine * advance,
          placement.y + sine * advance};
}

engine::Rectangle TextExtent(double advance, double height, double angle) {
  const double alongX = std::cos(angle) * advance;
  const double alongY = std::sin(angle) * advance;
  const double upX = std::cos(angle + kRightAngle) * height;
  const double upY = std::sin(angle + kRightAngle) * height;
  const auto [left, right] = std::minmax({0.0, alongX, upX, upX + alongX});
  const auto [bottom, top] = std::minmax({0.0, alongY, upY, upY + alongY});
  return {static_cast<float>(left), static_cast<float>(bottom), static_cast<float>(right),
          static_cast<float>(top)};
}

}  // namespace hdi
