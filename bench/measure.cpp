#include "bench/measure.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <numeric>
#include <string>
#include <utility>

#include "bench/check.h"
#include "bench/child.h"
#include "bench/random.h"
#include "bench/scene.h"

namespace bench {
namespace {
namespace fs = std::filesystem;

fs::path FileOf(const Contestant& contestant, const SceneName& scene, const WorkFolder& folder) {
  return folder.Path() / fmt::format("{}-{}.pdf", scene.name, contestant.name);
}

void RunOnce(Score& score, const SceneName& scene, const Effort& effort, const WorkFolder& folder) {
  const Contestant& contestant = score.contestant;
  const fs::path file = FileOf(contestant, scene, folder);
  fs::remove(file);  // so that no contestant spends time truncating it
  folder.WriteDeviceList(contestant.compression);
  const auto result = RunContestant(
      {contestant.program, std::string(scene.name), fmt::format("{}", effort.scale), file.string()},
      contestant.cores);
  if (!result) return;
  score.seconds.push_back(result->seconds);
  score.peakBytes = std::max(score.peakBytes, result->peakBytes);
  score.fileBytes = static_cast<double>(fs::file_size(file));
}

// Rendering a page full of crossing lines takes minutes.
bool IsSoonDrawn(const Scene& scene) {
  constexpr size_t kMostShapes = 20'000;
  return scene.pointsPerShape == 0 || scene.ShapeCount() <= kMostShapes;
}

}  // namespace

double Score::Median() const {
  std::vector<double> sorted = seconds;
  std::ranges::sort(sorted);
  return (sorted[(sorted.size() - 1) / 2] + sorted[sorted.size() / 2]) / 2;
}

std::vector<Score> Measure(const std::vector<Contestant>& contestants, const SceneName& scene,
                           const Effort& effort, const WorkFolder& folder) {
  std::vector<Score> scores;
  scores.reserve(contestants.size());
  for (const Contestant& contestant : contestants) scores.push_back({contestant, {}, 0, 0});
  // Runs are interleaved, so that a busy spell of the machine hits all contestants, in a different order in
  // each round, as a program that follows one of its kind finds warm caches.
  Random random(20240611);
  std::vector<size_t> order(scores.size());
  std::iota(order.begin(), order.end(), size_t{0});
  for (int run = 0; run < effort.runs; ++run) {
    for (size_t left = order.size(); left > 1; --left) {
      std::swap(order[left - 1], order[static_cast<size_t>(random.Below(static_cast<int32_t>(left)))]);
    }
    for (const size_t index : order) RunOnce(scores[index], scene, effort, folder);
  }
  return scores;
}

void CheckFiles(const std::vector<Score>& scores, const SceneName& name, const Effort& effort,
                const WorkFolder& folder) {
  const Scene scene = MakeScene(name.name, effort.scale);
  const fs::path first = FileOf(scores.front().contestant, name, folder);
  const bool draws = IsSoonDrawn(scene);
  if (!draws) fmt::print(stderr, "{}: too many long lines, pictures are not compared\n", name.name);
  const std::string picture = draws ? PictureOf(first, scene) : std::string();
  for (const Score& score : scores) {
    if (!score.CanPlot()) continue;
    const fs::path file = FileOf(score.contestant, name, folder);
    CheckFile(file, scene);
    if (draws && file != first) CheckPicture(file, picture, scene);
  }
}

}  // namespace bench
