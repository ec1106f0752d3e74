// GIF through giflib.
#include <gif_lib.h>

#include <array>
#include <utility>
#include <vector>

#include "hdiplot/image/linux/decoders.h"
#include "hdiplot/image/pixel_rows.h"

namespace hdiplot {

namespace {

int ReadFile(GifFileType* gif, GifByteType* bytes, int count) {
  return static_cast<int>(
      std::fread(bytes, 1, static_cast<size_t>(count), static_cast<std::FILE*>(gif->UserData)));
}

// The rows of an interlaced image come in four passes.
struct Pass {
  int32_t first;
  int32_t step;
};
constexpr std::array<Pass, 4> kInterlaced = {{{0, 8}, {4, 8}, {2, 4}, {1, 2}}};
constexpr std::array<Pass, 1> kInOrder = {{{0, 1}}};

class GifDecoder final : public ImageDecoder {
 public:
  explicit GifDecoder(FileStream file)
      : file_(std::move(file)), gif_(DGifOpen(file_.get(), ReadFile, nullptr)) {}

  std::optional<ImageSize> Size() override {
    if (!gif_ || !FindImage()) return std::nullopt;
    return ImageSize{static_cast<uint64_t>(gif_->Image.Width), static_cast<uint64_t>(gif_->Image.Height), 8};
  }

  std::optional<DecodedImage> Decode() override {
    DecodedImage decoded{BlankImage(gif_->Image.Width, gif_->Image.Height, 8, Palette())};
    decoded.isWhole =
        gif_->Image.Interlace ? ReadRows(kInterlaced, decoded.image) : ReadRows(kInOrder, decoded.image);
    PackTwoColors(decoded.image);
    return hasRow_ ? std::optional(std::move(decoded)) : std::nullopt;
  }

 private:
  struct Close {
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
  };

  // Advances to the pixels of the first image.
  [[nodiscard]] bool FindImage() {
    GifRecordType record = UNDEFINED_RECORD_TYPE;
    while (DGifGetRecordType(gif_.get(), &record) == GIF_OK) {
      if (record == IMAGE_DESC_RECORD_TYPE) return DGifGetImageDesc(gif_.get()) == GIF_OK;
      if (record != EXTENSION_RECORD_TYPE || !ReadExtension()) return false;
    }
    return false;
  }

  [[nodiscard]] bool ReadExtension() {
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(gif_.get(), &code, &block) != GIF_OK) return false;
    while (block != nullptr) {
      GraphicsControlBlock control;
      // The first byte is the length.
      if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK) {
        transparent_ = control.TransparentColor;
      }
      if (DGifGetExtensionNext(gif_.get(), &block) != GIF_OK) return false;
    }
    return true;
  }

  [[nodiscard]] std::vector<PixelColor> Palette() const {
    const ColorMapObject* map = gif_->Image.ColorMap != nullptr ? gif_->Image.ColorMap : gif_->SColorMap;
    if (map == nullptr) return Grays(8);
    std::vector<PixelColor> palette;
    for (int i = 0; i < map->ColorCount; ++i) {
      const GifColorType& color = map->Colors[i];
      palette.push_back(
          {color.Blue, color.Green, color.Red, static_cast<uint8_t>(i == transparent_ ? 0 : 255)});
    }
    return palette;
  }

  // Whether all rows are there.
  template <size_t count>
  [[nodiscard]] bool ReadRows(const std::array<Pass, count>& passes, ImageData& image) {
    for (const Pass& pass : passes) {
      for (int32_t y = pass.first; y < image.height; y += pass.step) {
        if (DGifGetLine(gif_.get(), RowOf(image, y), image.width) != GIF_OK) return false;
        hasRow_ = true;
      }
    }
    return true;
  }

  FileStream file_;
  std::unique_ptr<GifFileType, Close> gif_;
  int transparent_ = NO_TRANSPARENT_COLOR;
  bool hasRow_ = false;
};

}  // namespace

std::unique_ptr<ImageDecoder> OpenGif(FileStream file) {
  return std::make_unique<GifDecoder>(std::move(file));
}

}  // namespace hdiplot
