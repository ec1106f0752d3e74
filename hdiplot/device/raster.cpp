#include "hdiplot/device/raster.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string_view>
#include <utility>

// Uses FILE without declaring it, so <cstdio> must come first.
// clang-format off
#include <jpeglib.h>
// clang-format on

namespace hdiplot {

namespace {

uint32_t RowCount(int32_t height) {
  return height < 0 ? 0U - static_cast<uint32_t>(height) : static_cast<uint32_t>(height);
}

struct JpegJob {
  jpeg_compress_struct state{};
  jpeg_error_mgr errors{};
  std::jmp_buf back{};
  unsigned char* encoded = nullptr;
  unsigned long encodedSize = 0;
};

// The library's error handler must not return, and exceptions cannot pass through the library's C frames.
[[noreturn]] void LeaveJpegLibrary(j_common_ptr state) {
  std::longjmp(static_cast<JpegJob*>(state->client_data)->back, 1);
}

// Fails only when memory runs out, as the caller has checked bits and size. The output buffer leaks then: the
// library does not say which of its buffers are still allocated.
bool Compress(JpegJob& job, const hdi::BITMAPINFOHEADER& header, uint8_t* pixels, int quality) {
  job.state.client_data = &job;
  job.state.err = jpeg_std_error(&job.errors);
  job.errors.error_exit = LeaveJpegLibrary;
  if (setjmp(job.back) != 0) {
    jpeg_destroy_compress(&job.state);
    return false;
  }
  jpeg_create_compress(&job.state);
  job.state.image_width = static_cast<JDIMENSION>(header.biWidth);
  job.state.image_height = RowCount(header.biHeight);
  job.state.input_components = header.biBitCount / 8;
  job.state.in_color_space = header.biBitCount == 32 ? JCS_EXT_BGRX : JCS_EXT_BGR;
  jpeg_mem_dest(&job.state, &job.encoded, &job.encodedSize);
  jpeg_set_defaults(&job.state);
  jpeg_set_quality(&job.state, quality, TRUE);
  jpeg_start_compress(&job.state, TRUE);
  while (job.state.next_scanline < job.state.image_height) {
    JSAMPROW row = pixels + RowBytes(header.biWidth, header.biBitCount) * job.state.next_scanline;
    jpeg_write_scanlines(&job.state, &row, 1);
  }
  jpeg_finish_compress(&job.state);
  jpeg_destroy_compress(&job.state);
  return true;
}

}  // namespace

std::string ImageData::Problem() const {
  if (bitCount != 1 && bitCount != 8 && bitCount != 24 && bitCount != 32) {
    return "bitCount: must be 1, 8, 24 or 32";
  }
  if (width < 0) return "width: must not be negative";
  if (height == std::numeric_limits<int32_t>::min()) return "height: is out of range";
  const size_t colors = bitCount == 1 ? 2 : 256;
  if (palette.size() > colors) return "palette: has more than " + std::to_string(colors) + " entries";
  const uint64_t needed = RowBytes(width, bitCount) * RowCount(height);
  if (pixels.size() >= needed) return "";
  return "pixels: has " + std::to_string(pixels.size()) + " bytes, but the rows take " +
         std::to_string(needed);
}

uint64_t RowBytes(int32_t width, int32_t bitCount) {
  return (static_cast<uint64_t>(width) * static_cast<uint64_t>(bitCount) + 31) / 32 * 4;
}

Raster::Raster(ImageData image) : hasAlpha_(image.hasAlpha), pixels_(std::move(image.pixels)) {
  hdi::BITMAPINFOHEADER& header = block_.header;
  header.biSize = sizeof header;
  header.biWidth = image.width;
  header.biHeight = image.height;
  header.biPlanes = 1;
  header.biBitCount = static_cast<uint16_t>(image.bitCount);
  header.biClrUsed = static_cast<uint32_t>(image.palette.size());
  std::ranges::copy(image.palette, block_.palette.begin());
}

uint8_t* Raster::EncodeToMemory(const char* format, int32_t quality, uint64_t* size) {
  const hdi::BITMAPINFOHEADER& header = block_.header;
  const bool hasColors = header.biBitCount == 24 || header.biBitCount == 32;
  if (format == nullptr || size == nullptr || std::string_view(format) != "jpeg" || !hasColors)
    return nullptr;
  if (header.biWidth < 1 || header.biWidth > JPEG_MAX_DIMENSION || RowCount(header.biHeight) < 1 ||
      RowCount(header.biHeight) > JPEG_MAX_DIMENSION) {
    return nullptr;
  }
  JpegJob job;
  if (!Compress(job, header, pixels_.data(), quality)) return nullptr;
  *size = job.encodedSize;
  return job.encoded;
}

void Raster::FreeEncoded(uint8_t* data) { std::free(data); }

ImageData DescribeRaster(hdi::RasterImage& raster) {
  const hdi::BITMAPINFOHEADER& header = *raster.GetImageHeader();
  ImageData image;
  image.width = header.biWidth;
  image.height = header.biHeight;
  image.bitCount = header.biBitCount;
  image.hasAlpha = raster.HasAlphaChannel() != 0;
  const auto* palette = reinterpret_cast<const std::array<uint8_t, 4>*>(
      reinterpret_cast<const uint8_t*>(&header) + header.biSize);
  image.palette.assign(palette, palette + header.biClrUsed);
  const uint8_t* pixels = raster.GetPixelBits();
  image.pixels.assign(pixels,
                      pixels + RowBytes(header.biWidth, header.biBitCount) * RowCount(header.biHeight));
  return image;
}

}  // namespace hdiplot
