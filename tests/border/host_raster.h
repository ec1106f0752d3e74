// A host raster for tests.
#pragma once

#include "tests/border/border.h"

namespace border {

// Two pixels wide and three high, with seven virtual operations, in a record whose four numbers differ.
class HostRaster final : Fixed {
 public:
  explicit HostRaster(uint16_t bitCount) {
    WriteAt<uint32_t>(header_.data(), 0, 40);
    WriteAt<int32_t>(header_.data(), 4, 2);
    WriteAt<int32_t>(header_.data(), 8, 3);
    WriteAt<uint16_t>(header_.data(), 14, bitCount);
  }

  virtual void* Header() { return header_.data(); }
  virtual int32_t Width() { return 2; }
  virtual int32_t Height() { return 3; }
  virtual int32_t HasAlpha() { return 1; }
  virtual void* Bits() { return bits_.data(); }
  // A gray 1 x 1 JPEG, up to what is read of it.
  virtual void* Encode(const char* format, int32_t quality, uint64_t* size) {
    static std::string jpeg("\xFF\xD8\xFF\xC0\0\x0B\x08\0\1\0\1\1\1\x11\0\xFF\xDA\0\x08\1\1\0\0\x3F\0", 25);
    EXPECT_EQ(format, std::string("jpeg"));
    EXPECT_EQ(quality, 50);
    ++alive;
    *size = jpeg.size();
    return jpeg.data();
  }
  virtual void FreeEncoded(void* /*data*/) { --alive; }

  [[nodiscard]] const void* Record() const { return &record_; }
  // The bitmap header, followed by room for a palette.
  [[nodiscard]] uint8_t* BitmapHeader() { return header_.data(); }

  int alive = 0;  // encodings not yet freed

 private:
  struct {
    HostRaster* image;
    double originX = 50, originY = 60, scaleX = 7, unread[2] = {1000, 2000}, scaleY = 11;
  } record_{this};
  std::array<uint8_t, 24> bits_ = {0, 1, 0, 0, 1, 0};
  alignas(4) std::array<uint8_t, 40 + 256 * 4> header_{};  // with its palette
};

}  // namespace border
