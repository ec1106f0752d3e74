// What a point costs on its way into the command list.
#include <benchmark/benchmark.h>

#include "bench/micro_list.h"

namespace bench {
namespace {

// Arguments: points of a polyline, whether fractions are kept.
void RecordPolylines(benchmark::State& state) {
  const Scene scene = [&] {
    Scene made = MakeScene("polylines", 0.1);
    made.pointsPerShape = static_cast<size_t>(state.range(0));
    return made;
  }();
  while (state.KeepRunning()) {
    RecordedJob recorded;
    recorded.AddShapes(scene, static_cast<int32_t>(state.range(1)));
    benchmark::DoNotOptimize(recorded.Job().tail);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(scene.points.size()));
}
BENCHMARK(RecordPolylines)
    ->ArgNames({"points", "fractions"})
    ->Args({2, 0})
    ->Args({11, 0})
    ->Args({11, 1})
    ->Args({1000, 0});

// A pen before every line: the path is flushed and the state recorded each time.
void RecordLinesWithPens(benchmark::State& state) {
  const Scene scene = MakeScene("lines", 0.05);
  Scene one = scene;
  while (state.KeepRunning()) {
    RecordedJob recorded;
    for (size_t i = 0; i < scene.ShapeCount(); ++i) {
      hdi::FlushPath(recorded.Job());
      hdi::Record(recorded.Job(), hdi::OP_SET_PEN, hdi::PenData{2.0F, 1, 1, 0, 0, 0});
      one.points.assign(scene.Shape(i).begin(), scene.Shape(i).end());
      recorded.AddShapes(one, 0);
    }
    benchmark::DoNotOptimize(recorded.Job().tail);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(scene.ShapeCount()));
}
BENCHMARK(RecordLinesWithPens);

}  // namespace
}  // namespace bench

BENCHMARK_MAIN();
