// Runs one contestant's program and tells what it took.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace bench {

struct RunResult {
  double seconds = 0;
  double peakBytes = 0;  // the largest resident set of the process, its scene included
};

// Nothing when the program says that it cannot express the scene. Throws std::runtime_error when it fails.
[[nodiscard]] std::optional<RunResult> RunContestant(std::vector<std::string> command);

}  // namespace bench
