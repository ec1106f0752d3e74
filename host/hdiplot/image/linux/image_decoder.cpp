// Images through FreeImage.
#include "host/hdiplot/image/image_decoder.h"

#include <FreeImage.h>
#include <tiffio.h>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstring>
#include <span>
#include <string_view>
#include <utility>

#include "host/hdiplot/image/gif_size.h"

namespace hdiplot {

namespace {

struct Unload {
  void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, Unload>;

// Whether the file that is being decoded has turned out to lack some of its data. The libraries go on with
// what there is, and tell nobody but those who listen.
bool isCutShort = false;

// Of both formats much more is said that does no harm.
void HearOfCutJpeg(FREE_IMAGE_FORMAT format, const char* message) {
  if (format == FIF_JPEG && std::string_view(message).starts_with("Premature end")) isCutShort = true;
}

void HearOfCutTiff(const char* function, const char* /*message*/, va_list /*arguments*/) {
  // These read the pixels' data, and say only when there is less than there should be.
  if (function != nullptr && std::string_view(function).starts_with("TIFFFill")) isCutShort = true;
}

// In place of standard error, which libtiff would tell of every tag that it does not know.
void ListenToLibraries() {
  FreeImage_SetOutputMessage(HearOfCutJpeg);
  TIFFSetWarningHandler(nullptr);
  TIFFSetErrorHandler(HearOfCutTiff);
}

bool IsKnown(FREE_IMAGE_FORMAT format) {
  constexpr std::array kKnown = {FIF_PNG, FIF_JPEG, FIF_BMP, FIF_TIFF, FIF_GIF};
  return std::ranges::find(kKnown, format) != kKnown.end();
}

// The library's conversion leaves the transparency behind.
Bitmap WithEightBits(FIBITMAP* bitmap) {
  Bitmap converted(FreeImage_ConvertTo8Bits(bitmap));
  if (converted && FreeImage_IsTransparent(bitmap) != 0) {
    FreeImage_SetTransparencyTable(converted.get(), FreeImage_GetTransparencyTable(bitmap),
                                   static_cast<int>(FreeImage_GetTransparencyCount(bitmap)));
  }
  return converted;
}

// In one of the forms that a raster has, or null.
Bitmap Converted(Bitmap bitmap) {
  const FREE_IMAGE_TYPE type = FreeImage_GetImageType(bitmap.get());
  const unsigned bits = FreeImage_GetBPP(bitmap.get());
  if (type == FIT_BITMAP) {
    if (bits == 1 || bits == 8 || bits == 32) return bitmap;
    return bits < 8 ? WithEightBits(bitmap.get()) : Bitmap(FreeImage_ConvertTo32Bits(bitmap.get()));
  }
  if (type == FIT_RGB16 || type == FIT_RGBA16) return Bitmap(FreeImage_ConvertTo32Bits(bitmap.get()));
  if (type == FIT_UINT16) return Bitmap(FreeImage_ConvertTo8Bits(bitmap.get()));
  return Bitmap(FreeImage_ConvertToStandardType(bitmap.get(), TRUE));
}

void TakePalette(FIBITMAP* bitmap, ImageData& image) {
  const RGBQUAD* colors = FreeImage_GetPalette(bitmap);
  for (unsigned i = 0; i < FreeImage_GetColorsUsed(bitmap); ++i) {
    image.palette.push_back({colors[i].rgbBlue, colors[i].rgbGreen, colors[i].rgbRed, 255});
  }
  const std::span alphas(FreeImage_GetTransparencyTable(bitmap),
                         FreeImage_IsTransparent(bitmap) != 0 ? FreeImage_GetTransparencyCount(bitmap) : 0);
  for (size_t i = 0; i < std::min(alphas.size(), image.palette.size()); ++i) image.palette[i][3] = alphas[i];
}

ImageData TakeImage(FIBITMAP* bitmap) {
  ImageData image;
  image.width = static_cast<int32_t>(FreeImage_GetWidth(bitmap));
  image.height = static_cast<int32_t>(FreeImage_GetHeight(bitmap));
  image.bitCount = static_cast<int32_t>(FreeImage_GetBPP(bitmap));
  const size_t rowBytes = RowBytes(image.width, image.bitCount);
  image.pixels.resize(rowBytes * static_cast<size_t>(image.height));
  for (int32_t row = 0; row < image.height; ++row) {
    // The library's rows run upwards.
    std::memcpy(&image.pixels[rowBytes * static_cast<size_t>(row)],
                FreeImage_GetScanLine(bitmap, image.height - 1 - row), FreeImage_GetLine(bitmap));
  }
  if (image.bitCount != 32) TakePalette(bitmap, image);
  return image;
}

class LibraryDecoder final : public ImageDecoder {
 public:
  LibraryDecoder(std::filesystem::path file, FREE_IMAGE_FORMAT format)
      : file_(std::move(file)), format_(format) {}

  std::optional<ImageSize> Size() override {
    if (format_ == FIF_GIF) return GifSize(file_);
    const Bitmap header(FreeImage_Load(format_, file_.c_str(), FIF_LOAD_NOPIXELS));
    if (!header) return std::nullopt;
    return ImageSize{FreeImage_GetWidth(header.get()), FreeImage_GetHeight(header.get()),
                     FreeImage_GetBPP(header.get())};
  }

  std::optional<ImageData> Decode() override {
    isCutShort = false;
    Bitmap bitmap(FreeImage_Load(format_, file_.c_str(), format_ == FIF_JPEG ? JPEG_ACCURATE : 0));
    if (isCutShort) return std::nullopt;
    if (bitmap) bitmap = Converted(std::move(bitmap));
    if (!bitmap || FreeImage_HasPixels(bitmap.get()) == 0) return std::nullopt;
    return TakeImage(bitmap.get());
  }

 private:
  std::filesystem::path file_;
  FREE_IMAGE_FORMAT format_;
};

}  // namespace

std::unique_ptr<ImageDecoder> OpenImage(const std::filesystem::path& file) {
  const FREE_IMAGE_FORMAT format = FreeImage_GetFileType(file.c_str(), 0);
  if (!IsKnown(format)) return nullptr;
  ListenToLibraries();
  return std::make_unique<LibraryDecoder>(file, format);
}

}  // namespace hdiplot
