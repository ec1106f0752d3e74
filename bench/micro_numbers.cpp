// The number writer, on a thousand numbers of each kind that occurs.
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "bench/scene.h"
#include "composition/number_writer.h"

namespace bench {
namespace {

enum class Numbers : int64_t { kWholeDots, kQuarterDots, kFractions, kEveryMagnitude };

std::vector<float> Make(Numbers kind) {
  const Scene scene = MakeScene("lines", 0.0005);
  std::vector<float> numbers;
  for (size_t i = 0; i < scene.points.size(); ++i) {
    const Point point = scene.points[i];
    switch (kind) {
      case Numbers::kWholeDots:
        numbers.push_back(static_cast<float>(point.x));
        break;
      case Numbers::kQuarterDots:
        numbers.push_back(static_cast<float>(point.x + point.y / 4));
        break;
      case Numbers::kFractions:
        numbers.push_back(static_cast<float>(point.x + point.y / 6901));
        break;
      case Numbers::kEveryMagnitude:
        numbers.push_back(static_cast<float>(point.x * std::pow(10.0, static_cast<double>(i % 60) - 30)));
        break;
    }
  }
  return numbers;
}

template <typename Write>
void Run(benchmark::State& state, Write write) {
  const std::vector<float> numbers = Make(static_cast<Numbers>(state.range(0)));
  std::vector<char> text(numbers.size() * hdi::kMaxNumberLength);
  while (state.KeepRunning()) {
    char* out = text.data();
    for (const float number : numbers) out = write(out, number);
    benchmark::DoNotOptimize(out);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(numbers.size()));
}

void Points(benchmark::State& state) {
  Run(state, [](char* out, float number) { return hdi::WriteReal(out, number, hdi::kPointPrecision); });
}
void LineWidths(benchmark::State& state) {
  Run(state, [](char* out, float number) { return hdi::WriteReal(out, number, hdi::kUnlimited); });
}
void SixDigits(benchmark::State& state) {
  Run(state, [](char* out, float number) { return hdi::WriteSixDigits(out, number); });
}
void Whole(benchmark::State& state) {
  Run(state, [](char* out, float number) { return hdi::WriteWhole(out, number); });
}

BENCHMARK(Points)->ArgName("kind")->DenseRange(0, 3);
BENCHMARK(LineWidths)->ArgName("kind")->DenseRange(0, 3);
BENCHMARK(SixDigits)->ArgName("kind")->DenseRange(0, 3);
BENCHMARK(Whole)->ArgName("kind")->Arg(0);

}  // namespace
}  // namespace bench

BENCHMARK_MAIN();
