// Peak memory of large jobs, compared with the size of the command list and the page's stream. Each job runs
// in a process of its own.
//
//   bench_memory [--scale F]
//   bench_memory --job PAGES GROUPS FILE    runs one job; prints the bytes of its list
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "bench/child.h"
#include "bench/guarded_main.h"
#include "bench/random.h"
#include "bench/scene.h"
#include "bench/session.h"
#include "bench/work_folder.h"

namespace bench {
namespace {

using hdi::Position;

// Each group of lines has one pen and becomes an object of the page.
constexpr size_t kLinesPerGroup = 10;
constexpr size_t kRecordsPerGroup = 2 * kLinesPerGroup + 2;  // two points a line; stroke and pen

struct Job {
  size_t pages;
  size_t groups;  // on each page
};

struct Memory {
  double list;  // bytes
  double peak;  // bytes of the whole process
};

double ResidentBytes() {
  size_t all = 0;
  size_t resident = 0;
  std::ifstream("/proc/self/statm") >> all >> resident;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void PlotGroup(Session& session, Random& random) {
  const auto color = static_cast<uint32_t>(random.Below(1 << 24));
  const hdi::EXTLOGPEN32 pen = {hdi::kPenGeometric, static_cast<uint32_t>(kLineWidth), 0, color, 0, 0, {}};
  session.Call<hdi::entry::SetPen>(Position::kSetPen, &pen);
  for (size_t i = 0; i < kLinesPerGroup; ++i) {
    std::array<hdi::HT_Double_Point, 2> line;
    for (hdi::HT_Double_Point& point : line) {
      point.x = random.Below(kA4.areaWidth);
      point.y = random.Below(kA4.areaHeight);
    }
    session.Call<hdi::entry::Polyline>(Position::kPolyline, line.data(), int32_t{2});
  }
}

void RunJob(const Job& job, const std::string& file) {
  Session session(kA4);
  session.StartDocument(file);
  Random random(20240609);
  const double before = ResidentBytes();
  for (size_t page = 0; page < job.pages; ++page) {
    session.Call<hdi::entry::StartPage>(Position::kStartPage,
                                        static_cast<const hdi::DriverDevMode*>(nullptr));
    for (size_t group = 0; group < job.groups; ++group) PlotGroup(session, random);
    session.Call<hdi::entry::EndPage>(Position::kEndPage);
  }
  fmt::print("{:.0f}\n", ResidentBytes() - before);
  session.EndDocument();
}

Memory Measure(const Job& job, const WorkFolder& folder) {
  const auto run = RunProgram({"/proc/self/exe", "--job", fmt::format("{}", job.pages),
                               fmt::format("{}", job.groups), (folder.Path() / "job.pdf").string()});
  if (!run) throw std::runtime_error("a job failed");
  return {std::atof(run->output.c_str()), run->peakBytes};
}

// `sample` is one page, smaller by the factor `pageSize` than a page of `job`.
void Compare(const std::string& title, const Job& job, const Job& sample, double pageSize,
             const WorkFolder& folder) {
  constexpr double kMega = 1e6;
  const Memory nothing = Measure({1, 0}, folder);
  const double idle = nothing.peak - nothing.list;
  const Memory one = Measure(sample, folder);
  const Memory all = Measure(job, folder);
  const double page = (one.peak - idle - one.list) * pageSize;
  const double peak = all.peak - idle;
  fmt::print("{:<34}{:>9.1f}{:>9.1f}{:>9.1f}{:>8.2f}\n", title, all.list / kMega, page / kMega, peak / kMega,
             peak / (all.list + page));
}

void CompareAll(double scale) {
  const WorkFolder folder{std::string()};
  const auto scaled = [scale](double count) { return static_cast<size_t>(count * scale) + 1; };
  constexpr double kParts = 10;
  constexpr size_t kGroupsPerPage = 100;
  const size_t groups = scaled(5e6 / kRecordsPerGroup);
  const size_t pages = scaled(2000);
  fmt::print("{:<34}{:>9}{:>9}{:>9}{:>8}\n", "", "list MB", "page MB", "peak MB", "ratio");
  const auto part = static_cast<size_t>(static_cast<double>(groups) / kParts) + 1;
  Compare(fmt::format("{} records on one page", groups * kRecordsPerGroup), {1, groups}, {1, part}, kParts,
          folder);
  Compare(fmt::format("{} pages of {} records", pages, kGroupsPerPage * kRecordsPerGroup),
          {pages, kGroupsPerPage}, {1, kGroupsPerPage}, 1, folder);
}

int Main(int argc, char** argv) {
  const std::string_view option = argc > 1 ? argv[1] : "";
  if (argc == 5 && option == "--job") {
    RunJob({std::strtoul(argv[2], nullptr, 10), std::strtoul(argv[3], nullptr, 10)}, argv[4]);
    return 0;
  }
  const double scale = argc == 3 && option == "--scale" ? std::atof(argv[2]) : 1;
  if ((argc != 1 && argc != 3) || (argc == 3 && option != "--scale") || !(scale > 0)) {
    std::fprintf(stderr, "usage: %s [--scale F]\n", argv[0]);
    return 2;
  }
  CompareAll(scale);
  return 0;
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) { return bench::GuardedMain(bench::Main, argc, argv); }
