// PNG through libpng.
#include "hdiplot/image/png_encoder.h"

#include <png.h>

#include <cmath>
#include <csetjmp>
#include <new>
#include <utility>

namespace hdiplot {

namespace {

class PngWriter {
 public:
  PngWriter()
      : png_(png_create_write_struct(
            PNG_LIBPNG_VER_STRING, nullptr, [](png_structp png, png_const_charp) { png_longjmp(png, 1); },
            [](png_structp, png_const_charp) {})) {
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
    if (info_ == nullptr) throw std::bad_alloc();
  }
  PngWriter(const PngWriter&) = delete;
  PngWriter& operator=(const PngWriter&) = delete;
  ~PngWriter() { png_destroy_write_struct(&png_, &info_); }

  // False when there is no memory.
  [[nodiscard]] bool Write(const BgrPixels& pixels, uint32_t dotsPerMetre) {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_set_write_fn(png_, this, TakeBytes, nullptr);
    png_set_IHDR(png_, info_, static_cast<uint32_t>(pixels.width), static_cast<uint32_t>(pixels.height), 8,
                 PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_set_pHYs(png_, info_, dotsPerMetre, dotsPerMetre, PNG_RESOLUTION_METER);
    png_write_info(png_, info_);
    png_set_bgr(png_);
    for (int y = 0; y < pixels.height; ++y) {
      png_write_row(png_, &pixels.bytes[static_cast<size_t>(y) * static_cast<size_t>(pixels.stride)]);
    }
    png_write_end(png_, info_);
    return true;
  }

  [[nodiscard]] std::vector<uint8_t> Take() { return std::move(bytes_); }

 private:
  static void TakeBytes(png_structp png, png_bytep bytes, size_t count) {
    auto& all = static_cast<PngWriter*>(png_get_io_ptr(png))->bytes_;
    bool hasMemory = true;
    try {
      all.insert(all.end(), bytes, bytes + count);
    } catch (const std::bad_alloc&) {
      hasMemory = false;
    }
    if (!hasMemory) png_error(png, "no memory");  // leaves this function
  }

  png_structp png_;
  png_infop info_ = nullptr;
  std::vector<uint8_t> bytes_;
};

}  // namespace

std::vector<uint8_t> EncodePng(const BgrPixels& pixels, int dotsPerInch) {
  constexpr double kInchesPerMetre = 1 / 0.0254;
  PngWriter writer;
  if (!writer.Write(pixels, static_cast<uint32_t>(std::lround(dotsPerInch * kInchesPerMetre)))) {
    throw std::bad_alloc();
  }
  return writer.Take();
}

}  // namespace hdiplot
