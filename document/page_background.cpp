// The background's content stream.
#include "document/page_background.h"

#include <array>
#include <charconv>

namespace hdi {
namespace {

// A colour component with six significant digits.
std::string Component(uint32_t value) {
  std::array<char, 32> text{};
  const double component = static_cast<double>(static_cast<float>(value) / 255.0F);
  const auto result =
      std::to_chars(text.data(), text.data() + text.size(), component, std::chars_format::general, 6);
  return {text.data(), result.ptr};
}

}  // namespace

// The identity matrix and the extra blank have no effect; they are kept so that output stays byte for byte.
std::string PageBackgroundContent(uint32_t red, uint32_t green, uint32_t blue, float width, float height) {
  return "q " + Component(red) + " " + Component(green) + " " + Component(blue) + " rg " + "1 0 0 1 0 0 cm " +
         " 0 0 " + engine::NumberText(width) + " " + engine::NumberText(height) + " re f Q";
}

void SetPageBackground(engine::Page& page, uint32_t red, uint32_t green, uint32_t blue) {
  if (red > 255 || green > 255 || blue > 255 || !page.HasContents()) return;
  page.PrependContents(PageBackgroundContent(red, green, blue, page.Width(), page.Height()));
}

}  // namespace hdi
