// Runs a benchmark program and measures it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace bench {

struct ProgramRun {
  std::string output;
  double peakBytes = 0;  // the largest resident set of the process
};

// Empty if the program exits with the status of a contestant that cannot plot. Throws std::runtime_error if
// it fails.
[[nodiscard]] std::optional<ProgramRun> RunProgram(std::vector<std::string> command);

struct RunResult {
  double seconds = 0;
  double peakBytes = 0;  // the largest resident set of the process, its scene included
};

// Empty if the program cannot express the scene. Throws std::runtime_error if it fails. `cores`: how many it
// may use, 0 for all.
[[nodiscard]] std::optional<RunResult> RunContestant(std::vector<std::string> command, size_t cores);

}  // namespace bench
