// What becomes of an image's pixels on their way from the file to the driver, which takes upright images
// only and knows no brightness.
#pragma once

#include <tuple>

#include "hdiplot/device/raster.h"
#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// The colours changed as `look` asks. An image that is not to be transparent is laid on white; one of two
// colours that is to be transparent lets white through.
void ApplyLook(const ImageLook& look, ImageData& image);

// A quarter turn, a mirroring, or both: first rows and columns change places, then they are counted from
// their other ends.
struct ImageTurn {
  bool swapped = false;
  bool fromRight = false;   // as seen in the result
  bool fromBottom = false;  // the same
  bool operator==(const ImageTurn&) const = default;
  bool operator<(const ImageTurn& other) const {
    return std::tie(swapped, fromRight, fromBottom) <
           std::tie(other.swapped, other.fromRight, other.fromBottom);
  }
};

// Every pixel stays as it is.
[[nodiscard]] ImageData Turned(const ImageData& image, const ImageTurn& turn);

// An image of 32 bits with its own pixels in between those of `image`, by whose four neighbours they are
// made; smaller ones are of one colour but where two of `image` meet. `map` leads from its pixels to those of
// `image`, both counted from the upper left corner with pixel (0, 0) from (0, 0) to (1, 1). What lies outside
// of `image` is transparent, its colour that of the nearest pixel, so that lossy compression does no harm
// along the edge.
[[nodiscard]] ImageData Resampled(const ImageData& image, const Affine& map, int32_t width, int32_t height);

}  // namespace hdiplot
