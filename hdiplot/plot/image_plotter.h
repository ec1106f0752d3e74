// Draws raster images, and wipeouts, which mask what is below them.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "hdiplot/geometry/transform.h"
#include "hdiplot/image/image_book.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/canvas.h"

namespace hdiplot {

class ImagePlotter {
 public:
  // Keeps references to the first three. The images are those of `drawing`; `paper` is the sheet's colour.
  ImagePlotter(Canvas& canvas, const Drawing& drawing, ImageBook& images, Rgb paper, bool inGrey)
      : canvas_(canvas), drawing_(drawing), images_(images), paper_(paper), inGrey_(inGrey) {}

  // `map` takes the entity's coordinates to dots. Draws the frame in `stroke` if the image cannot be shown.
  void Plot(const ImageEntity& image, const Affine& map, const Stroke& stroke);
  void Plot(const WipeoutEntity& wipeout, const Affine& map);

 private:
  void DrawFrame(const ImageEntity& image, const Affine& map, const Stroke& stroke);
  [[nodiscard]] bool Clip(const ImageEntity& image, const Affine& map);
  [[nodiscard]] const hdi::HostImageRecord* Placed(const ImageEntity& image, const Affine& map);
  [[nodiscard]] Raster& Upright(Raster& raster, Vec2 along, Vec2 down);
  [[nodiscard]] const std::string* FileOf(const ImageEntity& image);

  Canvas& canvas_;
  const Drawing& drawing_;
  ImageBook& images_;
  Rgb paper_;
  bool inGrey_;
  std::map<std::tuple<const Raster*, int64_t, int64_t, int64_t, int64_t>, Raster*> upright_;
};

}  // namespace hdiplot
