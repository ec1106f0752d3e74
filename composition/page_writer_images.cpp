// The page writer's images: each raster becomes one image object in an upright box.
#include "composition/page_writer.h"
#include "engine/image.h"
#include "images/image_maker.h"

namespace hdi {
namespace {

Matrix MatrixOf(const ImageBox& box) {
  return {static_cast<float>(box.width), 0, 0, static_cast<float>(box.height), static_cast<float>(box.x),
          static_cast<float>(box.y)};
}

}  // namespace

void PageWriter::PlaceIndexedBitmap(const uint8_t* bits, const BITMAPINFOHEADER* header,
                                    const ImageBox& box) {
  if (document_ == nullptr || !IsIndexedRaster(bits, header)) return;
  const Matrix matrix = MatrixOf(box);
  PlaceImage(Shows(matrix) ? MakeIndexedImage(*document_, bits, *header, alpha_) : 0, matrix);
}

void PageWriter::PlaceJpeg(std::span<const uint8_t> jpeg, std::span<const uint8_t> plane,
                           const ImageBox& box) {
  if (document_ == nullptr || jpeg.empty()) return;
  const Matrix matrix = MatrixOf(box);
  PlaceImage(Shows(matrix) ? engine::AddJpegImage(*document_, jpeg, plane) : 0, matrix);
}

// What is made of a raster is saved, whether a page shows it or not.
bool PageWriter::Shows(const Matrix& matrix) const {
  return content_.has_value() && matrix[0] != 0 && matrix[3] != 0;
}

// An image has no colours and no blend mode of its own, and its opacity is in its pixels.
void PageWriter::PlaceImage(uint32_t image, const Matrix& matrix) {
  ImageObject object;
  object.image = image;
  object.matrix = matrix;
  object.attributes.clip = path_.attributes.clip;
  object.attributes.layer = CurrentGroup();
  if (image != 0) pageImages_.push_back(image);
  WriteObject(object);
  if (!linkTarget_.empty()) ExtendLinkRect(ImageBounds(matrix));
}

}  // namespace hdi
