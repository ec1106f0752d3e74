// Images through the Windows Imaging Component, but for BMP, of which it would not tell that a file is cut
// off.
#include "hdiplot/image/image_decoder.h"

#include <utility>

#include "hdiplot/image/bmp_decoder.h"
#include "hdiplot/image/image_format.h"
#include "hdiplot/image/pixel_rows.h"
#include "hdiplot/image/windows/gif_size.h"
#include "hdiplot/image/windows/pixel_forms.h"
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

  // The component gives no part of an image whose file is cut off.
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
