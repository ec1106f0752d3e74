// JPEG through libjpeg-turbo.
#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <utility>

// Uses FILE without declaring it, so it must follow <cstdio>.
// clang-format off
#include <jpeglib.h>
#include <jerror.h>
// clang-format on

#include "hdiplot/image/linux/decoders.h"
#include "hdiplot/image/pixel_rows.h"

namespace hdiplot {

namespace {

// The state that the library's callbacks use.
struct Listener {
  jpeg_error_mgr errors{};
  jpeg_progress_mgr progress{};
  std::jmp_buf back{};
  bool isCut = false;      // the file is truncated
  bool isDamaged = false;  // some of the data is invalid
};

Listener& ListenerOf(j_common_ptr state) { return *static_cast<Listener*>(state->client_data); }

// The error handler must not return, and exceptions cannot pass through the library's frames.
[[noreturn]] void Leave(j_common_ptr state) { std::longjmp(ListenerOf(state).back, 1); }

void Hear(j_common_ptr state, int level) {
  if (level >= 0) return;  // no warning
  switch (state->err->msg_code) {
    case JWRN_JPEG_EOF:
      ListenerOf(state).isCut = true;
      break;
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_ARITH_BAD_CODE:
    case JWRN_MUST_RESYNC:
      ListenerOf(state).isDamaged = true;
      break;
    default:  // harmless
      break;
  }
}

// A small file can have any number of scans, each over the whole image.
void LimitScans(j_common_ptr state) {
  constexpr int kMostScans = 500;
  if (reinterpret_cast<j_decompress_ptr>(state)->input_scan_number > kMostScans) Leave(state);
}

class JpegDecoder final : public ImageDecoder {
 public:
  explicit JpegDecoder(FileStream file) : file_(std::move(file)) {
    state_.err = jpeg_std_error(&listener_.errors);
    state_.client_data = &listener_;
    listener_.errors.error_exit = Leave;
    listener_.errors.emit_message = Hear;
    listener_.progress.progress_monitor = LimitScans;
  }
  ~JpegDecoder() override { jpeg_destroy_decompress(&state_); }

  std::optional<ImageSize> Size() override {
    const bool isRead = Guarded([this] {
      jpeg_create_decompress(&state_);
      state_.progress = &listener_.progress;
      jpeg_stdio_src(&state_, file_.get());
      jpeg_read_header(&state_, TRUE);
    });
    if (!isRead) return std::nullopt;
    return ImageSize{state_.image_width, state_.image_height, static_cast<uint64_t>(BitCount())};
  }

  std::optional<DecodedImage> Decode() override {
    DecodedImage decoded{BlankImage(static_cast<int32_t>(state_.image_width),
                                    static_cast<int32_t>(state_.image_height), BitCount(),
                                    IsGray() ? Grays(8) : std::vector<PixelColor>())};
    const bool isDone = Guarded([&] { ReadRows(decoded.image); });
    decoded.isWhole = isDone && !listener_.isCut && !listener_.isDamaged;
    if (rowsRead_ == 0) return std::nullopt;
    if (IsInked()) TakeInks(decoded.image);
    return decoded;
  }

 private:
  // Whether `step` has completed. An error jumps out of it, so it must own no resources.
  template <typename Step>
  [[nodiscard]] bool Guarded(const Step& step) {
    if (setjmp(listener_.back) != 0) return false;
    step();
    return true;
  }

  [[nodiscard]] bool IsGray() const { return state_.jpeg_color_space == JCS_GRAYSCALE; }
  [[nodiscard]] bool IsInked() const {
    return state_.jpeg_color_space == JCS_CMYK || state_.jpeg_color_space == JCS_YCCK;
  }
  [[nodiscard]] int32_t BitCount() const { return IsGray() ? 8 : 32; }

  void ReadRows(ImageData& image) {
    state_.out_color_space = IsGray() ? JCS_GRAYSCALE : IsInked() ? JCS_CMYK : JCS_EXT_BGRA;
    jpeg_start_decompress(&state_);
    const bool isLaidDown = jpeg_has_multiple_scans(&state_) != FALSE;
    while (state_.output_scanline < state_.output_height) {
      const auto y = static_cast<int32_t>(state_.output_scanline);
      JSAMPROW row = RowOf(image, y);
      jpeg_read_scanlines(&state_, &row, 1);
      // Past the end of the file the library invents rows, unless all scans have been read before.
      if (listener_.isCut && !isLaidDown) {
        std::fill_n(row, image.width * image.bitCount / 8, uint8_t{255});
        return;
      }
      rowsRead_ = y + 1;
    }
  }

  // Files with Adobe's marker hold inverted inks.
  void TakeInks(ImageData& image) const {
    const int full = state_.saw_Adobe_marker != FALSE ? 255 : 0;
    const auto ink = [full](uint8_t stored) { return static_cast<uint8_t>(stored ^ full); };
    for (int32_t y = 0; y < rowsRead_; ++y) {
      uint8_t* pixel = RowOf(image, y);
      for (int32_t x = 0; x < image.width; ++x, pixel += 4) {
        const PixelColor color = ColorOfInks(ink(pixel[0]), ink(pixel[1]), ink(pixel[2]), ink(pixel[3]));
        std::copy(color.begin(), color.end(), pixel);
      }
    }
  }

  FileStream file_;
  Listener listener_;
  jpeg_decompress_struct state_{};
  int32_t rowsRead_ = 0;
};

}  // namespace

std::unique_ptr<ImageDecoder> OpenJpeg(FileStream file) {
  return std::make_unique<JpegDecoder>(std::move(file));
}

}  // namespace hdiplot
