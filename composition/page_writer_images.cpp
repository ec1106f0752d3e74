// The page writer's images: each raster becomes one image object in an upright box.
#include "composition/page_writer.h"
#include "engine/image.h"
#include "images/image_maker.h"

namespace hdi {

void PageWriter::PlaceIndexedBitmap(const uint8_t* bits, const BITMAPINFOHEADER* header,
                                    const ImageBox& box) {
  if (document_ == nullptr) return;
  if (const auto image = MakeIndexedImage(*document_, bits, header, alpha_)) PlaceImage(*image, box);
}

void PageWriter::PlaceJpeg(std::span<const uint8_t> jpeg, std::span<const uint8_t> plane,
                           const ImageBox& box) {
  if (document_ == nullptr || jpeg.empty()) return;
  PlaceImage(engine::AddJpegImage(*document_, jpeg, plane), box);
}

// An image has no colours and no blend mode of its own, and its opacity is in its pixels.
void PageWriter::PlaceImage(uint32_t image, const ImageBox& box) {
  ImageObject object;
  object.image = image;
  object.matrix = {
      static_cast<float>(box.width), 0, 0, static_cast<float>(box.height), static_cast<float>(box.x),
      static_cast<float>(box.y)};
  object.attributes.clip = path_.attributes.clip;
  object.attributes.layer = CurrentGroup();
  if (content_) content_->Write(object);
  if (!linkTarget_.empty()) ExtendLinkRect(ImageBounds(object.matrix));
}

}  // namespace hdi
