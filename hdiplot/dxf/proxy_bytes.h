// Values of proxy graphics: little-endian bytes, and the packed bits of one kind of record.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/geometry/points.h"

namespace hdiplot {

// The bytes in groups 310 behind their number in group 160 or 92. None when there are none, or another
// number.
[[nodiscard]] std::optional<std::string> ProxyBytesOf(const DxfObject& entity);

// The types of records that are used.
enum class ProxyRecord : uint32_t {
  kExtents = 1,
  kCircle = 2,
  kCircleOfPoints = 3,
  kArc = 4,
  kArcOfPoints = 5,
  kPolyline = 6,
  kPolygon = 7,
  kMesh = 8,
  kShell = 9,
  kText = 10,
  kStyledText = 11,
  kXLine = 12,
  kRay = 13,
  kColor = 14,
  kLayer = 16,
  kLineType = 18,
  kFill = 20,
  kTrueColor = 22,
  kLineWeight = 23,
  kLineTypeScale = 24,
  kPushMatrix = 29,
  kPushOtherMatrix = 30,
  kPopMatrix = 31,
  kPolylineInPlane = 32,
  kLwPolyline = 33,
  kWideText = 36,
  kStyledWideText = 38,
};
inline constexpr uint32_t kHighestProxyRecord = 38;

// Thrown for a record that is too short or holds a value that cannot be.
struct ProxyDamage {};

class ProxyBytes {
 public:
  explicit ProxyBytes(std::string_view bytes) : bytes_(bytes) {}

  [[nodiscard]] size_t Left() const { return bytes_.size() - at_; }

  uint32_t Word() { return Little<uint32_t>(Take(4)); }
  double Real() { return Finite(std::bit_cast<double>(Little<uint64_t>(Take(8)))); }
  Vec3 Point() {
    const double x = Real();
    const double y = Real();
    return {x, y, Real()};
  }
  // A number of things of at least `size` bytes each.
  size_t Count(size_t size) {
    const uint32_t count = Word();
    if (count > Left() / size) throw ProxyDamage{};
    return count;
  }
  // Up to a zero, padded to whole words; without the zero.
  std::string_view Text() {
    const size_t end = bytes_.find('\0', at_);
    if (end == std::string_view::npos) throw ProxyDamage{};
    const std::string_view text = bytes_.substr(at_, end - at_);
    SkipTo(end + 1);
    return text;
  }
  // The same in UTF-16.
  std::u16string WideText() {
    std::u16string text;
    while (const auto unit = Little<uint16_t>(Take(2))) text.push_back(static_cast<char16_t>(unit));
    SkipTo(at_);
    return text;
  }
  std::string_view Take(size_t size) {
    if (size > Left()) throw ProxyDamage{};
    at_ += size;
    return bytes_.substr(at_ - size, size);
  }

  // Coordinates and lengths beyond any drawing are damage.
  static double Finite(double value) {
    constexpr double kLargest = 1e30;
    if (!(value >= -kLargest && value <= kLargest)) throw ProxyDamage{};
    return value;
  }
  template <typename Unsigned>
  static Unsigned Little(std::string_view bytes) {
    Unsigned value = 0;
    for (size_t i = bytes.size(); i-- > 0;) value = static_cast<Unsigned>(value << 8 | uint8_t(bytes[i]));
    return value;
  }

 private:
  void SkipTo(size_t end) { at_ = std::min((end + 3) / 4 * 4, bytes_.size()); }

  std::string_view bytes_;
  size_t at_ = 0;
};

// The bits of a byte from the highest one on. Numbers start with two bits for their form.
class ProxyBits {
 public:
  explicit ProxyBits(std::string_view bytes) : bytes_(bytes) {}

  uint32_t Short() {
    switch (Bits(2)) {
      case 0:
        return static_cast<uint32_t>(Little(2));
      case 1:
        return Bits(8);
      case 2:
        return 0;
      default:
        return 256;
    }
  }
  uint32_t Long() {
    switch (Bits(2)) {
      case 0:
        return static_cast<uint32_t>(Little(4));
      case 1:
        return Bits(8);
      case 2:
        return 0;
      default:
        throw ProxyDamage{};
    }
  }
  double Real() {
    switch (Bits(2)) {
      case 0:
        return WholeReal();
      case 1:
        return 1;
      case 2:
        return 0;
      default:
        throw ProxyDamage{};
    }
  }
  double WholeReal() { return ProxyBytes::Finite(std::bit_cast<double>(Little(8))); }
  // Close to another number: only the bytes that differ are there.
  double RealNear(double other) {
    auto bits = std::bit_cast<uint64_t>(other);
    switch (Bits(2)) {
      case 0:
        return other;
      case 1:
        bits = (bits & ~uint64_t{0xffffffff}) | Little(4);
        break;
      case 2: {
        const uint64_t middle = Little(2);
        bits = (bits & ~uint64_t{0xffffffffffff}) | middle << 32 | Little(4);
        break;
      }
      default:
        bits = Little(8);
    }
    return ProxyBytes::Finite(std::bit_cast<double>(bits));
  }
  // A number of things of at least one bit each.
  size_t Count() {
    const uint32_t count = Long();
    if (count > bytes_.size() * 8 - at_) throw ProxyDamage{};
    return count;
  }

 private:
  uint32_t Bits(size_t count) {
    if (count > bytes_.size() * 8 - at_) throw ProxyDamage{};
    uint32_t value = 0;
    for (; count > 0; --count, ++at_) value = value << 1 | (uint8_t(bytes_[at_ / 8]) >> (7 - at_ % 8) & 1U);
    return value;
  }
  uint64_t Little(size_t bytes) {
    uint64_t value = 0;
    for (size_t i = 0; i < bytes; ++i) value |= uint64_t{Bits(8)} << (8 * i);
    return value;
  }

  std::string_view bytes_;
  size_t at_ = 0;  // bits
};

}  // namespace hdiplot
