// Layouts on paper: their own sheet or another, and the model within viewports.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "host/hdiplot/plot/canvas.h"
#include "tests/hdiplot_plot/logging_driver.h"

namespace hdiplot {
namespace {

using Points = std::vector<hdi::HT_Double_Point>;

Entity OnPaper(Shape shape, const std::string& layer = "0") {
  Entity entity = Thing(std::move(shape), layer);
  entity.attributes.paperSpace = true;
  return entity;
}

// A sheet as large as the logging driver's; a millimetre, ten dots, is a unit of it.
class PlotLayouts : public testing::Test {
 protected:
  PlotLayouts() {
    layout_.block = kActivePaper;
    layout_.sheet = {200, 300, 0, 0, 0, 0};
    viewport_.center = {100, 100};
    viewport_.width = 80;
    viewport_.height = 40;
    viewport_.scale = 2;
    viewport_.viewCenter = {0, 0};
    drawing_.entities = {Thing(LineEntity{{-5, 0}, {5, 0}})};
  }

  std::vector<LoggedCall> Plot(const PlotOptions& options = {}) {
    LoggingDriver driver = PlotThrough(drawing_, options, true, &layout_);
    course_ = driver.course;
    return driver.calls;
  }
  // Rounded, so that they can be compared.
  static Points Rounded(Points points) {
    for (auto& p : points) p = {std::round(p.x), std::round(p.y)};
    return points;
  }
  static std::vector<Points> Clips(const std::vector<LoggedCall>& calls) {
    std::vector<Points> clips;
    for (const LoggedCall& call : Named(calls, "SetClip")) clips.push_back(Rounded(call.points[0]));
    return clips;
  }

  Drawing drawing_;
  Layout layout_;
  ViewportEntity viewport_;
  std::vector<std::string> course_;
};

void ExpectPoints(const LoggedCall& call, const std::vector<Vec2>& expected) {
  ASSERT_EQ(call.points.at(0).size(), expected.size());
  for (size_t i = 0; i < expected.size(); ++i) {
    EXPECT_NEAR(call.points[0][i].x, expected[i].x, 1e-6);
    EXPECT_NEAR(call.points[0][i].y, expected[i].y, 1e-6);
  }
}

TEST_F(PlotLayouts, ShowTheModelThroughAViewport) {
  viewport_.twist = std::numbers::pi / 2;
  viewport_.target = {1, 0};
  drawing_.entities.push_back(OnPaper(viewport_, "Hidden"));
  drawing_.entities.push_back(OnPaper(LineEntity{{0, 0}, {10, 0}}));
  drawing_.layers["Hidden"].off = true;
  layout_.origin = {1, 2};
  const auto calls = Plot();
  const std::vector<Points> clips = Clips(calls);
  ASSERT_EQ(clips.size(), 4U);
  EXPECT_EQ(clips[2][0].x, 610);
  EXPECT_EQ(clips[2][0].y, 3000 - 820);
  EXPECT_EQ(clips[2][2].x, 1410);
  for (const size_t beside : {1U, 3U}) EXPECT_EQ(clips[beside][2].x, 4000) << "beyond the sheet";
  EXPECT_EQ(course_[1], "SetClip") << "in front of all else";
  const auto lines = Named(calls, "Polyline");
  ASSERT_EQ(lines.size(), 2U) << "and no border";
  // (-6, 0) to (4, 0) from the target, turned to the left, twice as large.
  ExpectPoints(lines[0], {{1010, 3000 - 1020 + 120}, {1010, 3000 - 1020 - 80}});
  ExpectPoints(lines[1], {{10, 2980}, {110, 2980}});
}

TEST_F(PlotLayouts, FreezeLayersInOneViewportOnly) {
  drawing_.entities.push_back(Thing(LineEntity{{0, 0}, {0, 5}}, "Walls"));
  drawing_.entities.push_back(OnPaper(viewport_));
  viewport_.frozenLayers = {"WALLS"};
  viewport_.center = {100, 200};
  drawing_.entities.push_back(OnPaper(viewport_));
  EXPECT_EQ(Named(Plot(), "Polyline").size(), 2U + 1 + 1 + 1) << "lines and borders";
}

TEST_F(PlotLayouts, KeepClipsWithinAnotherOutline) {
  viewport_.clip.polyline.closed = true;
  for (const Vec2 p : {Vec2{60, 80}, {140, 80}, {60, 120}}) {
    viewport_.clip.polyline.vertices.push_back({p});
  }
  drawing_.entities.push_back(OnPaper(viewport_));
  drawing_.entities.push_back(OnPaper(LineEntity{{-50, 0}, {0, 0}}));
  const auto clips = Clips(Plot());
  ASSERT_EQ(clips.size(), 4U) << "the page's, the sheet's, the outline, the sheet's again";
  const auto isPoint = [](double x, double y) {
    return testing::AllOf(testing::Field(&hdi::HT_Double_Point::x, x),
                          testing::Field(&hdi::HT_Double_Point::y, y));
  };
  EXPECT_THAT(clips[2],
              testing::UnorderedElementsAre(isPoint(600, 2200), isPoint(1400, 2200), isPoint(600, 1800)));
  EXPECT_EQ(clips[3].size(), 4U);

  for (PolyVertex& vertex : viewport_.clip.polyline.vertices) vertex.point = {60, 80};
  drawing_.entities = {OnPaper(viewport_), OnPaper(LineEntity{{-50, 0}, {0, 0}})};
  EXPECT_EQ(Clips(Plot()).at(2).size(), 4U) << "the frame, as the outline encloses nothing";
}

TEST_F(PlotLayouts, CutLinksToTheView) {
  const auto linked = [](Entity entity, const char* target) {
    entity.attributes.link = target;
    return entity;
  };
  drawing_.entities = {linked(Thing(LineEntity{{-5, 0}, {500, 5}}), "crossing"),
                       linked(Thing(LineEntity{{500, 0}, {600, 5}}), "outside"), OnPaper(viewport_, "Hidden"),
                       linked(OnPaper(LineEntity{{0, 0}, {10, 0}}), "beside")};
  drawing_.layers["Hidden"].off = true;
  const auto calls = Plot();
  std::erase_if(course_, [](const std::string& call) { return call.starts_with("Set"); });
  EXPECT_THAT(course_, testing::ElementsAre("Layer 0", "Alpha 255", "Polyline", "Alpha 0",
                                            "BeginLink crossing", "PolyPolygon", "EndLink", "Alpha 255",
                                            "Polyline", "BeginLink beside", "Polyline", "EndLink"));
  Box area;
  const auto areas = Named(calls, "PolyPolygon");
  ASSERT_EQ(areas.size(), 1U);
  for (const auto& p : areas[0].points[0]) area.Add({p.x, p.y});
  EXPECT_NEAR(area.low.x, 900, 1e-6);
  EXPECT_NEAR(area.high.x, 1400, 1e-6) << "the view's right side";
  EXPECT_NEAR(area.low.y, 1900, 1e-6);
  EXPECT_NEAR(area.high.y, 2000, 1e-6);
}

TEST_F(PlotLayouts, FitOnAPaperOfTheUsers) {
  layout_.sheet = {400, 300, 0, 0, 0, 0};
  drawing_.entities.push_back(OnPaper(LineEntity{{0, 0}, {400, 300}}));
  PlotOptions options;
  options.paper.name = "A4";
  ExpectPoints(Named(Plot(options), "Polyline").at(0), {{0, 2250}, {2000, 750}});
}

TEST(Canvas, CutsClipsAndCommentsToViews) {
  LoggingDriver driver;
  PlotDevice device(driver);
  Canvas canvas(device, MakeSheet(device));
  const ClipRing arrow{{0, 0}, {100, 0}, {50, 50}, {100, 100}, {0, 100}};  // with a notch at the right
  ASSERT_TRUE(canvas.BeginView(arrow));
  const std::vector<ClipRing> image{{{40, 40}, {40, 60}, {200, 60}, {200, 40}}};
  EXPECT_TRUE(canvas.ClipTo(image));
  const Points cut = driver.calls.back().points[0];
  const auto isNotch = [](const hdi::HT_Double_Point& p) { return p.x == 50 && p.y == 50; };
  EXPECT_TRUE(std::ranges::any_of(cut, isNotch));
  EXPECT_TRUE(std::ranges::all_of(cut, [](const auto& p) { return p.x >= 40 && p.x <= 60 && p.y >= 40; }));
  const std::vector<ClipRing> beside{{{200, 0}, {300, 0}, {300, 9}}};
  EXPECT_FALSE(canvas.ClipTo(beside));
  const ClipRing star{{50, 0}, {80, 90}, {0, 35}, {100, 35}, {20, 90}};
  canvas.EndView();
  ASSERT_TRUE(canvas.BeginView(star));
  const std::vector<ClipRing> whole{{{0, 0}, {100, 0}, {100, 100}, {0, 100}}};
  EXPECT_TRUE(canvas.ClipTo(whole));
  EXPECT_TRUE(std::ranges::any_of(driver.calls.back().points[0], [](const auto& p) { return p.y == 90; }));
  canvas.EndView();
  ASSERT_TRUE(canvas.BeginView(arrow));
  canvas.Comment(u"words", {{90, 10}, {150, 20}});
  EXPECT_EQ(driver.course.back(), "Comment 90 100 10 20 0 words");
}

}  // namespace
}  // namespace hdiplot
