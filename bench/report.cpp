#include "bench/report.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace bench {
namespace {

// One of our rows, compared with another program's time or the smallest of the other files.
struct Ratio {
  std::string_view peer;
  double value;
  double wanted;  // 0: no target
};

std::optional<Ratio> SpeedAgainst(std::string_view peer, double wanted, const Score& ours,
                                  const std::vector<Score>& scores) {
  for (const Score& score : scores) {
    if (score.contestant.title == peer && score.CanPlot()) {
      return Ratio{peer, score.Median() / ours.Median(), wanted};
    }
  }
  return std::nullopt;
}

std::vector<Ratio> Speeds(const SceneName& scene, const Score& ours, const std::vector<Score>& scores) {
  std::vector<Ratio> speeds;
  for (const auto& [peer, wanted] :
       {std::pair{kMupdfTitle, scene.wantedAgainstMupdf}, std::pair{kCairoTitle, scene.wantedAgainstCairo}}) {
    if (const auto speed = SpeedAgainst(peer, wanted, ours, scores)) speeds.push_back(*speed);
  }
  return speeds;
}

// Our file size as a multiple of the smallest other one.
std::optional<double> SizeAgainstSmallest(const Score& ours, const std::vector<Score>& scores) {
  std::optional<double> smallest;
  for (const Score& score : scores) {
    if (score.contestant.IsOurs() || !score.CanPlot()) continue;
    smallest = std::min(smallest.value_or(score.fileBytes), score.fileBytes);
  }
  if (!smallest) return std::nullopt;
  return ours.fileBytes / *smallest;
}

bool IsJudged(const Score& score) {
  return score.contestant.IsOurs() && score.contestant.cores == 0 && score.CanPlot();
}

void PrintRow(const Score& score, const Score& reference) {
  constexpr double kMega = 1e6;
  if (!score.CanPlot()) {
    fmt::print("{:<18}{:>8}{:>9}\n", score.contestant.title, "", "cannot");
    return;
  }
  fmt::print("{:<18}{:>8}{:>9.3f}{:>9.1f}{:>9.3f}   {:>7.2f}{:>8.2f}{:>7.3f}\n", score.contestant.title,
             score.contestant.threads, score.Median(), score.peakBytes / kMega, score.fileBytes / kMega,
             score.Median() / reference.Median(), score.peakBytes / reference.peakBytes,
             score.fileBytes / reference.fileBytes);
}

void PrintVerdict(const SceneName& scene, const Score& ours, const std::vector<Score>& scores) {
  std::string line = ours.contestant.compression + ":";
  for (const Ratio& speed : Speeds(scene, ours, scores)) {
    line += fmt::format(" {:.2f} times as fast as {}", speed.value, speed.peer);
    if (speed.wanted > 0) {
      line += fmt::format(" ({} {})", speed.value >= speed.wanted ? "reaches" : "MISSES", speed.wanted);
    }
    line += ',';
  }
  if (const auto size = SizeAgainstSmallest(ours, scores)) {
    line += fmt::format(" file {:+.1f} % against the smallest other", (*size - 1) * 100);
    if (scene.allowedSize > 0) {
      line += fmt::format(" ({} {:+.0f} %)", *size <= scene.allowedSize ? "within" : "MISSES",
                          (scene.allowedSize - 1) * 100);
    }
    line += ',';
  }
  line.pop_back();
  fmt::print("{}\n", line);
}

nlohmann::json ToJson(const Score& score) {
  const Contestant& contestant = score.contestant;
  nlohmann::json line = {{"name", contestant.IsOurs() ? "PDF.hdi" : contestant.title},
                         {"threads", contestant.threads},
                         {"canPlot", score.CanPlot()}};
  if (contestant.IsOurs()) line["compression"] = contestant.compression;
  if (score.CanPlot()) {
    line["seconds"] = score.Median();
    line["runs"] = score.seconds;
    line["peakBytes"] = score.peakBytes;
    line["fileBytes"] = score.fileBytes;
  }
  return line;
}

}  // namespace

void PrintTable(const SceneName& scene, const std::vector<Score>& scores, double scale) {
  fmt::print("\n{}{}\n{:<18}{:>8}{:>9}{:>9}{:>9}   {:>7}{:>8}{:>7}\n", scene.title,
             scale == 1 ? "" : fmt::format(", {} times as many", scale), "", "threads", "time s", "peak MB",
             "file MB", "time x", "peak x", "file x");
  for (const Score& score : scores) PrintRow(score, scores.front());
  for (const Score& score : scores) {
    if (IsJudged(score)) PrintVerdict(scene, score, scores);
  }
  std::fflush(stdout);  // the next scene takes a while
}

nlohmann::json ToJson(const SceneName& scene, const std::vector<Score>& scores) {
  nlohmann::json entry = {{"scene", scene.name}, {"title", scene.title}};
  for (const Score& score : scores) {
    nlohmann::json line = ToJson(score);
    if (IsJudged(score)) {
      for (const Ratio& speed : Speeds(scene, score, scores))
        line["speedAgainst"][std::string(speed.peer)] = speed.value;
      if (const auto size = SizeAgainstSmallest(score, scores)) line["sizeAgainstSmallest"] = *size;
    }
    entry["contestants"].push_back(line);
  }
  return entry;
}

}  // namespace bench
