// Prints the results of a scene.
#pragma once

#include <nlohmann/json.hpp>
#include <vector>

#include "bench/measure.h"
#include "bench/scene_names.h"

namespace bench {

// Prints a table and, for each of our compressions on all cores, a line that compares it with its targets.
void PrintTable(const SceneName& scene, const std::vector<Score>& scores, double scale);

[[nodiscard]] nlohmann::json ToJson(const SceneName& scene, const std::vector<Score>& scores);

}  // namespace bench
