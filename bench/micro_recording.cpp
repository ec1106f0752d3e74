// The cost of recording a point and a text.
#include <benchmark/benchmark.h>

#include "bench/micro_list.h"
#include "bench/micro_texts.h"

namespace bench {
namespace {

// Arguments: points per polyline, whether fractions are kept.
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

// A pen before every line, so that each flushes the path and records the state.
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

void RecordTexts(benchmark::State& state) {
  const Scene scene = MakeTexts(1000);
  const TextFonts layout(scene);
  while (state.KeepRunning()) {
    TextDevice device;
    device.AddTexts(scene, layout);
    benchmark::DoNotOptimize(device.Job().tail);
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(scene.texts.size()));
}
BENCHMARK(RecordTexts);

}  // namespace
}  // namespace bench

BENCHMARK_MAIN();
