// The main program of a contestant: plots a scene once and prints the seconds from the first plot call to the
// closed file.
//
//   bench_plot_NAME SCENE SCALE FILE
//
// Exit status 3: the contestant cannot express the scene.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "bench/contestant.h"

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: %s SCENE SCALE FILE\n", argv[0]);
    return 2;
  }
  try {
    const bench::Scene scene = bench::MakeScene(argv[1], std::atof(argv[2]));
    if (!bench::CanPlot(scene)) return 3;
    using Clock = std::chrono::steady_clock;
    Clock::time_point begin;
    bench::PlotScene(scene, argv[3], [&begin] { begin = Clock::now(); });
    std::printf("%.6f\n", std::chrono::duration<double>(Clock::now() - begin).count());
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s: %s\n", argv[0], failure.what());
    return 1;
  }
  return 0;
}
