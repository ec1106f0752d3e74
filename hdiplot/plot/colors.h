// Colours of a drawing, and what becomes of them on the sheet.
#pragma once

#include <cstdint>
#include <optional>

#include "hdiplot/plot/plot_options.h"

namespace hdiplot {

// The colour of an index: 1 to 9 the named ones, 10 to 249 a wheel of 24 hues in five shades, each full and
// half saturated, 250 to 255 greys. Others than 1 to 255 are white.
[[nodiscard]] Rgb IndexColor(uint32_t index);

[[nodiscard]] Rgb TrueColor(uint32_t value);  // 0xRRGGBB

// The index that stands for the foreground.
inline constexpr uint32_t kForegroundIndex = 7;

// Turns a drawing's colours into those of the plot. The foreground is the colour that stands out from the
// sheet: black on white paper and on any light background, white on a dark one. A monochrome plot has no
// other. Any other white stays white: drawings mask what lies below with it.
class Ink {
 public:
  Ink(const std::optional<Rgb>& background, bool monochrome);

  [[nodiscard]] Rgb Foreground() const { return foreground_; }
  [[nodiscard]] bool IsMonochrome() const { return monochrome_; }
  [[nodiscard]] Rgb OfIndex(uint32_t index) const {
    return monochrome_ || index == kForegroundIndex ? foreground_ : IndexColor(index);
  }
  [[nodiscard]] Rgb OfTrueColor(uint32_t value) const { return monochrome_ ? foreground_ : TrueColor(value); }

 private:
  Rgb foreground_;
  bool monochrome_;
};

}  // namespace hdiplot
