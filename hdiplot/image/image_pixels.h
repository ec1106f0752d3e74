// Changes of an image's pixels for the driver, which takes upright images only and has no brightness.
#pragma once

#include <tuple>

#include "hdiplot/device/raster.h"
#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Applies brightness, contrast, fade and grey. An image that is not to be transparent is blended with white;
// in a bitonal one that is to be transparent, white becomes transparent.
void ApplyLook(const ImageLook& look, ImageData& image);

// A quarter turn, a mirroring, or both: rows and columns are exchanged first, then their directions reversed.
struct ImageTurn {
  bool swapped = false;
  bool fromRight = false;   // in the result
  bool fromBottom = false;  // the same
  bool operator==(const ImageTurn&) const = default;
  bool operator<(const ImageTurn& other) const {
    return std::tie(swapped, fromRight, fromBottom) <
           std::tie(other.swapped, other.fromRight, other.fromBottom);
  }
};

// Does not change pixels.
[[nodiscard]] ImageData Turned(const ImageData& image, const ImageTurn& turn);

// A 32-bit image by bilinear interpolation; where its pixels are smaller than those of `image`, colours blend
// only at the borders of these. `map` takes its pixels to those of `image`, both counted from the upper left
// corner with pixel (0, 0) from (0, 0) to (1, 1). Outside of `image` it is transparent, in the colour of the
// nearest pixel, so that lossy compression does not affect the edge.
[[nodiscard]] ImageData Resampled(const ImageData& image, const Affine& map, int32_t width, int32_t height);

}  // namespace hdiplot
