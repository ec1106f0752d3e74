// Runs a program of the benchmarks and tells what it took.
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

// Nothing when the program's status is that of a contestant that cannot plot. Throws std::runtime_error when
// it fails.
[[nodiscard]] std::optional<ProgramRun> RunProgram(std::vector<std::string> command);

struct RunResult {
  double seconds = 0;
  double peakBytes = 0;  // the largest resident set of the process, its scene included
};

// Nothing when the program says that it cannot express the scene. Throws std::runtime_error when it fails.
// `cores`: so many it may use, 0: all.
[[nodiscard]] std::optional<RunResult> RunContestant(std::vector<std::string> command, size_t cores);

}  // namespace bench
