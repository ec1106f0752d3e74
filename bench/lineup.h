// The contestants of the comparison.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// A program and how it is run: a row of the table.
struct Contestant {
  std::string program;
  std::string name;         // for file names
  std::string title;        // of the row
  std::string compression;  // PDF.hdi's setting; empty for other programs
  size_t threads = 1;
  size_t cores = 0;  // how many it may use, 0 for all

  [[nodiscard]] bool IsOurs() const { return !compression.empty(); }
};

inline constexpr const char* kMupdfTitle = "MuPDF";
inline constexpr const char* kCairoTitle = "cairo";

// PDF.hdi with each of these compressions (at least one) on all, two and one cores, then the other programs
// that are built. The first row is the reference. Throws std::runtime_error if PDF.hdi is not built.
[[nodiscard]] std::vector<Contestant> FindContestants(const std::vector<std::string>& compressions);

}  // namespace bench
