// Images through the Windows Imaging Component, except BMP, for which it does not report truncated files.
#include <array>
#include <fstream>
#include <utility>

#include "hdiplot/image/image_file.h"
#include "hdiplot/image/pixel_rows.h"
#include "hdiplot/image/windows/wic.h"
#include "hdiplot/system/files.h"

namespace hdiplot {

namespace {

const GUID& ContainerOf(ImageFormat format) {
  switch (format) {
    case ImageFormat::kPng:
      return GUID_ContainerFormatPng;
    case ImageFormat::kJpeg:
      return GUID_ContainerFormatJpeg;
    case ImageFormat::kTiff:
      return GUID_ContainerFormatTiff;
    default:
      return GUID_ContainerFormatGif;
  }
}

// The size of the first image, read from the file: the component decodes a whole GIF before it returns one.
// Behind the screen and its palette come extensions, which are chains of blocks with their lengths in front.
// None for a broken file.
std::optional<ImageSize> GifSize(const std::filesystem::path& file) {
  constexpr int kExtension = 0x21;
  constexpr int kImage = 0x2C;
  constexpr unsigned kHasPalette = 0x80;
  std::ifstream in(file, std::ios::binary);
  std::array<char, 13> screen{};
  in.read(screen.data(), screen.size());
  const auto flags = static_cast<unsigned char>(screen[10]);
  if ((flags & kHasPalette) != 0) in.ignore(3 * (2LL << (flags & 7U)));
  while (in.get() == kExtension) {
    in.ignore(1);
    for (int length = in.get(); length > 0 && in; length = in.get()) in.ignore(length);
  }
  in.unget();
  if (in.get() != kImage) return std::nullopt;
  std::array<char, 8> place{};
  if (!in.read(place.data(), place.size())) return std::nullopt;
  const auto word = [&place](size_t at) {
    return uint64_t{static_cast<unsigned char>(place[at])} |
           uint64_t{static_cast<unsigned char>(place[at + 1])} << 8;
  };
  return ImageSize{word(4), word(6), 8};
}

class WicDecoder final : public ImageDecoder {
 public:
  WicDecoder(std::filesystem::path file, ImageFormat format)
      : file_(std::move(file)), format_(format), factory_(session_.MakeFactory()) {}

  std::optional<ImageSize> Size() override {
    if (IsGif()) return GifSize(file_);
    Open();
    UINT width = 0;
    UINT height = 0;
    if (!frame_ || FAILED(frame_->GetSize(&width, &height))) return std::nullopt;
    return ImageSize{width, height, BitsOf(*factory_, *frame_)};
  }

  // The component returns nothing of a truncated file.
  std::optional<DecodedImage> Decode() override {
    Open();
    if (!frame_) return std::nullopt;
    std::optional<ImageData> image = ReadPixels(*factory_, *frame_);
    if (!image) return std::nullopt;
    if (IsGif()) PackTwoColors(*image);
    return DecodedImage{std::move(*image)};
  }

 private:
  [[nodiscard]] bool IsGif() const { return format_ == ImageFormat::kGif; }

  void Open() {
    if (frame_ || !factory_) return;
    stream_ = MadeBy<IWICStream>([&](IWICStream** made) { return factory_->CreateStream(made); });
    if (!stream_ || FAILED(stream_->InitializeFromFilename(file_.c_str(), GENERIC_READ))) return;
    decoder_ = MadeBy<IWICBitmapDecoder>([&](IWICBitmapDecoder** made) {
      return factory_->CreateDecoder(ContainerOf(format_), nullptr, made);
    });
    if (!decoder_ || FAILED(decoder_->Initialize(stream_.get(), WICDecodeMetadataCacheOnDemand))) return;
    frame_ = MadeBy<IWICBitmapFrameDecode>(
        [&](IWICBitmapFrameDecode** made) { return decoder_->GetFrame(0, made); });
  }

  std::filesystem::path file_;
  ImageFormat format_;
  ImagingSession session_;  // before the objects
  Object<IWICImagingFactory> factory_;
  Object<IWICStream> stream_;
  Object<IWICBitmapDecoder> decoder_;
  Object<IWICBitmapFrameDecode> frame_;
};

}  // namespace

std::unique_ptr<ImageDecoder> OpenImage(const std::filesystem::path& file) {
  FileStream stream = OpenToRead(file);
  const auto format = stream ? FormatOf(stream.get()) : std::nullopt;
  if (!format) return nullptr;
  if (*format == ImageFormat::kBmp) return OpenBmp(std::move(stream));
  return std::make_unique<WicDecoder>(file, *format);
}

}  // namespace hdiplot
