// Printing through C streams, which remember a failure instead of reporting it by exceptions.
#include "hdiplot/command/printing.h"

#include <algorithm>
#include <array>

namespace hdiplot {

namespace {

void Write(std::FILE* stream, std::string_view text) { std::fwrite(text.data(), 1, text.size(), stream); }

// C0, DEL, and C1 as UTF-8 has it (the bytes C2 80 to C2 9F), which terminals obey, too.
bool IsControl(unsigned char before, unsigned char c) {
  return c < 0x20 || c == 0x7f || (before == 0xc2 && c >= 0x80 && c < 0xa0);
}

// Piece by piece, as there may be no memory left for a copy.
void WriteCleaned(std::FILE* stream, std::string_view text) {
  std::array<char, 256> piece;
  unsigned char before = 0;
  while (!text.empty()) {
    const size_t length = std::min(text.size(), piece.size());
    for (size_t i = 0; i < length; ++i) {
      const auto c = static_cast<unsigned char>(text[i]);
      piece[i] = IsControl(before, c) ? '?' : text[i];
      before = c;
    }
    Write(stream, {piece.data(), length});
    text.remove_prefix(length);
  }
}

}  // namespace

void PrintLine(std::FILE* stream, std::string_view text) noexcept {
  WriteCleaned(stream, text);
  Write(stream, "\n");
}

void PrintError(std::string_view message) noexcept {
  Write(stderr, "hdiplot: ");
  PrintLine(stderr, message);
}

void PrintText(std::string_view text) noexcept { Write(stdout, text); }

bool FlushStandardOutput() noexcept { return std::fflush(stdout) == 0 && std::ferror(stdout) == 0; }

}  // namespace hdiplot
