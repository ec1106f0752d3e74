// The comparison: draws the same scenes with every contestant and prints time, peak memory and file size, and
// each as a multiple of ours. Every drawing is made by a process of its own, so that peak memory can be told.
//
//   bench_compare [--runs N] [--scale F] [--scene NAME]... [--json] [--check] [--keep FOLDER]
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "bench/check.h"
#include "bench/child.h"
#include "bench/guarded_main.h"
#include "bench/scene.h"
#include "bench/scene_names.h"
#include "bench/work_folder.h"

namespace bench {
namespace {
namespace fs = std::filesystem;

struct Contestant {
  std::string program;
  std::string title;
  std::string name;  // in the names of its files
};

struct Options {
  int runs = 3;
  double scale = 1;
  std::vector<std::string> scenes;
  bool json = false;
  bool check = false;
  std::string keep;
};

struct Score {
  std::string title;
  std::optional<RunResult> best;  // nothing: the contestant cannot express the scene
  double fileBytes = 0;
};

// What we ask of ourselves: so many times as fast as the quickest peer.
constexpr double kWantedSpeed = 3;

std::vector<Contestant> FindContestants() {
  const fs::path folder = fs::read_symlink("/proc/self/exe").parent_path();
  std::vector<Contestant> found;
  for (const auto& [name, title] : {std::pair{"module", "PDF.hdi"}, std::pair{"cairo", "cairo"},
                                    std::pair{"mupdf", "MuPDF"}, std::pair{"engine", "engine's objects"}}) {
    const fs::path program = folder / (std::string("bench_plot_") + name);
    if (fs::exists(program)) {
      found.push_back({program.string(), title, name});
    } else {
      fmt::print(stderr, "{} is not built and is left out\n", program.filename().string());
    }
  }
  if (found.empty() || found.front().title != "PDF.hdi") throw std::runtime_error("PDF.hdi takes no part");
  return found;
}

// Runs a contestant once and keeps the better result.
void MeasureOnce(const Contestant& contestant, std::string_view scene, const Options& options,
                 const fs::path& file, Score& score) {
  const auto result = RunContestant(
      {contestant.program, std::string(scene), fmt::format("{}", options.scale), file.string()});
  if (!result) return;
  if (!score.best) score.best = result;
  score.best->seconds = std::min(score.best->seconds, result->seconds);
  score.best->peakBytes = std::max(score.best->peakBytes, result->peakBytes);
  score.fileBytes = static_cast<double>(fs::file_size(file));
}

// All contestants take turns, so that a machine that is busy for a while is so for all of them.
std::vector<Score> Measure(const std::vector<Contestant>& contestants, std::string_view scene,
                           const Options& options, const fs::path& folder) {
  std::vector<Score> scores;
  scores.reserve(contestants.size());
  for (const Contestant& contestant : contestants) scores.push_back({contestant.title, std::nullopt, 0});
  const auto file = [&](size_t index) {
    return folder / fmt::format("{}-{}.pdf", scene, contestants[index].name);
  };
  for (int run = 0; run < options.runs; ++run) {
    for (size_t i = 0; i < contestants.size(); ++i) {
      MeasureOnce(contestants[i], scene, options, file(i), scores[i]);
    }
  }
  for (size_t i = 0; i < contestants.size() && options.check; ++i) {
    if (scores[i].best) CheckFile(file(i), MakeScene(scene, options.scale));
  }
  return scores;
}

struct Verdict {
  double speed;  // the quickest peer's time over ours
  double size;   // our file over the smallest peer's
};

std::optional<Verdict> Judge(const std::vector<Score>& scores) {
  const Score& ours = scores.front();
  std::optional<double> quickest;
  std::optional<double> smallest;
  for (const Score& peer : scores) {
    if (&peer == &ours || !peer.best) continue;
    quickest = std::min(quickest.value_or(peer.best->seconds), peer.best->seconds);
    smallest = std::min(smallest.value_or(peer.fileBytes), peer.fileBytes);
  }
  if (!quickest || !ours.best) return std::nullopt;
  return Verdict{*quickest / ours.best->seconds, ours.fileBytes / *smallest};
}

void PrintTable(const SceneName& scene, const std::vector<Score>& scores, double scale) {
  constexpr double kMega = 1e6;
  const Score& ours = scores.front();
  fmt::print("\n{}{}\n{:<18}{:>9}{:>9}{:>9}   {:>7}{:>8}{:>7}\n", scene.title,
             scale == 1 ? "" : fmt::format(", {} times as many", scale), "", "time s", "peak MB", "file MB",
             "time x", "peak x", "file x");
  for (const Score& score : scores) {
    if (!score.best) {
      fmt::print("{:<18}{:>9}\n", score.title, "cannot");
      continue;
    }
    fmt::print("{:<18}{:>9.3f}{:>9.1f}{:>9.3f}   {:>7.2f}{:>8.2f}{:>7.3f}\n", score.title,
               score.best->seconds, score.best->peakBytes / kMega, score.fileBytes / kMega,
               score.best->seconds / ours.best->seconds, score.best->peakBytes / ours.best->peakBytes,
               score.fileBytes / ours.fileBytes);
  }
  if (const auto verdict = Judge(scores)) {
    fmt::print(
        "{:.2f} times as fast as the quickest peer ({} {}), file {:+.1f} % of the smallest ({} {:+.0f} %)\n",
        verdict->speed, verdict->speed >= kWantedSpeed ? "reaches" : "MISSES", kWantedSpeed,
        (verdict->size - 1) * 100, verdict->size <= scene.allowedSize ? "within" : "MISSES",
        (scene.allowedSize - 1) * 100);
  }
}

nlohmann::json ToJson(const SceneName& scene, const std::vector<Score>& scores) {
  nlohmann::json entry = {{"scene", scene.name}, {"title", scene.title}};
  for (const Score& score : scores) {
    nlohmann::json line = {{"name", score.title}, {"canPlot", score.best.has_value()}};
    if (score.best) {
      line["seconds"] = score.best->seconds;
      line["peakBytes"] = score.best->peakBytes;
      line["fileBytes"] = score.fileBytes;
    }
    entry["contestants"].push_back(line);
  }
  if (const auto verdict = Judge(scores)) {
    entry["speedAgainstQuickest"] = verdict->speed;
    entry["sizeAgainstSmallest"] = verdict->size;
  }
  return entry;
}

void Compare(const Options& options) {
  const std::vector<Contestant> contestants = FindContestants();
  const WorkFolder folder(options.keep);
  nlohmann::json report = {
      {"runs", options.runs}, {"scale", options.scale}, {"scenes", nlohmann::json::array()}};
  for (const SceneName& scene : kScenes) {
    const bool wanted =
        options.scenes.empty() || std::ranges::find(options.scenes, scene.name) != options.scenes.end();
    if (!wanted) continue;
    const std::vector<Score> scores = Measure(contestants, scene.name, options, folder.Path());
    if (options.json) {
      report["scenes"].push_back(ToJson(scene, scores));
    } else {
      PrintTable(scene, scores, options.scale);
    }
  }
  if (options.json) fmt::print("{}\n", report.dump(2));
}

int Main(int argc, char** argv) {
  Options options;
  std::vector<std::string> names;
  names.reserve(kScenes.size());
  for (const SceneName& scene : kScenes) names.emplace_back(scene.name);
  CLI::App app(
      "Draws the same scenes with PDF.hdi and its peers and compares time, peak memory and file size");
  app.add_option("--runs", options.runs, "drawings of each scene; the best time counts")
      ->check(CLI::PositiveNumber);
  app.add_option("--scale", options.scale, "factor on the number of shapes or texts")
      ->check(CLI::PositiveNumber);
  app.add_option("--scene", options.scenes, "a scene to draw, repeatable; default: all")
      ->check(CLI::IsMember(names));
  app.add_flag("--json", options.json, "print JSON in place of tables");
  app.add_flag("--check", options.check, "let qpdf check every file, and mutool read the texts");
  app.add_option("--keep", options.keep, "a folder that keeps the files");
  CLI11_PARSE(app, argc, argv);
  Compare(options);
  return 0;
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) { return bench::GuardedMain(bench::Main, argc, argv); }
