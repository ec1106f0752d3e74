// What the plotter draws with: lines, curves and areas in dots, turned into as few calls of the device as do
// it.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hdiplot/device/plot_device.h"
#include "hdiplot/geometry/clipping.h"
#include "hdiplot/geometry/curves.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/page_setup.h"
#include "hdiplot/plot/pens.h"

namespace hdiplot {

// A line of text as the device takes it; see call::Text.
struct DeviceText {
  hdi::LOGFONTW font;
  Vec2 at;  // where the base line begins, dots
  std::u16string_view text;
  const std::vector<double>* advances = nullptr;
  double height = 0;   // of the font's em, dots
  double oblique = 0;  // radians
  double trackingFactor = 1;
  double widthFactor = 1;
};

// Points are dots of the host, Y down. What is not finite or lies absurdly far off the sheet is not drawn,
// but for straight lines, which are cut there.
class Canvas {
 public:
  Canvas(PlotDevice& device, const Sheet& sheet) : device_(device), sheet_(sheet) {}

  [[nodiscard]] const Sheet& GetSheet() const { return sheet_; }
  [[nodiscard]] static bool IsPlottable(Vec2 p) {
    return std::abs(p.x) <= kFarthest && std::abs(p.y) <= kFarthest;
  }
  [[nodiscard]] static bool IsPlottable(const ConicArc& arc) {
    return IsPlottable(arc.center) && arc.Reach() <= kFarthest;
  }

  // Notes that a part is not drawn because it is not plottable. The canvas does so itself for what it gets.
  void NoteMissing() { isMissing_ = true; }
  // Whether a part has been missing since the last call.
  [[nodiscard]] bool TakeMissing() { return std::exchange(isMissing_, false); }

  // Sets the pen, unless it is the one in use: consecutive lines of one pen become one path in the driver.
  void UseStroke(const Stroke& stroke);
  // Sets the brush, and a solid pen of its colour, in which the driver draws a hairline around areas.
  void UseFill(Rgb color);

  // What is drawn next belongs to this layer and lets so much through; both only when they change.
  void UseLayer(const std::u16string& name);
  void UseAlpha(uint8_t alpha);

  // What is drawn in between leads to `target`. Links do not nest.
  void BeginLink(const std::string& target);
  void EndLink() { device_.Make(call::EndLink{}); }
  // A link of the part of the area, in dots, that is within the view and the sheet, whatever is drawn there.
  void LinkArea(const std::string& target, const Box& area);
  // Words for a reader to show where the same part lies under the pointer.
  void Comment(const std::u16string& text, const Box& whole);

  void Dot(Vec2 at);
  void Line(Vec2 from, Vec2 to);
  void Polyline(std::span<const Vec2> points);
  void Arc(const ConicArc& arc);

  // A path of lines and curves, of plottable points, from BeginPath to EndPath. Where a line meets a curve,
  // the point has to come from OnWholeDot: the driver rounds the ends of lines but not those of curves, and
  // only joins what is the same.
  void BeginPath(Vec2 at);
  void LineTo(Vec2 to);
  void CurveTo(Vec2 control1, Vec2 control2, Vec2 to);
  void EndPath();
  // Where the driver would put the end of a line.
  [[nodiscard]] Vec2 OnWholeDot(Vec2 p) const;
  // Keeps what comes from being joined to what has been drawn.
  void SeparatePath() { device_.Make(call::BeginPath{}); }

  // In front of all else on a page that is to have clips: behind another clip, or none, the driver takes its
  // pen and brush for black ones, but the page goes on in those from before the first clip.
  void PrepareClips() { Unclip(); }
  // The same, and keeps all that follows on the sheet. For a drawing that is larger; off the margins then.
  void ClipToSheet();
  // Keeps what follows, up to Unclip, within the area, and within the view and the sheet as before. False
  // when nothing of it is there; then there is no clip to end.
  [[nodiscard]] bool ClipTo(const Area& area);
  void Unclip();
  // The same for all that follows up to EndView, with other clips in between.
  [[nodiscard]] bool BeginView(const Area& area);
  void EndView();

  // An image, which must live until the device's EndDoc.
  void Bitmap(const hdi::HostImageRecord& record) { device_.Make(call::Bitmap{record}); }

  // Areas: rings of points that are closed here, then filled together.
  void BeginRing();
  void RingPoint(Vec2 p);
  void FillRings(uint32_t fillMode);

  // An area of closed curves, filled together by the nonzero winding rule: from BeginArea to FillArea. A
  // curve is its start and three points for each cubic behind it, all of them plottable.
  void BeginArea();
  void AreaCurve(std::span<const Vec2> points);
  void FillArea();

  // Text in the colour of UseFill. Whether the driver shows it; otherwise it is to be drawn here, over what
  // the driver keeps of it for searching.
  [[nodiscard]] bool Text(const DeviceText& text);

 private:
  static constexpr double kFarthest = 1e9;

  enum class PathPart { kNone, kLines, kCurves };

  void SetPen(const Pen& pen);
  [[nodiscard]] Box Seen(const Box& area) const;
  [[nodiscard]] Area WithinClips(const Area& area) const;
  void SetClip(const Area& area);
  void UseFillMode(uint32_t mode);
  void CloseRing();
  void FlushPathPart();

  PlotDevice& device_;
  Sheet sheet_;
  std::optional<Pen> pen_;        // as last set, as the next five
  std::optional<Stroke> stroke_;  // none when the pen is not from a stroke
  std::optional<Rgb> brush_;
  std::optional<uint32_t> fillMode_;
  std::optional<std::u16string> layer_;
  std::optional<uint8_t> alpha_;
  std::vector<hdi::HT_Double_Point> points_;
  PathPart pathPart_ = PathPart::kNone;
  std::vector<std::vector<hdi::HT_Double_Point>> rings_;  // the first `ringCount_` are in use
  size_t ringCount_ = 0;
  bool hasPageClip_ = false;
  std::vector<Area> clips_;  // the sheet's where it is clipped to, and the views'; each within the last
  bool isMissing_ = false;
};

}  // namespace hdiplot
