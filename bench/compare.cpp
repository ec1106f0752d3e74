// The comparison: draws the same scenes with every contestant and prints time, peak memory and file size,
// also as multiples of ours. Each run is a process of its own, so that its peak memory can be measured.
//
//   bench_compare [--runs N] [--scale F] [--scene NAME]... [--compression NAME]... [--json] [--check]
//                 [--keep FOLDER]
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "bench/guarded_main.h"
#include "bench/lineup.h"
#include "bench/measure.h"
#include "bench/report.h"
#include "bench/scene_names.h"
#include "bench/work_folder.h"

namespace bench {
namespace {

struct Options {
  Effort effort;
  std::vector<std::string> scenes;
  std::vector<std::string> compressions = {"normal", "fast"};
  bool json = false;
  bool check = false;
  std::string keep;
};

void Compare(const Options& options) {
  const std::vector<Contestant> contestants = FindContestants(options.compressions);
  const WorkFolder folder(options.keep);
  nlohmann::json report = {
      {"runs", options.effort.runs}, {"scale", options.effort.scale}, {"scenes", nlohmann::json::array()}};
  std::vector<std::pair<SceneName, std::vector<Score>>> results;
  for (const SceneName& scene : kScenes) {
    const bool wanted =
        options.scenes.empty() || std::ranges::find(options.scenes, scene.name) != options.scenes.end();
    if (!wanted) continue;
    const auto& scores =
        results.emplace_back(scene, Measure(contestants, scene, options.effort, folder)).second;
    if (options.json) {
      report["scenes"].push_back(ToJson(scene, scores));
    } else {
      PrintTable(scene, scores, options.effort.scale);
    }
  }
  if (options.json) fmt::print("{}\n", report.dump(2));
  if (!options.check) return;
  for (const auto& [scene, scores] : results) CheckFiles(scores, scene, options.effort, folder);
}

int Main(int argc, char** argv) {
  Options options;
  std::vector<std::string> names;
  names.reserve(kScenes.size());
  for (const SceneName& scene : kScenes) names.emplace_back(scene.name);
  CLI::App app(
      "Draws the same scenes with PDF.hdi and its peers and compares time, peak memory and file size");
  app.add_option("--runs", options.effort.runs, "runs per scene; the median time counts")
      ->check(CLI::PositiveNumber);
  app.add_option("--scale", options.effort.scale, "factor on the number of shapes, texts or objects")
      ->check(CLI::PositiveNumber);
  app.add_option("--scene", options.scenes, "scene to draw (repeatable, default: all)")
      ->check(CLI::IsMember(names));
  app.add_option("--compression", options.compressions,
                 "compression of PDF.hdi (repeatable, default: normal and fast); the first is the reference")
      ->check(CLI::IsMember({"fast", "normal", "small"}));
  app.add_flag("--json", options.json, "print JSON instead of tables");
  app.add_flag("--check", options.check,
               "check every file with qpdf, and its texts and pictures with mutool");
  app.add_option("--keep", options.keep, "folder to keep the files in");
  CLI11_PARSE(app, argc, argv);
  Compare(options);
  return 0;
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) { return bench::GuardedMain(bench::Main, argc, argv); }
