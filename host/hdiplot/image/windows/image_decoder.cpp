// Images through the Windows Imaging Component.
#include "host/hdiplot/image/image_decoder.h"

#include <array>
#include <string_view>
#include <utility>

#include "host/hdiplot/image/gif_size.h"
#include "host/hdiplot/image/windows/pixel_forms.h"
#include "host/hdiplot/image/windows/wic.h"
#include "host/hdiplot/system/files.h"

namespace hdiplot {

namespace {

using namespace std::string_view_literals;

struct Format {
  std::string_view start;  // of the file
  const GUID& container;
};

const Format kFormats[] = {{"\x89PNG\r\n\x1a\n"sv, GUID_ContainerFormatPng},
                           {"\xff\xd8\xff"sv, GUID_ContainerFormatJpeg},
                           {"BM"sv, GUID_ContainerFormatBmp},
                           {"II*\0"sv, GUID_ContainerFormatTiff},
                           {"MM\0*"sv, GUID_ContainerFormatTiff},
                           {"GIF8"sv, GUID_ContainerFormatGif}};

const Format* FormatOf(const std::filesystem::path& file) {
  const FileStream stream = OpenToRead(file);
  if (!stream) return nullptr;
  std::array<char, 8> bytes{};
  const std::string_view start(bytes.data(), std::fread(bytes.data(), 1, bytes.size(), stream.get()));
  for (const Format& format : kFormats) {
    if (start.starts_with(format.start)) return &format;
  }
  return nullptr;
}

class WicDecoder final : public ImageDecoder {
 public:
  WicDecoder(std::filesystem::path file, const Format& format)
      : file_(std::move(file)), format_(format), factory_(session_.MakeFactory()) {}

  std::optional<ImageSize> Size() override {
    if (IsGif()) return GifSize(file_);
    Open();
    UINT width = 0;
    UINT height = 0;
    if (!frame_ || FAILED(frame_->GetSize(&width, &height))) return std::nullopt;
    return ImageSize{width, height, BitsOf(*factory_, *frame_)};
  }

  std::optional<ImageData> Decode() override {
    Open();
    if (!frame_) return std::nullopt;
    std::optional<ImageData> image = ReadPixels(*factory_, *frame_, format_.container);
    if (image && IsGif()) PackTwoColors(*image);
    return image;
  }

 private:
  [[nodiscard]] bool IsGif() const { return format_.container == GUID_ContainerFormatGif; }

  void Open() {
    if (frame_ || !factory_) return;
    stream_ = MadeBy<IWICStream>([&](IWICStream** made) { return factory_->CreateStream(made); });
    if (!stream_ || FAILED(stream_->InitializeFromFilename(file_.c_str(), GENERIC_READ))) return;
    decoder_ = MadeBy<IWICBitmapDecoder>(
        [&](IWICBitmapDecoder** made) { return factory_->CreateDecoder(format_.container, nullptr, made); });
    if (!decoder_ || FAILED(decoder_->Initialize(stream_.get(), WICDecodeMetadataCacheOnDemand))) return;
    frame_ = MadeBy<IWICBitmapFrameDecode>(
        [&](IWICBitmapFrameDecode** made) { return decoder_->GetFrame(0, made); });
  }

  std::filesystem::path file_;
  const Format& format_;
  ImagingSession session_;  // before the objects
  Object<IWICImagingFactory> factory_;
  Object<IWICStream> stream_;
  Object<IWICBitmapDecoder> decoder_;
  Object<IWICBitmapFrameDecode> frame_;
};

}  // namespace

std::unique_ptr<ImageDecoder> OpenImage(const std::filesystem::path& file) {
  const Format* format = FormatOf(file);
  return format == nullptr ? nullptr : std::make_unique<WicDecoder>(file, *format);
}

}  // namespace hdiplot
