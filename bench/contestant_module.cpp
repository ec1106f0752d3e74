// PDF.hdi, called through the DeviceTable as by a host.
#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>
#include <vector>

#include "bench/contestant.h"
#include "bench/session.h"
#include "bench/text_fonts.h"
#include "platform/border.h"

namespace bench {
namespace {

using hdi::Position;

uint32_t ToColorRef(Color color) {
  return static_cast<uint32_t>(color.red | color.green << 8 | color.blue << 16);
}

using LogicalFonts = std::vector<hdi::LOGFONTW>;

// A host that knows the advances has looked up the fonts before.
LogicalFonts SelectFonts(const Scene& scene) {
  constexpr int32_t kRegular = 400;
  constexpr uint8_t kAnyCharacterSet = 1;
  LogicalFonts fonts;
  for (const std::string& family : scene.families) {
    hdi::LOGFONTW& font = fonts.emplace_back();
    font.lfWeight = kRegular;
    font.lfCharSet = kAnyCharacterSet;
    std::ranges::copy(Widen(family), font.lfFaceName);
    std::u16string name;
    if (!hdi::GetFontFullName(&font, name)) throw std::runtime_error("the host library finds no font");
  }
  return fonts;
}

class Plotter {
 public:
  // The arguments must outlive the plotter.
  Plotter(hdi::HostDevice& device, const Scene& scene, const TextFonts& fonts)
      : device_(device), scene_(scene), fonts_(fonts), logicalFonts_(SelectFonts(scene)) {}

  void Page(size_t page) {
    Call<hdi::entry::StartPage>(Position::kStartPage, static_cast<const hdi::DriverDevMode*>(nullptr));
    SetPen({kLineWidth, {}, false, {}});
    switch (scene_.kind) {
      case Kind::kStrokes:
        Shapes(Position::kPolyline);
        break;
      case Kind::kCurves:
        Shapes(Position::kPolyBezier);
        break;
      case Kind::kClipped:
        ClippedShapes();
        break;
      case Kind::kTexts:
        Texts();
        break;
      case Kind::kMixed:
        Steps(scene_.pages[page]);
        break;
    }
    Call<hdi::entry::EndPage>(Position::kEndPage);
  }

 private:
  template <typename Function, typename... Arguments>
  void Call(Position position, Arguments... arguments) {
    device_.table->At<Function>(position)(&device_, arguments...);
  }

  [[nodiscard]] static const hdi::HT_Double_Point* HostPoints(std::span<const Point> points) {
    return reinterpret_cast<const hdi::HT_Double_Point*>(points.data());
  }

  [[nodiscard]] const hdi::HT_Double_Point* ShapePoints(size_t index) const {
    return HostPoints(scene_.Shape(index));
  }

  // The record's dash entries continue after its declared end.
  void SetPen(const Pen& pen) {
    const uint32_t ends =
        pen.isRound ? hdi::kPenCapRound | hdi::kPenJoinRound : hdi::kPenCapFlat | hdi::kPenJoinMiter;
    const uint32_t line = pen.dashes.empty() ? hdi::kPenSolid : hdi::kPenUserStyle;
    penWords_ = {hdi::kPenGeometric | ends | line,
                 static_cast<uint32_t>(pen.width),
                 0,
                 ToColorRef(pen.color),
                 0,
                 static_cast<uint32_t>(pen.dashes.size())};
    penWords_.insert(penWords_.end(), pen.dashes.begin(), pen.dashes.end());
    penWords_.resize(std::max(penWords_.size(), sizeof(hdi::EXTLOGPEN32) / sizeof(uint32_t)));
    Call<hdi::entry::SetPen>(Position::kSetPen, reinterpret_cast<const hdi::EXTLOGPEN32*>(penWords_.data()));
  }

  void Shapes(Position position) {
    const auto plot = device_.table->At<hdi::entry::Polyline>(position);
    const auto count = static_cast<int32_t>(scene_.pointsPerShape);
    for (size_t i = 0; i < scene_.ShapeCount(); ++i) plot(&device_, ShapePoints(i), count);
  }

  void SetClip(const std::array<Point, 4>& corners) {
    const hdi::ClipPolygon node = {1, nullptr, 4,
                                   reinterpret_cast<const hdi::HT_Double_Point*>(corners.data())};
    Call<hdi::entry::SetClip>(Position::kSetClip, &node);
  }

  void SetBrush(Color color) {
    const hdi::LOGBRUSH brush = {0, ToColorRef(color), 0};
    Call<hdi::entry::SetBrush>(Position::kSetBrush, &brush);
  }

  void ClippedShapes() {
    const double right = scene_.sheet.areaWidth;
    const double bottom = scene_.sheet.areaHeight;
    // The driver takes a page's first clip as the page's own.
    SetClip({{{0, 0}, {right, 0}, {right, bottom}, {0, bottom}}});
    Call<hdi::entry::SetFillMode>(Position::kSetFillMode, hdi::kFillWinding);
    const auto polygon = device_.table->At<hdi::entry::Polygon>(Position::kPolygon);
    const auto fill = device_.table->At<hdi::entry::FillPath>(Position::kFillPath);
    const auto count = static_cast<int32_t>(scene_.pointsPerShape);
    size_t shape = 0;
    for (const Clip& clip : scene_.clips) {
      SetClip(clip.corners);
      SetBrush(clip.color);
      for (size_t i = 0; i < scene_.shapesPerClip; ++i) {
        polygon(&device_, ShapePoints(shape++), count);
        fill(&device_);
      }
    }
  }

  void PlotText(size_t index) {
    const Text& text = scene_.texts[index];
    hdi::LOGFONTW font = logicalFonts_[text.font];
    font.lfHeight = -text.height;
    font.lfEscapement = font.lfOrientation = text.angle;
    const hdi::HT_Double_Point start = {text.start.x, text.start.y};
    const auto plot = device_.table->At<hdi::entry::Text>(Position::kText);
    plot(&device_, &font, &start, text.units.data(), static_cast<int32_t>(text.units.size()),
         fonts_.Advances(index).data(), text.height, 0, 1, 1);
  }

  void Texts() {
    for (size_t i = 0; i < scene_.texts.size(); ++i) {
      const Color color = scene_.texts[i].color;
      if (i == 0 || ToColorRef(color) != ToColorRef(scene_.texts[i - 1].color)) SetBrush(color);
      PlotText(i);
    }
  }

  void Steps(std::span<const Step> steps) {
    Call<hdi::entry::SetFillMode>(Position::kSetFillMode, hdi::kFillAlternate);
    for (const Step& step : steps) PlotStep(step);
  }

  void PlotStep(const Step& step) {
    const auto count = static_cast<int32_t>(step.count);
    switch (step.kind) {
      case Step::Kind::kPen:
        SetPen(scene_.pens[step.index]);
        break;
      case Step::Kind::kBrush:
        SetBrush(scene_.brushes[step.index]);
        break;
      case Step::Kind::kPolyline:
        Call<hdi::entry::Polyline>(Position::kPolyline, HostPoints(scene_.Points(step)), count);
        break;
      case Step::Kind::kCurves:
        Call<hdi::entry::PolyBezier>(Position::kPolyBezier, HostPoints(scene_.Points(step)), count);
        break;
      case Step::Kind::kPolygons: {
        const Polygons& polygons = scene_.polygons[step.index];
        Call<hdi::entry::PolyPolygon>(Position::kPolyPolygon,
                                      HostPoints(std::span(scene_.points).subspan(polygons.first)),
                                      polygons.counts.data(), static_cast<int32_t>(polygons.counts.size()));
        break;
      }
      case Step::Kind::kText:
        PlotText(step.index);
        break;
    }
  }

  hdi::HostDevice& device_;
  const Scene& scene_;
  const TextFonts& fonts_;
  LogicalFonts logicalFonts_;
  std::vector<uint32_t> penWords_;
};

}  // namespace

static_assert(sizeof(Point) == sizeof(hdi::HT_Double_Point));

bool CanPlot(const Scene&) { return true; }

void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start) {
  Session session(scene.sheet);
  const TextFonts fonts(scene);
  Plotter plotter(session.Device(), scene, fonts);

  start();
  session.StartDocument(path);
  session.Call<hdi::entry::SetLineScale>(Position::kSetLineScale, 1.0);
  for (size_t page = 0; page < scene.PageCount(); ++page) plotter.Page(page);
  session.EndDocument();
}

}  // namespace bench
