#include "composition/replay_bitmap.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "images/palette_expansion.h"
#include "images/raster_rows.h"

namespace hdi {
namespace {

constexpr uint8_t kOpaque = 255;
constexpr int32_t kJpegQuality = 50;

// The raster as encoded by the host; the bytes go back to the host on destruction.
class EncodedRaster {
 public:
  explicit EncodedRaster(RasterImage& raster)
      : raster_(raster), data_(raster.EncodeToMemory("jpeg", kJpegQuality, &size_)) {}
  EncodedRaster(const EncodedRaster&) = delete;
  EncodedRaster& operator=(const EncodedRaster&) = delete;
  ~EncodedRaster() {
    if (data_ != nullptr) raster_.FreeEncoded(data_);
  }

  // Empty if the host could not encode it.
  [[nodiscard]] std::span<const uint8_t> Bytes() const {
    return {data_, data_ == nullptr ? 0 : static_cast<size_t>(size_)};
  }

 private:
  RasterImage& raster_;
  uint64_t size_ = 0;
  uint8_t* data_;
};

void PlayColorRaster(RasterImage& raster, const ImageBox& box, PageWriter& writer) {
  std::optional<Plane> plane;
  if (raster.HasAlphaChannel() != 0 || writer.Alpha() != kOpaque) {
    const uint8_t* bits = raster.GetPixelBits();
    if (bits == nullptr) return;
    plane = AlphaPlane(bits, raster.GetPixelWidth(), RowCount(raster.GetPixelHeight()), writer.Alpha());
  }
  const EncodedRaster encoded(raster);
  writer.PlaceJpeg(encoded.Bytes(), plane ? plane->Bytes() : std::span<const uint8_t>(), box);
}

}  // namespace

BitmapOutcome PlayBitmap(const BitmapData& data, PageWriter& writer) {
  if (data.image == nullptr) return BitmapOutcome::kGoOn;
  RasterImage& raster = *data.image->image;
  const BITMAPINFOHEADER* header = raster.GetImageHeader();
  if (header == nullptr) return BitmapOutcome::kRasterIsGone;
  const ImageBox box{data.x, data.y, data.width, data.height};
  switch (header->biBitCount) {
    case 32:
      PlayColorRaster(raster, box, writer);
      break;
    case 8:
    case 1:
      writer.PlaceIndexedBitmap(raster.GetPixelBits(), header, box);
      break;
    default:  // other bit counts are not drawn
      break;
  }
  return BitmapOutcome::kGoOn;
}

}  // namespace hdi
