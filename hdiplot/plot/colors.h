// The colours of a drawing, and those of the plot.
#pragma once

#include <cstdint>
#include <optional>

#include "hdiplot/plot/plot_options.h"

namespace hdiplot {

// 1 to 9 are named colours, 10 to 249 a wheel of 24 hues in five shades, each fully and half saturated, 250
// to 255 greys. Any other index is white.
[[nodiscard]] Rgb IndexColor(uint32_t index);

[[nodiscard]] Rgb TrueColor(uint32_t value);  // 0xRRGGBB

// Means the foreground.
inline constexpr uint32_t kForegroundIndex = 7;

// Maps a drawing's colours to those of the plot. The foreground contrasts with the sheet: black on white
// paper and light backgrounds, white on dark ones; a monochrome plot has no other colour. Any other white
// stays white: drawings use it as a mask.
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
