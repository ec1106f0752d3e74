// The words of the summary at the end of a plot.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace hdiplot {

struct PlotSummary {
  std::filesystem::path file;     // empty when only the driver knows it
  std::optional<uint64_t> bytes;  // of the file
  uint32_t pages = 0;
  uint64_t objects = 0;
  double seconds = 0;
};

// "plan.pdf: 3 pages, 12,345 objects, 234 KB, 0.12 s"
[[nodiscard]] std::string FormatSummary(const PlotSummary& summary);

// "1,200 LINE, 3 TEXT", the most frequent first.
[[nodiscard]] std::string FormatCounts(const std::map<std::string, uint64_t>& counts);

// "skipped: 12 TEXT, 3 MTEXT", the most frequent first; empty when nothing was skipped.
[[nodiscard]] std::string FormatSkipped(const std::map<std::string, uint64_t>& skipped);

}  // namespace hdiplot
