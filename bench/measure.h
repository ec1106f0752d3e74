// Draws a scene with every contestant and measures each.
#pragma once

#include <string>
#include <vector>

#include "bench/lineup.h"
#include "bench/scene_names.h"
#include "bench/work_folder.h"

namespace bench {

struct Score {
  Contestant contestant;
  std::vector<double> seconds;  // per run; empty if it cannot express the scene
  double peakBytes = 0;         // the highest of all runs
  double fileBytes = 0;

  [[nodiscard]] bool CanPlot() const { return !seconds.empty(); }
  [[nodiscard]] double Median() const;  // seconds
};

struct Effort {
  int runs = 3;
  double scale = 1;
};

// In the order of the contestants. Throws std::runtime_error if one fails.
[[nodiscard]] std::vector<Score> Measure(const std::vector<Contestant>& contestants, const SceneName& scene,
                                         const Effort& effort, const WorkFolder& folder);

// Throws std::runtime_error if one of the files that a measurement left is wrong. Call it after all
// measurements: the peak of this process counts as memory of those that it starts.
void CheckFiles(const std::vector<Score>& scores, const SceneName& name, const Effort& effort,
                const WorkFolder& folder);

}  // namespace bench
