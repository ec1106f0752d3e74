// The file's header tells where the pixels begin, the bitmap's how many there are.
#include "host/hdiplot/image/bmp_check.h"

#include <array>
#include <cstdint>
#include <fstream>

namespace hdiplot {

bool IsCutBmp(const std::filesystem::path& file) {
  constexpr uint32_t kUncompressed = 0;
  constexpr uint32_t kWithMasks = 3;
  constexpr uint32_t kSmallestHeader = 40;
  std::array<char, 54> bytes{};
  std::ifstream in(file, std::ios::binary);
  if (!in.read(bytes.data(), bytes.size()) || bytes[0] != 'B' || bytes[1] != 'M') return false;
  const auto word = [&bytes](size_t at) {
    uint32_t value = 0;
    for (size_t i = 4; i-- > 0;) value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
  };
  const uint32_t compression = word(30);
  if (word(14) < kSmallestHeader || (compression != kUncompressed && compression != kWithMasks)) return false;

  const uint64_t bitCount = word(28) & 0xFFFF;
  const uint64_t rowBytes = (word(18) * bitCount + 31) / 32 * 4;
  // Negative when the rows run downwards.
  const int64_t height = static_cast<int32_t>(word(22));
  const auto rows = static_cast<uint64_t>(height < 0 ? -height : height);
  std::error_code unknown;
  const uintmax_t size = std::filesystem::file_size(file, unknown);
  return !unknown && (size < word(10) || size - word(10) < rowBytes * rows);
}

}  // namespace hdiplot
