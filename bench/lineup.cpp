#include "bench/lineup.h"

#include <fmt/format.h>

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "bench/cores.h"

namespace bench {
namespace {
namespace fs = std::filesystem;

fs::path ProgramOf(const std::string& name) {
  return fs::read_symlink("/proc/self/exe").parent_path() / ("bench_plot_" + name);
}

}  // namespace

std::vector<Contestant> FindContestants(const std::vector<std::string>& compressions) {
  std::vector<Contestant> found;
  const std::string ours = ProgramOf("module").string();
  if (!fs::exists(ours)) throw std::runtime_error("PDF.hdi is not built");
  const size_t all = CoreCount();
  for (const std::string& compression : compressions) {
    const auto add = [&](size_t threads, size_t cores) {
      found.push_back({ours, fmt::format("module-{}-{}", compression, threads), "PDF.hdi, " + compression,
                       compression, threads, cores});
    };
    add(all, 0);
    if (all > 2) add(2, 2);
    if (all > 1) add(1, 1);
  }
  for (const auto& [name, title] : {std::pair{"cairo", kCairoTitle}, std::pair{"mupdf", kMupdfTitle},
                                    std::pair{"engine", "engine's objects"}}) {
    const std::string program = ProgramOf(name).string();
    if (fs::exists(program)) {
      found.push_back({program, name, title, {}, 1, 0});
    } else {
      fmt::print(stderr, "{} is not built and left out\n", title);
    }
  }
  return found;
}

}  // namespace bench
