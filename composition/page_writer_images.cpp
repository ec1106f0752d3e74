// Images: each raster becomes one image object in an upright box.
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

// Images are created only if visible: an image in the document is saved whether a page uses it or not.
bool PageWriter::Shows(const Matrix& matrix) const {
  return content_.has_value() && matrix[0] != 0 && matrix[3] != 0;
}

// Image objects carry no colours and no blend mode; their opacity is in the pixels.
template <typename MakeImage>
void PageWriter::PlaceImage(const ImageBox& box, MakeImage makeImage) {
  Attempt attempt(*this);
  ImageObject object;
  object.matrix = MatrixOf(box);
  object.attributes.clip = path_.attributes.clip;
  if (Shows(object.matrix)) {
    pageImages_.push_back(0);
    object.image = makeImage();
    pageImages_.back() = object.image;
  }
  object.attributes.layer = CurrentGroup();
  if (content_) content_->Write(object);
  attempt.Keep();
  if (!linkTarget_.empty()) ExtendLinkRect(ImageBounds(object.matrix));
}

void PageWriter::PlaceIndexedBitmap(const uint8_t* bits, const BITMAPINFOHEADER* header,
                                    const ImageBox& box) {
  if (document_ == nullptr || !IsIndexedRaster(bits, header)) return;
  PlaceImage(box, [&] { return MakeIndexedImage(*document_, bits, *header, alpha_); });
}

void PageWriter::PlaceJpeg(std::span<const uint8_t> jpeg, std::span<const uint8_t> plane,
                           const ImageBox& box) {
  if (document_ == nullptr || jpeg.empty()) return;
  PlaceImage(box, [&] { return engine::AddJpegImage(*document_, jpeg, plane); });
}

}  // namespace hdi
