// Printing through C streams, which remember a failure instead of throwing.
#include "hdiplot/command/printing.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "hdiplot/system/paths.h"

namespace hdiplot {

namespace {

void Write(std::FILE* stream, std::string_view text) { std::fwrite(text.data(), 1, text.size(), stream); }

// C0, DEL, and C1 in UTF-8 (the bytes C2 80 to C2 9F): terminals obey all of them.
bool IsControl(unsigned char before, unsigned char c) {
  return c < 0x20 || c == 0x7f || (before == 0xc2 && c >= 0x80 && c < 0xa0);
}

// In pieces: there may be no memory left for a copy.
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

// Digits in groups of three, whatever the locale.
std::string Grouped(uint64_t number) {
  std::string text = std::to_string(number);
  for (size_t at = text.size(); at > 3;) {
    at -= 3;
    text.insert(at, 1, ',');
  }
  return text;
}

std::string Counted(uint64_t number, const char* noun) {
  return Grouped(number) + " " + noun + (number == 1 ? "" : "s");
}

std::string Size(uint64_t bytes) {
  constexpr double kKilo = 1000;
  if (bytes < 1000) return Counted(bytes, "byte");
  const double size = static_cast<double>(bytes);
  if (size < 999.5 * kKilo) return fmt::format("{:.0f} KB", size / kKilo);
  return fmt::format("{:.1f} MB", size / (kKilo * kKilo));
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

std::string FormatSummary(const PlotSummary& summary) {
  std::string text;
  if (!summary.file.empty()) text = PathText(summary.file) + ": ";
  text += Counted(summary.pages, "page") + ", " + Counted(summary.objects, "object");
  if (summary.bytes) text += ", " + Size(*summary.bytes);
  return text + fmt::format(", {:.2f} s", summary.seconds);
}

std::string FormatFinished(const std::filesystem::path& file, uint64_t bytes) {
  return PathText(file) + ": " + Size(bytes);
}

std::string FormatCounts(const std::map<std::string, uint64_t>& counts) {
  std::vector<std::pair<std::string, uint64_t>> types(counts.begin(), counts.end());
  std::ranges::stable_sort(types, std::ranges::greater(), &std::pair<std::string, uint64_t>::second);
  return Listed(types, [](const auto& type) { return Grouped(type.second) + " " + type.first; });
}

}  // namespace hdiplot
