// Who takes part in the comparison.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// A program in one of the ways in which it is run: a row of the table.
struct Contestant {
  std::string program;
  std::string name;         // in the names of its files
  std::string title;        // of the table's row
  std::string compression;  // of PDF.hdi's settings; empty: the contestant is a peer
  size_t threads = 1;
  size_t cores = 0;  // that it is kept to, 0: all

  [[nodiscard]] bool IsOurs() const { return !compression.empty(); }
};

inline constexpr const char* kMupdfTitle = "MuPDF";
inline constexpr const char* kCairoTitle = "cairo";

// PDF.hdi with each of these compressions, of which there is one at least, with as many threads as there are
// cores, with two and with one, then the peers that are built. The first is the one that others are held
// against. Throws std::runtime_error when PDF.hdi is not built.
[[nodiscard]] std::vector<Contestant> FindContestants(const std::vector<std::string>& compressions);

}  // namespace bench
