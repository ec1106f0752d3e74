// PNG through libpng.
#include <png.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <new>
#include <utility>
#include <vector>

#include "hdiplot/image/linux/decoders.h"
#include "hdiplot/image/pixel_rows.h"

namespace hdiplot {

namespace {

// Uses the progressive reader, which returns every row of a truncated file.
class PngDecoder final : public ImageDecoder {
 public:
  explicit PngDecoder(FileStream file)
      : file_(std::move(file)),
        png_(png_create_read_struct(
            PNG_LIBPNG_VER_STRING, nullptr, [](png_structp png, png_const_charp) { png_longjmp(png, 1); },
            [](png_structp, png_const_charp) {})) {
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
    if (info_ == nullptr) throw std::bad_alloc();
    png_set_progressive_read_fn(png_, this, TakeInfo, TakeRow, TakeEnd);
  }
  ~PngDecoder() override { png_destroy_read_struct(&png_, &info_, nullptr); }

  std::optional<ImageSize> Size() override {
    if (!Feed(hasInfo_) || !hasInfo_) return std::nullopt;
    return ImageSize{png_get_image_width(png_, info_), png_get_image_height(png_, info_),
                     static_cast<uint64_t>(bitCount_)};
  }

  std::optional<DecodedImage> Decode() override {
    decoded_.image = BlankImage(static_cast<int32_t>(png_get_image_width(png_, info_)),
                                static_cast<int32_t>(png_get_image_height(png_, info_)), bitCount_,
                                bitCount_ == 32 ? std::vector<PixelColor>() : Palette());
    decoded_.isWhole = Feed(hasEnd_) && hasEnd_;
    return hasRow_ ? std::optional(std::move(decoded_)) : std::nullopt;
  }

 private:
  static PngDecoder& Of(png_structp png) { return *static_cast<PngDecoder*>(png_get_progressive_ptr(png)); }

  static void TakeInfo(png_structp png, png_infop /*info*/) {
    Of(png).SetForm();
    Of(png).hasInfo_ = true;
    Of(png).left_ = png_process_data_pause(png, 0);
  }

  // The pixels of an interlaced image fill in for their neighbours until these arrive.
  static void TakeRow(png_structp png, png_bytep bytes, png_uint_32 y, int /*pass*/) {
    if (bytes == nullptr) return;
    Of(png).hasRow_ = true;
    png_progressive_combine_row(png, RowOf(Of(png).decoded_.image, static_cast<int32_t>(y)), bytes);
  }

  static void TakeEnd(png_structp png, png_infop /*info*/) { Of(png).hasEnd_ = true; }

  // Reads up to the end of the file, or until `isDone`. False after an error.
  [[nodiscard]] bool Feed(const bool& isDone) {
    while (!isDone) {
      if (left_ == 0) left_ = count_ = std::fread(bytes_.data(), 1, bytes_.size(), file_.get());
      if (left_ == 0) return true;
      uint8_t* bytes = &bytes_[count_ - left_];
      const size_t count = std::exchange(left_, 0);
      if (!Guarded([&] { png_process_data(png_, info_, bytes, count); })) return false;
    }
    return true;
  }

  // Whether `step` has completed. An error jumps out of it, so it must own no resources.
  template <typename Step>
  [[nodiscard]] bool Guarded(const Step& step) {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    step();
    return true;
  }

  [[nodiscard]] bool HasNumbers() const {
    const int type = png_get_color_type(png_, info_);
    if (type == PNG_COLOR_TYPE_PALETTE) return true;
    const bool isDeepKeyed = Depth() == 16 && png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
    return type == PNG_COLOR_TYPE_GRAY && !isDeepKeyed;
  }

  [[nodiscard]] int Depth() const { return png_get_bit_depth(png_, info_); }

  [[nodiscard]] int32_t BitCount() const { return !HasNumbers() ? 32 : Depth() == 1 ? 1 : 8; }

  void SetForm() {
    double gamma = 0;
    if (png_get_gAMA(png_, info_, &gamma) != 0) png_set_gamma(png_, kScreenGamma, gamma);
    if (Depth() == 16) png_set_strip_16(png_);
    if (!HasNumbers()) {
      png_set_gray_to_rgb(png_);
      png_set_tRNS_to_alpha(png_);
      png_set_bgr(png_);
      png_set_filler(png_, 255, PNG_FILLER_AFTER);
    } else if (Depth() > 1) {
      png_set_packing(png_);
    }
    png_set_interlace_handling(png_);
    bitCount_ = BitCount();
    grayBits_ = std::min(Depth(), 8);
    png_read_update_info(png_, info_);
  }

  [[nodiscard]] std::vector<PixelColor> Palette() const {
    png_bytep alphas = nullptr;
    int alphaCount = 0;
    png_color_16p key = nullptr;
    png_get_tRNS(png_, info_, &alphas, &alphaCount, &key);
    if (png_get_color_type(png_, info_) == PNG_COLOR_TYPE_GRAY) {
      std::vector<PixelColor> grays = Grays(grayBits_);
      if (key != nullptr && key->gray < grays.size()) grays[key->gray][3] = 0;
      return grays;
    }
    png_colorp colors = nullptr;
    int count = 0;
    png_get_PLTE(png_, info_, &colors, &count);
    std::vector<PixelColor> palette;
    for (int i = 0; i < count; ++i) {
      const png_color& color = colors[i];
      palette.push_back({color.blue, color.green, color.red, i < alphaCount ? alphas[i] : uint8_t{255}});
    }
    return palette;
  }

  static constexpr double kScreenGamma = 2.2;

  FileStream file_;
  png_structp png_;
  png_infop info_ = nullptr;
  std::array<uint8_t, 16384> bytes_{};  // of the file
  size_t count_ = 0;                    // of them
  size_t left_ = 0;                     // of those, at the end, not yet consumed
  DecodedImage decoded_;
  int32_t bitCount_ = 0;  // of the image
  int grayBits_ = 0;      // of a sample in the file, at most 8
  bool hasInfo_ = false;
  bool hasRow_ = false;
  bool hasEnd_ = false;
};

}  // namespace

std::unique_ptr<ImageDecoder> OpenPng(FileStream file) {
  return std::make_unique<PngDecoder>(std::move(file));
}

}  // namespace hdiplot
