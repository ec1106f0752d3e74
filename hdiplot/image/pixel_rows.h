// Rows of pixels on their way from a decoder to an image.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "hdiplot/device/raster.h"

namespace hdiplot {

using PixelColor = std::array<uint8_t, 4>;  // blue, green, red, alpha

// An image that is all white, or of the lightest colour in its palette. `bitCount` is 1, 8 or 32.
[[nodiscard]] ImageData BlankImage(int32_t width, int32_t height, int32_t bitCount,
                                   std::vector<PixelColor> palette = {});

[[nodiscard]] uint8_t* RowOf(ImageData& image, int32_t y);

// From black to white, for pixels of up to 8 bits.
[[nodiscard]] std::vector<PixelColor> Grays(int32_t bits);

// `count` numbers of 1, 2 or 4 bits, the first in the upper ones of a byte, become bytes.
void Unpack(const uint8_t* packed, int32_t bits, int32_t count, uint8_t* numbers);

// The colour of inks, 255 being full ink, without regard to a profile.
[[nodiscard]] PixelColor ColorOfInks(uint8_t cyan, uint8_t magenta, uint8_t yellow, uint8_t black);

// Gives an image whose palette has two entries one bit a pixel, of 8 before.
void PackTwoColors(ImageData& image);

}  // namespace hdiplot
