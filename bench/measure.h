// Draws a scene with every contestant and takes what each needs for it.
#pragma once

#include <string>
#include <vector>

#include "bench/lineup.h"
#include "bench/scene_names.h"
#include "bench/work_folder.h"

namespace bench {

struct Score {
  Contestant contestant;
  std::vector<double> seconds;  // of each run; empty: the contestant cannot express the scene
  double peakBytes = 0;         // the highest of all runs
  double fileBytes = 0;

  [[nodiscard]] bool CanPlot() const { return !seconds.empty(); }
  [[nodiscard]] double Median() const;  // seconds
};

struct Effort {
  int runs = 3;
  double scale = 1;
};

// In the order of the contestants. Throws std::runtime_error when one fails.
[[nodiscard]] std::vector<Score> Measure(const std::vector<Contestant>& contestants, const SceneName& scene,
                                         const Effort& effort, const WorkFolder& folder);

// Throws std::runtime_error when one of the files that a measurement has left is not as it should be. To be
// called after all measurements: what this process has ever taken counts as memory of those that it starts.
void CheckFiles(const std::vector<Score>& scores, const SceneName& name, const Effort& effort,
                const WorkFolder& folder);

}  // namespace bench
