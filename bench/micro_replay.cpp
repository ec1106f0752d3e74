// The cost of a point and a text from the command list to the finished page, in total and for the content
// generator alone.
#include <benchmark/benchmark.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bench/micro_list.h"
#include "bench/micro_texts.h"
#include "composition/content_generator.h"
#include "composition/page_writer.h"
#include "composition/replay.h"

namespace bench {
namespace {

// A page of the scene's shapes in one pen, as one path, or with a pen before each as many.
enum class Paths : uint8_t { kOne, kMany };

void StartPage(hdi::PlotJob& job) {
  hdi::Record(job, hdi::OP_START_PAGE,
              hdi::StartPageData{1, kA4.WidthPoints(), kA4.HeightPoints(), hdi::kNoBackground, 0, 0});
}

void AddPage(RecordedJob& recorded, const Scene& scene, Paths paths) {
  hdi::PlotJob& job = recorded.Job();
  StartPage(job);
  if (paths == Paths::kOne) {
    recorded.AddShapes(scene, 0);
  } else {
    Scene one = scene;
    for (size_t i = 0; i < scene.ShapeCount(); ++i) {
      hdi::FlushPath(job);
      hdi::Record(job, hdi::OP_SET_PEN, hdi::PenData{2.0F, 1, 1, static_cast<uint32_t>(i % 2 * 255), 0, 0});
      one.points.assign(scene.Shape(i).begin(), scene.Shape(i).end());
      recorded.AddShapes(one, 0);
    }
  }
  hdi::FlushPath(job);
  hdi::Record(job, hdi::OP_END_PAGE);
}

// A whole page: replay, page stream, compression, without saving the document.
void Replay(benchmark::State& state, const hdi::PlotJob& job, const hdi::DriverDevMode& settings) {
  while (state.KeepRunning()) {
    state.PauseTiming();
    std::optional<hdi::PageWriter> writer(std::in_place);
    writer->StartDocument(u"bench");
    state.ResumeTiming();
    benchmark::DoNotOptimize(hdi::ReplayCommands(job.head, job.fontUsage, &settings, *writer));
    state.PauseTiming();
    writer.reset();
    state.ResumeTiming();
  }
}

void ReplayPage(benchmark::State& state) {
  const Scene scene = MakeScene("polylines", 0.1);
  RecordedJob recorded;
  AddPage(recorded, scene, state.range(0) == 0 ? Paths::kOne : Paths::kMany);
  Replay(state, recorded.Job(), hdi::DriverDevMode{});
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(scene.points.size()));
}
BENCHMARK(ReplayPage)->ArgName("pens")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// Argument: texts on the page. The small number shows the cost of the fonts.
void ReplayTexts(benchmark::State& state) {
  const Scene scene = MakeTexts(static_cast<size_t>(state.range(0)));
  const TextFonts layout(scene);
  TextDevice device;
  StartPage(device.Job());
  device.AddTexts(scene, layout);
  hdi::Record(device.Job(), hdi::OP_END_PAGE);
  Replay(state, device.Job(), device.Settings());
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(scene.texts.size()));
}
BENCHMARK(ReplayTexts)->ArgName("texts")->Arg(10)->Arg(10'000)->Unit(benchmark::kMillisecond);

class NoNames final : public hdi::ResourceNames {
 public:
  std::string AddExtGState(const hdi::ExtGStateEntries&) override { return "FXE1"; }
  std::string FontName(uint32_t) override { return "FXF1"; }
  std::string XObjectName(uint32_t) override { return "FXX1"; }
  std::string PropertiesName(uint32_t) override { return "FXP1"; }
  [[nodiscard]] size_t Count() const override { return 0; }
  void KeepFirst(size_t /*count*/) noexcept override {}
};

hdi::PathPoints ToPath(const Scene& scene, double offset) {
  hdi::PathPoints points;
  for (size_t i = 0; i < scene.ShapeCount(); ++i) {
    auto type = hdi::PointType::kMove;
    for (const Point& point : scene.Shape(i)) {
      points.push_back(
          {static_cast<float>(point.x + offset), static_cast<float>(point.y + offset), type, false});
      type = hdi::PointType::kLine;
    }
  }
  return points;
}

// Argument: hundredths of a dot to add to whole dots.
void WritePath(benchmark::State& state) {
  hdi::PathObject path;
  path.points = ToPath(MakeScene("polylines", 0.01), static_cast<double>(state.range(0)) / 100);
  path.stroke = true;
  NoNames names;
  while (state.KeepRunning()) {
    hdi::ContentGenerator generator(names);
    generator.Write(path);
    benchmark::DoNotOptimize(generator.Finish().data());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(path.points.size()));
}
BENCHMARK(WritePath)->ArgName("hundredths")->Arg(0)->Arg(25)->Arg(37);

// Objects whose clip changes each time: shared clips, and equal ones at different addresses.
void WriteUnderClips(benchmark::State& state) {
  const hdi::PathPoints outline = ToPath(MakeScene("polylines", 0.001), 0);
  const bool shared = state.range(0) != 0;
  const auto clip = std::make_shared<const hdi::Clip>(outline);
  constexpr int kObjects = 1000;
  std::vector<hdi::PathObject> objects(kObjects);
  for (hdi::PathObject& object : objects) {
    object.points = {{10, 10, hdi::PointType::kMove, false}, {500, 600, hdi::PointType::kLine, false}};
    object.stroke = true;
    object.attributes.clip = shared ? clip : std::make_shared<const hdi::Clip>(outline);
  }
  NoNames names;
  while (state.KeepRunning()) {
    hdi::ContentGenerator generator(names);
    for (const hdi::PathObject& object : objects) generator.Write(object);
    benchmark::DoNotOptimize(generator.Finish().data());
  }
  state.SetItemsProcessed(state.iterations() * kObjects);
}
BENCHMARK(WriteUnderClips)->ArgName("shared")->Arg(1)->Arg(0);

}  // namespace
}  // namespace bench

BENCHMARK_MAIN();
