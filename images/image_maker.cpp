// Selects the image type for a raster.
#include "images/image_maker.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <span>

#include "engine/image.h"
#include "images/palette_expansion.h"
#include "images/raster_rows.h"

namespace hdi {
namespace {

struct Raster {
  const uint8_t* bits;
  const uint8_t* palette;
  int32_t width;
  int32_t height;
};

// Whether the raster has pixels and its image's byte count fits in the engine's 32 bits.
bool HasExtent(const Raster& raster, uint32_t bitsPerPixel) {
  if (raster.width <= 0 || raster.height <= 0) return false;
  return RowLength(raster.width, bitsPerPixel) <=
         std::numeric_limits<uint32_t>::max() / static_cast<size_t>(raster.height);
}

// Negative sizes pass: expanding them throws std::bad_alloc.
bool IsExpandable(const Raster& raster) {
  return raster.width < 0 || raster.height < 0 || HasExtent(raster, 32);
}

uint32_t AddImage(engine::Document& document, const Raster& raster, const ColorPlanes& planes) {
  return engine::AddColorImage(document, raster.width, raster.height, planes.rgb.Bytes(),
                               planes.alpha.Bytes());
}

// Adds the raster's rows without their padding, complemented if asked for.
uint32_t AddBitImage(engine::Document& document, const Raster& raster, bool isComplemented) {
  if (!HasExtent(raster, 1)) return 0;
  const size_t rowLength = RowLength(raster.width, 1);
  const size_t rowBytes = BitRowBytes(raster.width);
  const auto rows = static_cast<size_t>(raster.height);
  const auto add = [&](std::span<const uint8_t> bits) {
    return engine::AddBlackAndWhiteImage(document, raster.width, raster.height, bits);
  };
  if (!isComplemented && rowLength == rowBytes) return add({raster.bits, rows * rowBytes});
  Plane packed(static_cast<int32_t>(rowBytes), raster.height, 1);
  const uint8_t* source = raster.bits;
  uint8_t* target = packed.Data();
  for (size_t row = 0; row < rows; ++row, source += rowLength, target += rowBytes) {
    std::transform(source, source + rowBytes, target, [isComplemented](uint8_t byte) {
      return isComplemented ? static_cast<uint8_t>(~byte) : byte;
    });
  }
  return add(packed.Bytes());
}

uint32_t AddBitRaster(engine::Document& document, const Raster& raster, uint8_t opacity) {
  switch (KindOfBitPalette(raster.palette, opacity)) {
    case BitPalette::kBlackAndWhite:
      return AddBitImage(document, raster, false);
    case BitPalette::kWhiteAndBlack:
      return AddBitImage(document, raster, true);
    case BitPalette::kOther:
      break;
  }
  if (!IsExpandable(raster)) return 0;
  return AddImage(document, raster,
                  ExpandBits(raster.bits, raster.palette, raster.width, raster.height, opacity));
}

uint32_t AddByteRaster(engine::Document& document, const Raster& raster, uint8_t opacity) {
  if (!IsExpandable(raster)) return 0;
  return AddImage(document, raster,
                  ExpandBytes(raster.bits, raster.palette, raster.width, raster.height, opacity));
}

}  // namespace

bool IsIndexedRaster(const uint8_t* bits, const BITMAPINFOHEADER* header) {
  return bits != nullptr && header != nullptr && (header->biBitCount == 1 || header->biBitCount == 8);
}

uint32_t MakeIndexedImage(engine::Document& document, const uint8_t* bits, const BITMAPINFOHEADER& header,
                          uint8_t opacity) {
  const Raster raster{bits, reinterpret_cast<const uint8_t*>(&header + 1), header.biWidth,
                      RowCount(header.biHeight)};
  return header.biBitCount == 1 ? AddBitRaster(document, raster, opacity)
                                : AddByteRaster(document, raster, opacity);
}

}  // namespace hdi
