// What the comparison tells of a scene.
#pragma once

#include <nlohmann/json.hpp>
#include <vector>

#include "bench/measure.h"
#include "bench/scene_names.h"

namespace bench {

// A table, and for each of our compressions with all threads a line that holds it against what is asked of
// it.
void PrintTable(const SceneName& scene, const std::vector<Score>& scores, double scale);

[[nodiscard]] nlohmann::json ToJson(const SceneName& scene, const std::vector<Score>& scores);

}  // namespace bench
