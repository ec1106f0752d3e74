// What the command prints. A reader that has gone away or a full disk behind a standard stream does not stop
// a plot: printing never throws, and FlushStandardOutput reports at the end whether everything was written.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace hdiplot {

// Prints `text` as one line. Control characters, which file names may contain, are printed as "?".
void PrintLine(std::FILE* stream, std::string_view text) noexcept;

// Prints "hdiplot: " and the message as one line to standard error.
void PrintError(std::string_view message) noexcept;

// Prints text unchanged to standard output.
void PrintText(std::string_view text) noexcept;

// Whether everything printed to standard output has been written.
[[nodiscard]] bool FlushStandardOutput() noexcept;

// What `text` returns for each of the items, with commas between them.
template <typename Items, typename Text>
[[nodiscard]] std::string Listed(Items&& items, const Text& text) {
  std::string list;
  for (const auto& item : items) list += (list.empty() ? "" : ", ") + std::string(std::invoke(text, item));
  return list;
}

struct PlotSummary {
  std::filesystem::path file;     // empty when only the driver knows it
  std::optional<uint64_t> bytes;  // of the file
  uint32_t pages = 0;
  uint64_t objects = 0;
  double seconds = 0;
};

// "plan.pdf: 3 pages, 12,345 objects, 234 KB, 0.12 s"
[[nodiscard]] std::string FormatSummary(const PlotSummary& summary);

// "plan.pdf: 234 KB"
[[nodiscard]] std::string FormatFinished(const std::filesystem::path& file, uint64_t bytes);

// "1,200 LINE, 3 TEXT", the most frequent first.
[[nodiscard]] std::string FormatCounts(const std::map<std::string, uint64_t>& counts);

}  // namespace hdiplot
