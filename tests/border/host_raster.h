// A raster of the host's for the tests.
#pragma once

#include <array>
#include <string>

#include "tests/border/border.h"

namespace border {

// A raster as a host builds one: a table of seven operations, and what they answer. Two pixels by two.
class HostRaster : Fixed {
 public:
  explicit HostRaster(uint16_t bitCount) {
    WriteAt<uint32_t>(header_.data(), 0, 40);
    WriteAt<int32_t>(header_.data(), 4, 2);
    WriteAt<int32_t>(header_.data(), 8, 2);
    WriteAt<uint16_t>(header_.data(), 14, bitCount);
    static const std::array<void*, 7> kTable = {
        reinterpret_cast<void*>(&Header),     reinterpret_cast<void*>(&Size),
        reinterpret_cast<void*>(&Size),       reinterpret_cast<void*>(&HasAlpha),
        reinterpret_cast<void*>(&Bits),       reinterpret_cast<void*>(&Encode),
        reinterpret_cast<void*>(&FreeEncoded)};
    face_ = {kTable.data(), this};
    record_ = {&face_, 500, 500, 100, 0, 0, 100};
  }

  [[nodiscard]] const void* Record() const { return &record_; }
  // The bitmap's header, with room for a palette behind it.
  [[nodiscard]] uint8_t* BitmapHeader() { return header_.data(); }

  bool hasHeader = true;
  bool hasBits = true;
  std::string encoded;  // what it claims to be a JPEG file; none when empty
  int alive = 0;        // encodings that have not been given back

 private:
  struct Face {
    void* const* table;
    HostRaster* self;
  };
  struct Placed {
    Face* image;
    double originX, originY, scaleX, unread[2], scaleY;
  };

  static void* Header(Face* face) { return face->self->hasHeader ? face->self->header_.data() : nullptr; }
  static int32_t Size(Face*) { return 2; }
  static int32_t HasAlpha(Face*) { return 1; }
  static void* Bits(Face* face) { return face->self->hasBits ? face->self->bits_.data() : nullptr; }
  static void* Encode(Face* face, const char*, int32_t, uint64_t* size) {
    std::string& encoded = face->self->encoded;
    if (encoded.empty()) return nullptr;
    ++face->self->alive;
    *size = encoded.size();
    return encoded.data();
  }
  static void FreeEncoded(Face* face, void*) { --face->self->alive; }

  Face face_{};
  Placed record_{};
  std::array<uint8_t, 16> bits_ = {0, 1, 0, 0, 1, 0};
  alignas(4) std::array<uint8_t, 40 + 256 * 4> header_{};  // with its palette
};

}  // namespace border
