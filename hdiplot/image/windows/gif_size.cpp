// Behind the screen and its palette stand extensions, which are chains of blocks with their lengths before
// them.
#include "hdiplot/image/windows/gif_size.h"

#include <array>
#include <fstream>

namespace hdiplot {

std::optional<ImageSize> GifSize(const std::filesystem::path& file) {
  constexpr int kExtension = 0x21;
  constexpr int kImage = 0x2C;
  constexpr unsigned kHasPalette = 0x80;
  std::ifstream in(file, std::ios::binary);
  std::array<char, 13> screen{};
  in.read(screen.data(), screen.size());
  const auto flags = static_cast<unsigned char>(screen[10]);
  if ((flags & kHasPalette) != 0) in.ignore(3 * (2LL << (flags & 7U)));
  while (in.get() == kExtension) {
    in.ignore(1);
    for (int length = in.get(); length > 0 && in; length = in.get()) in.ignore(length);
  }
  in.unget();
  if (in.get() != kImage) return std::nullopt;
  std::array<char, 8> place{};
  if (!in.read(place.data(), place.size())) return std::nullopt;
  const auto word = [&place](size_t at) {
    return uint64_t{static_cast<unsigned char>(place[at])} |
           uint64_t{static_cast<unsigned char>(place[at + 1])} << 8;
  };
  return ImageSize{word(4), word(6), 8};
}

}  // namespace hdiplot
