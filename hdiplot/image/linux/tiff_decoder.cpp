// TIFF through libtiff. Reads samples as stored, which preserves palettes, depths and alphas; the library
// converts the colour spaces of scanners and cameras, a strip or tile at a time.
#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "hdiplot/image/linux/decoders.h"
#include "hdiplot/image/pixel_rows.h"

namespace hdiplot {

namespace {

// Larger than any image that is accepted, and than a strip or tile of one.
constexpr tmsize_t kMostBytes = (tmsize_t{1} << 30) + (1 << 20);

struct Close {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using Tiff = std::unique_ptr<TIFF, Close>;

// The file, and whether the library has reached its end or found an error.
struct Source {
  FileStream file;
  bool isShort = false;
  bool isDamaged = false;
};

Source& SourceOf(thandle_t handle) { return *static_cast<Source*>(handle); }

tmsize_t ReadBytes(thandle_t handle, void* bytes, tmsize_t count) {
  Source& source = SourceOf(handle);
  const auto got = static_cast<tmsize_t>(std::fread(bytes, 1, static_cast<size_t>(count), source.file.get()));
  source.isShort = source.isShort || got < count;
  return got;
}

tmsize_t WriteNothing(thandle_t /*handle*/, void* /*bytes*/, tmsize_t /*count*/) { return 0; }

toff_t Seek(thandle_t handle, toff_t offset, int origin) {
  std::FILE* file = SourceOf(handle).file.get();
  return fseeko(file, static_cast<off_t>(offset), origin) == 0 ? static_cast<toff_t>(ftello(file))
                                                               : toff_t(-1);
}

int LeaveOpen(thandle_t /*handle*/) { return 0; }

toff_t SizeOf(thandle_t handle) {
  const off_t at = ftello(SourceOf(handle).file.get());
  const toff_t size = Seek(handle, 0, SEEK_END);
  Seek(handle, static_cast<toff_t>(at), SEEK_SET);
  return size;
}

// These return whether the library need not call its other handler, which writes to standard error.
int NoteError(TIFF* /*tiff*/, void* source, const char* /*module*/, const char* /*form*/,
              va_list /*arguments*/) {
  static_cast<Source*>(source)->isDamaged = true;
  return 1;
}

// Much is warned of that does no harm.
int PassOverWarning(TIFF* /*tiff*/, void* /*source*/, const char* /*module*/, const char* /*form*/,
                    va_list /*arguments*/) {
  return 1;
}

// Refers to the source from then on. Null for a broken file.
Tiff Open(Source& source) {
  TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
  TIFFOpenOptionsSetMaxSingleMemAlloc(options, kMostBytes);
  TIFFOpenOptionsSetErrorHandlerExtR(options, NoteError, &source);
  TIFFOpenOptionsSetWarningHandlerExtR(options, PassOverWarning, nullptr);
  Tiff tiff(TIFFClientOpenExt("image", "rm", &source, ReadBytes, WriteNothing, Seek, LeaveOpen, SizeOf,
                              nullptr, nullptr, options));
  TIFFOpenOptionsFree(options);
  return tiff;
}

template <typename Value>
Value FieldOf(TIFF* tiff, uint32_t tag, Value otherwise = 0) {
  Value value = 0;
  return TIFFGetFieldDefaulted(tiff, tag, &value) != 0 ? value : otherwise;
}

// How the samples of a pixel are interpreted.
enum class Kind { kNumbers, kGrayAndAlpha, kColors, kInks, kConverted, kUnknown };

struct Form {
  Form() = default;
  explicit Form(TIFF* tiff)
      : width(FieldOf<uint32_t>(tiff, TIFFTAG_IMAGEWIDTH)),
        height(FieldOf<uint32_t>(tiff, TIFFTAG_IMAGELENGTH)),
        bits(FieldOf<uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE)),
        samples(FieldOf<uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL)),
        compression(FieldOf<uint16_t>(tiff, TIFFTAG_COMPRESSION)),
        isSeparate(FieldOf<uint16_t>(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE) {
    const auto usual = static_cast<uint16_t>(samples < 3 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    photometric = FieldOf<uint16_t>(tiff, TIFFTAG_PHOTOMETRIC, usual);
    if (photometric == PHOTOMETRIC_YCBCR && compression == COMPRESSION_JPEG) {
      TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
      photometric = PHOTOMETRIC_RGB;
    }
    uint16_t extraCount = 0;
    const uint16_t* extras = nullptr;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extras);
    hasAlpha = extraCount > 0 && extras[0] != EXTRASAMPLE_UNSPECIFIED;
    isPremultiplied = extraCount > 0 && extras[0] == EXTRASAMPLE_ASSOCALPHA;
    const auto type = FieldOf<uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    kind = type == SAMPLEFORMAT_UINT || type == SAMPLEFORMAT_VOID ? KindOfSamples() : Kind::kUnknown;
  }

  [[nodiscard]] Kind KindOfSamples() const {
    if (bits != 1 && bits != 2 && bits != 4 && bits != 8 && bits != 16) return Kind::kConverted;
    switch (photometric) {
      case PHOTOMETRIC_MINISWHITE:
      case PHOTOMETRIC_MINISBLACK:
        return samples == 2 && hasAlpha ? Kind::kGrayAndAlpha : Kind::kNumbers;
      case PHOTOMETRIC_PALETTE:
        return bits <= 8 ? Kind::kNumbers : Kind::kUnknown;
      case PHOTOMETRIC_RGB:
        return samples >= 3 ? Kind::kColors : Kind::kUnknown;
      case PHOTOMETRIC_SEPARATED:
        return samples >= 4 ? Kind::kInks : Kind::kUnknown;
      default:
        return Kind::kConverted;
    }
  }

  [[nodiscard]] int32_t BitCount() const { return kind != Kind::kNumbers ? 32 : bits == 1 ? 1 : 8; }

  // The number of leading samples that are used.
  [[nodiscard]] int UsedSamples() const {
    return kind == Kind::kNumbers ? 1 : kind == Kind::kGrayAndAlpha ? 2 : std::min<int>(samples, 4);
  }

  uint32_t width = 0;
  uint32_t height = 0;
  uint16_t bits = 0;
  uint16_t samples = 0;
  uint16_t compression = 0;
  uint16_t photometric = 0;
  bool isSeparate = false;
  bool hasAlpha = false;
  bool isPremultiplied = false;
  Kind kind = Kind::kUnknown;
};

std::vector<PixelColor> PaletteOf(TIFF* tiff, const Form& form) {
  if (form.kind != Kind::kNumbers) return {};
  std::vector<PixelColor> palette = Grays(std::min<int>(form.bits, 8));
  if (form.photometric == PHOTOMETRIC_MINISWHITE) std::ranges::reverse(palette);
  uint16_t* red = nullptr;
  uint16_t* green = nullptr;
  uint16_t* blue = nullptr;
  if (form.photometric != PHOTOMETRIC_PALETTE ||
      TIFFGetField(tiff, TIFFTAG_COLORMAP, &red, &green, &blue) == 0) {
    return palette;
  }
  // Colours have 16 bits, but some programs write 8.
  const auto isDeep = [&](size_t i) { return std::max({red[i], green[i], blue[i]}) > 255; };
  bool deep = false;
  for (size_t i = 0; i < palette.size(); ++i) deep = deep || isDeep(i);
  const auto byte = [deep](uint16_t value) { return static_cast<uint8_t>(deep ? value >> 8 : value); };
  for (size_t i = 0; i < palette.size(); ++i) palette[i] = {byte(blue[i]), byte(green[i]), byte(red[i]), 255};
  return palette;
}

unsigned SampleAt(const uint8_t* bytes, size_t index, unsigned bits) {
  if (bits == 8) return bytes[index];
  if (bits == 16) {
    uint16_t value = 0;  // in the machine's order
    std::memcpy(&value, bytes + index * 2, sizeof value);
    return value >> 8;
  }
  const size_t bit = index * bits;
  return bytes[bit / 8] >> (8 - bits - bit % 8) & ((1U << bits) - 1);
}

class TiffDecoder final : public ImageDecoder {
 public:
  explicit TiffDecoder(FileStream file) : source_{std::move(file)}, tiff_(Open(source_)) {
    if (tiff_) form_ = Form(tiff_.get());
  }

  std::optional<ImageSize> Size() override {
    if (form_.kind == Kind::kUnknown) return std::nullopt;
    return ImageSize{form_.width, form_.height, static_cast<uint64_t>(form_.BitCount())};
  }

  std::optional<DecodedImage> Decode() override {
    decoded_.image = BlankImage(static_cast<int32_t>(form_.width), static_cast<int32_t>(form_.height),
                                form_.BitCount(), PaletteOf(tiff_.get(), form_));
    if (form_.kind == Kind::kInks) std::ranges::fill(decoded_.image.pixels, uint8_t{0});
    if (form_.kind == Kind::kConverted) {
      ReadConverted();
    } else {
      for (int plane = 0; plane < (form_.isSeparate ? form_.UsedSamples() : 1); ++plane) {
        TIFFIsTiled(tiff_.get()) != 0 ? ReadTiles(plane) : ReadRows(plane);
      }
      if (form_.kind != Kind::kNumbers) ColorSamples();
    }
    decoded_.isWhole = decoded_.isWhole && !source_.isShort && !source_.isDamaged;
    return hasPart_ ? std::optional(std::move(decoded_)) : std::nullopt;
  }

 private:
  void ReadRows(int plane) {
    const auto sample = static_cast<uint16_t>(plane);
    const uint32_t stripRows = std::max(FieldOf<uint32_t>(tiff_.get(), TIFFTAG_ROWSPERSTRIP), 1U);
    std::vector<uint8_t> row(static_cast<size_t>(TIFFScanlineSize(tiff_.get())));
    for (uint32_t y = 0; y < form_.height; ++y) {
      const bool isRead = TIFFReadScanline(tiff_.get(), row.data(), y, sample) > 0 ||
                          ReadPlainRow(TIFFComputeStrip(tiff_.get(), y, sample), y % stripRows, row);
      if (isRead) {
        TakeSamples(row.data(), 0, y, form_.width, plane);
      } else {
        decoded_.isWhole = false;
        // The rest of the strip is unreadable, too.
        y += std::min(stripRows - 1 - y % stripRows, form_.height - 1 - y);
      }
    }
  }

  // The library returns nothing of a truncated strip. The rows of an uncompressed one can be read directly.
  [[nodiscard]] bool ReadPlainRow(uint32_t strip, uint32_t rowInStrip, std::vector<uint8_t>& row) {
    if (form_.compression != COMPRESSION_NONE) return false;
    decoded_.isWhole = false;
    Seek(&source_, TIFFGetStrileOffset(tiff_.get(), strip) + rowInStrip * row.size(), SEEK_SET);
    const auto count = static_cast<tmsize_t>(row.size());
    if (ReadBytes(&source_, row.data(), count) < count) return false;
    if (form_.bits == 16 && TIFFIsByteSwapped(tiff_.get()) != 0) {
      TIFFSwabArrayOfShort(reinterpret_cast<uint16_t*>(row.data()), static_cast<tmsize_t>(row.size() / 2));
    }
    return true;
  }

  void ReadTiles(int plane) {
    const auto tileWidth = std::max(FieldOf<uint32_t>(tiff_.get(), TIFFTAG_TILEWIDTH), 1U);
    const auto tileHeight = std::max(FieldOf<uint32_t>(tiff_.get(), TIFFTAG_TILELENGTH), 1U);
    std::vector<uint8_t> tile(static_cast<size_t>(TIFFTileSize(tiff_.get())));
    const auto rowBytes = static_cast<size_t>(TIFFTileRowSize(tiff_.get()));
    for (uint64_t top = 0; top < form_.height; top += tileHeight) {
      for (uint64_t left = 0; left < form_.width; left += tileWidth) {
        const auto x = static_cast<uint32_t>(left);
        const auto y = static_cast<uint32_t>(top);
        if (TIFFReadTile(tiff_.get(), tile.data(), x, y, 0, static_cast<uint16_t>(plane)) < 0) {
          decoded_.isWhole = false;
          continue;
        }
        const uint32_t rows = std::min(tileHeight, form_.height - y);
        for (uint32_t i = 0; i < rows; ++i) {
          TakeSamples(&tile[i * rowBytes], x, y + i, std::min(tileWidth, form_.width - x), plane);
        }
      }
    }
  }

  // Stores the samples of `count` pixels from (x, y) on. Colours stay in the order of the file.
  void TakeSamples(const uint8_t* bytes, uint32_t x, uint32_t y, uint32_t count, int plane) {
    hasPart_ = true;
    ImageData& image = decoded_.image;
    uint8_t* row = RowOf(image, static_cast<int32_t>(y));
    const size_t step = form_.isSeparate ? 1 : form_.samples;
    if (form_.bits == image.bitCount && step == 1) {  // tiles begin at whole bytes
      std::copy_n(bytes, (size_t{count} * form_.bits + 7) / 8, row + size_t{x} * form_.bits / 8);
      return;
    }
    if (form_.kind == Kind::kNumbers) {
      for (size_t i = 0; i < count; ++i) PutNumber(row, x + i, SampleAt(bytes, i * step, form_.bits));
      return;
    }
    const auto first = static_cast<size_t>(form_.isSeparate ? plane : 0);
    const size_t end = form_.isSeparate ? first + 1 : static_cast<size_t>(form_.UsedSamples());
    const unsigned largest = form_.bits < 8 ? (1U << form_.bits) - 1 : 255;
    for (size_t i = 0; i < count; ++i) {
      for (size_t sample = first; sample < end; ++sample) {
        const unsigned value = SampleAt(bytes, i * step + sample - first, form_.bits);
        row[(x + i) * 4 + sample] = static_cast<uint8_t>(value * 255 / largest);
      }
    }
  }

  void PutNumber(uint8_t* row, size_t x, unsigned number) const {
    if (decoded_.image.bitCount == 8) {
      row[x] = static_cast<uint8_t>(number);
    } else {
      const unsigned bit = 0x80U >> x % 8;
      row[x / 8] = static_cast<uint8_t>(number != 0 ? row[x / 8] | bit : row[x / 8] & ~bit);
    }
  }

  [[nodiscard]] PixelColor ColorOf(const uint8_t* samples) const {
    if (form_.kind == Kind::kInks) return ColorOfInks(samples[0], samples[1], samples[2], samples[3]);
    if (form_.kind == Kind::kColors) return {samples[2], samples[1], samples[0], samples[3]};
    const bool isInverted = form_.photometric == PHOTOMETRIC_MINISWHITE;
    const auto gray = static_cast<uint8_t>(isInverted ? 255 - samples[0] : samples[0]);
    return {gray, gray, gray, samples[1]};
  }

  void ColorSamples() {
    std::vector<uint8_t>& pixels = decoded_.image.pixels;
    for (size_t i = 0; i < pixels.size(); i += 4) {
      PixelColor color = ColorOf(&pixels[i]);
      if (form_.isPremultiplied && color[3] != 0) {
        for (size_t k = 0; k < 3; ++k)
          color[k] = static_cast<uint8_t>(std::min(color[k] * 255 / color[3], 255));
      }
      std::ranges::copy(color, pixels.begin() + static_cast<std::ptrdiff_t>(i));
    }
  }

  void ReadConverted() {
    const bool isTiled = TIFFIsTiled(tiff_.get()) != 0;
    const uint32_t wide = isTiled ? FieldOf<uint32_t>(tiff_.get(), TIFFTAG_TILEWIDTH) : form_.width;
    const uint32_t asked =
        FieldOf<uint32_t>(tiff_.get(), isTiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP);
    const uint32_t high = isTiled ? asked : std::min(asked, form_.height);
    if (wide == 0 || high == 0 || uint64_t{wide} * high * 4 > uint64_t{kMostBytes}) return;
    std::vector<uint32_t> part(size_t{wide} * high);
    for (uint64_t top = 0; top < form_.height; top += high) {
      for (uint64_t left = 0; left < form_.width; left += wide) {
        const auto x = static_cast<uint32_t>(left);
        const auto y = static_cast<uint32_t>(top);
        const bool isRead = isTiled ? TIFFReadRGBATileExt(tiff_.get(), x, y, part.data(), 1) != 0
                                    : TIFFReadRGBAStripExt(tiff_.get(), y, part.data(), 1) != 0;
        decoded_.isWhole = decoded_.isWhole && isRead;
        if (isRead) TakeConverted(part, wide, isTiled ? high : std::min(high, form_.height - y), x, y);
      }
    }
  }

  // The lowest row of the part is its first.
  void TakeConverted(const std::vector<uint32_t>& part, uint32_t wide, uint32_t high, uint32_t x,
                     uint32_t y) {
    hasPart_ = true;
    for (uint32_t i = 0; i < std::min(high, form_.height - y); ++i) {
      uint8_t* pixel = RowOf(decoded_.image, static_cast<int32_t>(y + i)) + size_t{x} * 4;
      const uint32_t* from = &part[size_t{high - 1 - i} * wide];
      for (uint32_t k = 0; k < std::min(wide, form_.width - x); ++k, pixel += 4) {
        const PixelColor color{static_cast<uint8_t>(TIFFGetB(from[k])),
                               static_cast<uint8_t>(TIFFGetG(from[k])),
                               static_cast<uint8_t>(TIFFGetR(from[k])), 255};
        std::ranges::copy(color, pixel);
      }
    }
  }

  Source source_;
  Tiff tiff_;  // null for a broken file
  Form form_;
  DecodedImage decoded_;
  bool hasPart_ = false;
};

}  // namespace

std::unique_ptr<ImageDecoder> OpenTiff(FileStream file) {
  return std::make_unique<TiffDecoder>(std::move(file));
}

}  // namespace hdiplot
