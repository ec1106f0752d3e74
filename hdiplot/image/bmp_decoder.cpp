// BMP: a file header of 14 bytes, an image header that starts with its length, which identifies its version,
// colour masks, a palette, and the rows of pixels, bottom up unless the height is negative.
#include <algorithm>
#include <array>
#include <bit>
#include <utility>
#include <vector>

#include "hdiplot/image/image_file.h"
#include "hdiplot/image/pixel_rows.h"

namespace hdiplot {

namespace {

enum Compression : uint32_t { kNone = 0, kRuns8 = 1, kRuns4 = 2, kMasks = 3, kMasksWithAlpha = 6 };

constexpr size_t kFileHeader = 14;
constexpr size_t kCoreHeader = 12;  // of OS/2, with sizes of 16 bits and three bytes a colour
constexpr size_t kInfoHeader = 40;  // longer ones start with the same fields
constexpr size_t kHeaderWithAlphaMask = 56;

// Blue, green, red, alpha, as the bytes of an image.
using Masks = std::array<uint32_t, 4>;
constexpr Masks kMasksOf16Bits = {0x1F, 0x3E0, 0x7C00, 0};
// The format does not use the fourth byte, but some programs write an alpha.
constexpr Masks kMasksOf32Bits = {0xFF, 0xFF00, 0xFF0000, 0xFF000000};

struct Header {
  int32_t width = 0;
  int32_t height = 0;
  bool isFromTop = false;
  int32_t bits = 0;
  uint32_t compression = kNone;
  uint32_t pixelsAt = 0;  // from the file's beginning
  Masks masks{};
  std::vector<PixelColor> palette;

  [[nodiscard]] bool IsPacked() const { return compression == kRuns8 || compression == kRuns4; }
};

// The start of the file. Bytes beyond its end are zero.
class Head {
 public:
  explicit Head(std::FILE* file) {
    std::rewind(file);
    static_cast<void>(std::fread(bytes_.data(), 1, bytes_.size(), file));
  }

  // Little-endian.
  [[nodiscard]] uint32_t Word(size_t at, size_t length = 4) const {
    uint32_t value = 0;
    for (size_t i = 0; i < length && at + i < bytes_.size(); ++i) value |= uint32_t{bytes_[at + i]} << 8 * i;
    return value;
  }

 private:
  std::array<uint8_t, 4096> bytes_{};
};

std::vector<PixelColor> ReadPalette(const Head& head, size_t at, size_t colorBytes, size_t count) {
  std::vector<PixelColor> palette;
  for (size_t i = 0; i < count; ++i) {
    const uint32_t color = head.Word(at + i * colorBytes, 3);
    palette.push_back({static_cast<uint8_t>(color), static_cast<uint8_t>(color >> 8),
                       static_cast<uint8_t>(color >> 16), 255});
  }
  return palette;
}

Masks ReadMasks(const Head& head, const Header& header, size_t headerBytes) {
  if (header.compression != kMasks && header.compression != kMasksWithAlpha) {
    return header.bits == 16 ? kMasksOf16Bits : kMasksOf32Bits;
  }
  const size_t at = kFileHeader + kInfoHeader;
  const bool hasAlpha = header.compression == kMasksWithAlpha || headerBytes >= kHeaderWithAlphaMask;
  return {head.Word(at + 8), head.Word(at + 4), head.Word(at), hasAlpha ? head.Word(at + 12) : 0};
}

bool IsKnown(const Header& header) {
  switch (header.compression) {
    case kNone:
      return std::has_single_bit(static_cast<uint32_t>(header.bits)) ? header.bits <= 32 : header.bits == 24;
    case kRuns8:
      return header.bits == 8 && !header.isFromTop;
    case kRuns4:
      return header.bits == 4 && !header.isFromTop;
    case kMasks:
    case kMasksWithAlpha:
      return header.bits == 16 || header.bits == 32;
    default:
      return false;
  }
}

std::optional<Header> ReadHeader(std::FILE* file) {
  const Head head(file);
  const size_t headerBytes = head.Word(kFileHeader);
  const bool isCore = headerBytes == kCoreHeader;
  if (!isCore && headerBytes < kInfoHeader) return std::nullopt;
  Header header;
  header.pixelsAt = head.Word(10);
  header.width = static_cast<int32_t>(isCore ? head.Word(18, 2) : head.Word(18));
  const auto height = static_cast<int32_t>(isCore ? head.Word(20, 2) : head.Word(22));
  header.isFromTop = height < 0;
  header.height = height < 0 ? static_cast<int32_t>(0U - static_cast<uint32_t>(height)) : height;
  header.bits = static_cast<int32_t>(head.Word(isCore ? 24 : 28, 2));
  header.compression = isCore ? uint32_t{kNone} : head.Word(30);
  if (header.width <= 0 || height == 0 || height == INT32_MIN || !IsKnown(header)) return std::nullopt;
  header.masks = ReadMasks(head, header, headerBytes);
  if (header.bits <= 8) {
    const size_t all = size_t{1} << header.bits;
    const size_t used = isCore ? 0 : head.Word(46);
    header.palette =
        ReadPalette(head, kFileHeader + headerBytes, isCore ? 3 : 4, used == 0 ? all : std::min(used, all));
  }
  return header;
}

// The component of a pixel under `mask`, scaled to 0 to 255.
uint8_t Part(uint32_t pixel, uint32_t mask) {
  if (mask == 0) return 0;
  const uint64_t largest = mask >> std::countr_zero(mask);
  return static_cast<uint8_t>(uint64_t{(pixel & mask) >> std::countr_zero(mask)} * 255 / largest);
}

void TakeRow(const Header& header, const uint8_t* from, uint8_t* row) {
  const auto width = static_cast<size_t>(header.width);
  if (header.bits == 1 || header.bits == 8) {
    std::copy_n(from, (width * static_cast<size_t>(header.bits) + 7) / 8, row);
  } else if (header.bits < 8) {
    Unpack(from, header.bits, header.width, row);
  } else if (header.bits == 24) {
    for (size_t x = 0; x < width; ++x) std::copy_n(from + x * 3, 3, row + x * 4);
  } else {
    const size_t length = static_cast<size_t>(header.bits) / 8;
    for (size_t x = 0; x < width; ++x) {
      uint32_t pixel = 0;
      for (size_t i = length; i-- > 0;) pixel = pixel << 8 | from[x * length + i];
      for (size_t i = 0; i < 3; ++i) row[x * 4 + i] = Part(pixel, header.masks[i]);
      if (header.masks[3] != 0) row[x * 4 + 3] = Part(pixel, header.masks[3]);
    }
  }
}

// Run-length encoded rows. A run repeats one number, or alternates two of 4 bits.
class RunReader {
 public:
  RunReader(std::FILE* file, const Header& header, ImageData& image)
      : file_(file), hasHalves_(header.bits == 4), image_(image) {}

  // Whether the image is complete.
  [[nodiscard]] bool Read() {
    while (y_ < image_.height) {
      const int count = Byte();
      const int value = Byte();
      if (value == EOF) return false;
      if (count > 0) {
        Put(count, [value](int /*index*/) { return value; });
      } else if (value == kEndOfImage) {
        return true;
      } else {
        Obey(value);
      }
    }
    return true;
  }

 private:
  static constexpr int kEndOfRow = 0;
  static constexpr int kEndOfImage = 1;
  static constexpr int kMove = 2;

  [[nodiscard]] int Byte() { return std::getc(file_); }

  // `code` is an escape, or the count of literal numbers that follow.
  void Obey(int code) {
    if (code == kEndOfRow) {
      x_ = 0;
      ++y_;
    } else if (code == kMove) {
      x_ = std::min(x_ + std::max(Byte(), 0), image_.width);
      y_ += std::max(Byte(), 0);
    } else {
      int value = 0;
      int taken = 0;
      Put(code, [&](int index) {
        if (hasHalves_ && index % 2 != 0) return value;
        ++taken;
        return value = Byte();
      });
      if (taken % 2 != 0) static_cast<void>(Byte());
    }
  }

  // `byteOf` returns the byte with number `index` of the run.
  template <typename ByteOf>
  void Put(int count, const ByteOf& byteOf) {
    for (int i = 0; i < count; ++i) {
      const int byte = byteOf(i);
      const int number = !hasHalves_ ? byte : i % 2 == 0 ? byte >> 4 : byte & 15;
      if (x_ < image_.width && byte != EOF) {
        RowOf(image_, image_.height - 1 - y_)[x_++] = static_cast<uint8_t>(number);
      }
    }
  }

  std::FILE* file_;
  bool hasHalves_;
  ImageData& image_;
  int32_t x_ = 0;
  int32_t y_ = 0;  // from the bottom
};

class BmpDecoder final : public ImageDecoder {
 public:
  explicit BmpDecoder(FileStream file) : file_(std::move(file)), header_(ReadHeader(file_.get())) {}

  std::optional<ImageSize> Size() override {
    if (!header_) return std::nullopt;
    return ImageSize{static_cast<uint64_t>(header_->width), static_cast<uint64_t>(header_->height),
                     static_cast<uint64_t>(BitCount())};
  }

  std::optional<DecodedImage> Decode() override {
    if (!header_ || std::fseek(file_.get(), 0, SEEK_END) != 0) return std::nullopt;
    const long fileBytes = std::ftell(file_.get());
    const size_t rowBytes = header_->IsPacked() ? 1 : RowBytes(header_->width, header_->bits);
    if (fileBytes < 0 || static_cast<size_t>(fileBytes) < header_->pixelsAt + rowBytes) return std::nullopt;
    std::fseek(file_.get(), static_cast<long>(header_->pixelsAt), SEEK_SET);
    DecodedImage decoded{BlankImage(header_->width, header_->height, BitCount(), header_->palette)};
    decoded.isWhole = header_->IsPacked() ? RunReader(file_.get(), *header_, decoded.image).Read()
                                          : ReadRows(rowBytes, decoded.image);
    return decoded;
  }

 private:
  [[nodiscard]] int32_t BitCount() const { return header_->bits == 1 ? 1 : header_->bits <= 8 ? 8 : 32; }

  // Whether all rows are there.
  [[nodiscard]] bool ReadRows(size_t rowBytes, ImageData& image) {
    std::vector<uint8_t> bytes(rowBytes);
    for (int32_t y = 0; y < header_->height; ++y) {
      if (std::fread(bytes.data(), 1, rowBytes, file_.get()) < rowBytes) return false;
      TakeRow(*header_, bytes.data(), RowOf(image, header_->isFromTop ? y : header_->height - 1 - y));
    }
    return true;
  }

  FileStream file_;
  std::optional<Header> header_;
};

}  // namespace

std::unique_ptr<ImageDecoder> OpenBmp(FileStream file) {
  return std::make_unique<BmpDecoder>(std::move(file));
}

}  // namespace hdiplot
