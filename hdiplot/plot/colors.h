// The colours of a drawing, and those of the plot.
#pragma once

#include <array>
#include <cstdint>

#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/plot_options.h"
#include "hdiplot/plot/plot_styles.h"

namespace hdiplot {

// 1 to 9 are named colours, 10 to 249 a wheel of 24 hues in five shades, each fully and half saturated, 250
// to 255 greys. Any other index is white.
[[nodiscard]] Rgb IndexColor(uint32_t index);

[[nodiscard]] Rgb TrueColor(uint32_t value);  // 0xRRGGBB

// Means the foreground.
inline constexpr uint32_t kForegroundIndex = 7;

// Maps a drawing's colours to those of the plot. The foreground contrasts with the sheet: black on white
// paper and light backgrounds, white on dark ones; a monochrome plot has no other colour. Any other white
// stays white: drawings use it as a mask. Plot styles come before greys.
class Ink {
 public:
  // With the options' plot styles of colours.
  explicit Ink(const PlotOptions& options);
  // With a plot style for all colours.
  Ink(const PlotOptions& options, const PlotStyle& style);

  [[nodiscard]] Rgb OfIndex(uint32_t index) const {
    return index < kColors ? palette_[index] : OfOwn(IndexColor(index));
  }
  [[nodiscard]] Rgb OfTrueColor(uint32_t value) const { return OfOwn(TrueColor(value)); }
  // Of an index or a true colour.
  [[nodiscard]] Rgb Of(const EntityColor& color) const {
    return color.kind == EntityColor::Kind::kTrue ? OfTrueColor(color.value) : OfIndex(color.value);
  }
  // The same for shades that are to be told apart, such as those of a gradient: in a monochrome plot greys.
  [[nodiscard]] Rgb ShadeOf(const EntityColor& color) const;

 private:
  static constexpr uint32_t kColors = 256;

  [[nodiscard]] Rgb OfOwn(Rgb color) const;
  [[nodiscard]] Rgb Base(uint32_t index) const {
    return index == kForegroundIndex ? foreground_ : IndexColor(index);
  }

  Rgb foreground_;
  bool isMonochrome_;
  bool isGrey_;
  const PlotStyle* style_ = nullptr;  // for all colours
  std::array<Rgb, kColors> palette_;
};

}  // namespace hdiplot
