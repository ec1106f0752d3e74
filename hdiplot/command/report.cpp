// Numbers with their units, for people.
#include "hdiplot/command/report.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "hdiplot/system/paths.h"

namespace hdiplot {

namespace {

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

std::string FormatSummary(const PlotSummary& summary) {
  std::string text;
  if (!summary.file.empty()) text = PathText(summary.file) + ": ";
  text += Counted(summary.pages, "page") + ", " + Counted(summary.objects, "object");
  if (summary.bytes) text += ", " + Size(*summary.bytes);
  return text + fmt::format(", {:.2f} s", summary.seconds);
}

std::string FormatCounts(const std::map<std::string, uint64_t>& counts) {
  std::vector<std::pair<std::string, uint64_t>> types(counts.begin(), counts.end());
  std::ranges::stable_sort(types, std::ranges::greater(), &std::pair<std::string, uint64_t>::second);
  std::string text;
  for (const auto& [type, count] : types) text += (text.empty() ? "" : ", ") + Grouped(count) + " " + type;
  return text;
}

std::string FormatSkipped(const std::map<std::string, uint64_t>& skipped) {
  return skipped.empty() ? "" : "skipped: " + FormatCounts(skipped);
}

}  // namespace hdiplot
