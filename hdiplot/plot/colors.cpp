#include "hdiplot/plot/colors.h"

#include <array>

namespace hdiplot {

namespace {

constexpr Rgb kWhite{255, 255, 255};
constexpr std::array<Rgb, 10> kNamed{{kWhite,         // no index: by block where there is no block
                                      {255, 0, 0},    // red
                                      {255, 255, 0},  // yellow
                                      {0, 255, 0},    // green
                                      {0, 255, 255},  // cyan
                                      {0, 0, 255},    // blue
                                      {255, 0, 255},  // magenta
                                      kWhite,         // the foreground
                                      {128, 128, 128},
                                      {192, 192, 192}}};

// Hue number `hue`, in steps of 15 degrees from red towards yellow, with components from `low` to `high`,
// truncated to integers.
Rgb HueColor(uint32_t hue, double low, double high) {
  const uint32_t sector = hue / 4;
  const double part = (hue % 4) / 4.0;
  const auto component = [&](double level) { return static_cast<uint8_t>(low + (high - low) * level); };
  const uint8_t top = component(1);
  const uint8_t bottom = component(0);
  const uint8_t rising = component(part);
  const uint8_t falling = component(1 - part);
  switch (sector) {
    case 0:
      return {top, rising, bottom};
    case 1:
      return {falling, top, bottom};
    case 2:
      return {bottom, top, rising};
    case 3:
      return {bottom, falling, top};
    case 4:
      return {rising, bottom, top};
    default:
      return {top, bottom, falling};
  }
}

}  // namespace

Rgb IndexColor(uint32_t index) {
  if (index < kNamed.size()) return kNamed[index];
  if (index > 255) return kWhite;
  if (index >= 250) {
    const auto grey = static_cast<uint8_t>(51 + (index - 250) * 204 / 5);
    return {grey, grey, grey};
  }
  static constexpr std::array<double, 5> kShades{255, 204, 153, 127.5, 76.5};
  const double high = kShades[index % 10 / 2];
  const double low = index % 2 == 0 ? 0 : high / 2;
  return HueColor((index - 10) / 10, low, high);
}

Rgb TrueColor(uint32_t value) {
  return {static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
}

Ink::Ink(const PlotOptions& options) : isMonochrome_(options.monochrome), isGrey_(options.grey) {
  const Rgb sheet = options.background.value_or(kWhite);
  constexpr uint8_t kDark = 128;
  foreground_ = GreyOf(sheet).red < kDark ? kWhite : Rgb{0, 0, 0};
  const PlotStyles* styles = options.plotStyles.get();
  for (uint32_t index = 0; index < kColors; ++index) {
    const bool hasStyle = styles != nullptr && !styles->areNamed;
    palette_[index] = OfOwn(hasStyle ? styles->byIndex[index].Plotted(Base(index)) : Base(index));
  }
}

Ink::Ink(const PlotOptions& options, const PlotStyle& style) : Ink(options) {
  style_ = &style;
  for (uint32_t index = 0; index < kColors; ++index) palette_[index] = OfOwn(Base(index));
}

Rgb Ink::OfOwn(Rgb color) const {
  if (isMonochrome_) return foreground_;
  if (style_ != nullptr) color = style_->Plotted(color);
  return isGrey_ ? GreyOf(color) : color;
}

Rgb Ink::ShadeOf(const EntityColor& color) const {
  if (!isMonochrome_) return Of(color);
  return GreyOf(color.kind == EntityColor::Kind::kTrue ? TrueColor(color.value) : Base(color.value));
}

}  // namespace hdiplot
