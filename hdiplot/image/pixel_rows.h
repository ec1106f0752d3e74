// What decoders share to fill an image.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "hdiplot/device/raster.h"

namespace hdiplot {

using PixelColor = std::array<uint8_t, 4>;  // blue, green, red, alpha

// A white image, or one of the lightest colour in its palette. `bitCount` is 1, 8 or 32.
[[nodiscard]] ImageData BlankImage(int32_t width, int32_t height, int32_t bitCount,
                                   std::vector<PixelColor> palette = {});

[[nodiscard]] uint8_t* RowOf(ImageData& image, int32_t y);

// A palette from black to white, for pixels of up to 8 bits.
[[nodiscard]] std::vector<PixelColor> Grays(int32_t bits);

// Expands `count` numbers of 1, 2 or 4 bits, the most significant first, to bytes.
void Unpack(const uint8_t* packed, int32_t bits, int32_t count, uint8_t* numbers);

// Converts inks, 255 being full ink, ignoring profiles.
[[nodiscard]] PixelColor ColorOfInks(uint8_t cyan, uint8_t magenta, uint8_t yellow, uint8_t black);

// Converts an 8-bit image with a palette of two entries to one bit a pixel.
void PackTwoColors(ImageData& image);

}  // namespace hdiplot
