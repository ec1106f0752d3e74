#include "document/viewport.h"

#include <cmath>

namespace hdi {
namespace {

// Readers may take a page whole for broken over a number beyond (ISO 32000-1:2008, annex C).
constexpr float kLargestScale = 0x1p31F;

}  // namespace

bool SetPageViewport(engine::Page& page, float scale) {
  if (!(std::abs(scale) < kLargestScale)) return false;
  page.SetMeasureViewport(scale);
  return true;
}

}  // namespace hdi
