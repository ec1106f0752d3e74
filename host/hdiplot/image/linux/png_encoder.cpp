// PNG through FreeImage.
#include "host/hdiplot/image/png_encoder.h"

#include <FreeImage.h>

#include <cmath>
#include <memory>
#include <new>

namespace hdiplot {

namespace {

struct Release {
  void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
  void operator()(FIMEMORY* memory) const { FreeImage_CloseMemory(memory); }
};

}  // namespace

std::vector<uint8_t> EncodePng(hdi::engine::PagePicture picture, int dotsPerInch) {
  constexpr double kInchesPerMetre = 1 / 0.0254;
  // Refers to the pixels, which it turns upside down.
  const std::unique_ptr<FIBITMAP, Release> bitmap(FreeImage_ConvertFromRawBitsEx(
      FALSE, picture.pixels.data(), FIT_BITMAP, picture.width, picture.height, picture.stride, 24,
      FI_RGBA_RED_MASK, FI_RGBA_GREEN_MASK, FI_RGBA_BLUE_MASK, TRUE));
  const std::unique_ptr<FIMEMORY, Release> memory(FreeImage_OpenMemory());
  if (!bitmap || !memory) throw std::bad_alloc();
  const auto dotsPerMetre = static_cast<unsigned>(std::lround(dotsPerInch * kInchesPerMetre));
  FreeImage_SetDotsPerMeterX(bitmap.get(), dotsPerMetre);
  FreeImage_SetDotsPerMeterY(bitmap.get(), dotsPerMetre);
  if (FreeImage_SaveToMemory(FIF_PNG, bitmap.get(), memory.get(), PNG_DEFAULT) == FALSE) {
    throw std::bad_alloc();
  }
  BYTE* data = nullptr;
  DWORD size = 0;
  FreeImage_AcquireMemory(memory.get(), &data, &size);
  return {data, data + size};
}

}  // namespace hdiplot
