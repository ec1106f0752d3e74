// PDF.hdi as a host uses it: called through the DeviceTable.
#include <algorithm>
#include <array>
#include <stdexcept>

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

using LogicalFonts = std::array<hdi::LOGFONTW, kFontFamilies.size()>;

// A host that knows advances has asked for the fonts before.
LogicalFonts SelectFonts(const Scene& scene) {
  constexpr int32_t kRegular = 400;
  constexpr uint8_t kAnyCharacterSet = 1;
  LogicalFonts fonts{};
  for (size_t i = 0; scene.kind == Kind::kTexts && i < fonts.size(); ++i) {
    fonts[i].lfWeight = kRegular;
    fonts[i].lfCharSet = kAnyCharacterSet;
    std::ranges::copy(Widen(kFontFamilies[i]), fonts[i].lfFaceName);
    std::u16string name;
    if (!hdi::GetFontFullName(&fonts[i], name)) throw std::runtime_error("the host library finds no font");
  }
  return fonts;
}

class Plotter {
 public:
  // What is given must outlive the plotter.
  Plotter(hdi::HostDevice& device, const Scene& scene, const TextFonts& fonts)
      : device_(device), scene_(scene), fonts_(fonts), logicalFonts_(SelectFonts(scene)) {}

  void Page() {
    Call<hdi::entry::StartPage>(Position::kStartPage, static_cast<const hdi::DriverDevMode*>(nullptr));
    const hdi::EXTLOGPEN32 pen = {hdi::kPenGeometric | hdi::kPenCapFlat | hdi::kPenJoinMiter,
                                  static_cast<uint32_t>(kLineWidth),
                                  0,
                                  0,
                                  0,
                                  0,
                                  {}};
    Call<hdi::entry::SetPen>(Position::kSetPen, &pen);
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
    }
    Call<hdi::entry::EndPage>(Position::kEndPage);
  }

 private:
  template <typename Function, typename... Arguments>
  void Call(Position position, Arguments... arguments) {
    device_.table->At<Function>(position)(&device_, arguments...);
  }

  [[nodiscard]] const hdi::HT_Double_Point* ShapePoints(size_t index) const {
    return reinterpret_cast<const hdi::HT_Double_Point*>(scene_.Shape(index).data());
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
    const double right = kAreaWidth;
    const double bottom = kAreaHeight;
    SetClip({{{0, 0}, {right, 0}, {right, bottom}, {0, bottom}}});  // a page's first clip is the page's own
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

  void Texts() {
    const auto plot = device_.table->At<hdi::entry::Text>(Position::kText);
    for (size_t i = 0; i < scene_.texts.size(); ++i) {
      const Text& text = scene_.texts[i];
      if (i == 0 || ToColorRef(text.color) != ToColorRef(scene_.texts[i - 1].color)) SetBrush(text.color);
      hdi::LOGFONTW font = logicalFonts_[text.font];
      font.lfHeight = -text.height;
      font.lfEscapement = font.lfOrientation = text.angle;
      const hdi::HT_Double_Point start = {text.start.x, text.start.y};
      plot(&device_, &font, &start, text.units.data(), static_cast<int32_t>(text.units.size()),
           fonts_.Advances(i).data(), text.height, 0, 1, 1);
    }
  }

  hdi::HostDevice& device_;
  const Scene& scene_;
  const TextFonts& fonts_;
  LogicalFonts logicalFonts_;
};

}  // namespace

static_assert(sizeof(Point) == sizeof(hdi::HT_Double_Point));

bool CanPlot(const Scene&) { return true; }

void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start) {
  Session session;
  const TextFonts fonts(scene);
  Plotter plotter(session.Device(), scene, fonts);

  start();
  session.StartDocument(path);
  session.Call<hdi::entry::SetLineScale>(Position::kSetLineScale, 1.0);
  plotter.Page();
  session.EndDocument();
}

}  // namespace bench
