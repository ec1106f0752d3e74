// Draws lines, curves and areas in dots with as few calls of the device as possible.
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
  Vec2 at;  // start of the base line, dots
  std::u16string_view text;
  const std::vector<double>* advances = nullptr;
  double height = 0;   // of the font's em, dots
  double oblique = 0;  // radians
  double trackingFactor = 1;
  double widthFactor = 1;
};

// Points are in dots of the host, Y down. What is not finite or farther than kFarthest from the origin is not
// plottable and left out; straight lines are clipped there.
class Canvas {
 public:
  Canvas(PlotDevice& device, const Sheet& sheet) : device_(device), sheet_(sheet) {}

  [[nodiscard]] const Sheet& GetSheet() const { return sheet_; }
  // The box of the current view, or the sheet.
  [[nodiscard]] Box Visible() const;
  [[nodiscard]] static bool IsPlottable(Vec2 p) {
    return std::abs(p.x) <= kFarthest && std::abs(p.y) <= kFarthest;
  }
  [[nodiscard]] static bool IsPlottable(const ConicArc& arc) {
    return IsPlottable(arc.center) && arc.Reach() <= kFarthest;
  }

  // Notes that a part is not drawn because it is not plottable. The canvas notes what it leaves out itself.
  void NoteMissing() { isMissing_ = true; }
  // Whether a part has been left out since the last call.
  [[nodiscard]] bool TakeMissing() { return std::exchange(isMissing_, false); }

  // Sets the pen if it changes: the driver joins consecutive lines of one pen to one path.
  void UseStroke(const Stroke& stroke);
  // Sets the brush, and a solid pen of the same colour: the driver strokes a hairline around areas.
  void UseFill(Rgb color);

  // The layer and the opacity of what is drawn next. Set only when they change.
  void UseLayer(const std::u16string& name);
  void UseAlpha(uint8_t alpha);

  // What is drawn in between links to `target`. Links do not nest.
  void BeginLink(const std::string& target);
  void EndLink() { device_.Make(call::EndLink{}); }
  // Links the part of the area, in dots, that is within the view and the sheet, whatever is drawn there.
  void LinkArea(const std::string& target, const Box& area);
  // An annotation with this text on the visible part of the area.
  void Comment(const std::u16string& text, const Box& whole);

  void Dot(Vec2 at);
  void Line(Vec2 from, Vec2 to);
  void Polyline(std::span<const Vec2> points);
  void Arc(const ConicArc& arc);

  // A path of lines and curves from BeginPath to EndPath; all points must be plottable. Where a line meets a
  // curve, the point must come from OnWholeDot: the driver rounds the ends of lines but not of curves, and
  // joins equal points only.
  void BeginPath(Vec2 at);
  void LineTo(Vec2 to);
  void CurveTo(Vec2 control1, Vec2 control2, Vec2 to);
  void EndPath();
  // Where the driver puts the end of a line.
  [[nodiscard]] Vec2 OnWholeDot(Vec2 p) const;
  // Prevents the driver from joining what follows to what precedes.
  void SeparatePath() { device_.Make(call::BeginPath{}); }

  // To be called before anything else on a page with clips: after another clip, or none, the driver assumes a
  // black pen and brush, but the page continues in those from before the first clip.
  void PrepareClips() { Unclip(); }
  // The same, and clips all that follows to the sheet. For a drawing that is larger.
  void ClipToSheet();
  // Clips what follows, up to Unclip, to the area within the view and the sheet. False when the area is empty
  // there; then Unclip must not be called.
  [[nodiscard]] bool ClipTo(const Area& area);
  void Unclip();
  // The same up to EndView. Other clips may be set in between.
  [[nodiscard]] bool BeginView(const Area& area);
  void EndView();

  // An image, which must live until the device's EndDoc.
  void Bitmap(const hdi::HostImageRecord& record) { device_.Make(call::Bitmap{record}); }

  // Areas: FillRings closes the rings and fills them together.
  void BeginRing();
  void RingPoint(Vec2 p);
  void FillRings(uint32_t fillMode);

  // An area of closed curves from BeginArea to FillArea, filled by the nonzero winding rule. A curve is its
  // start and three points for each cubic, closed; all of them must be plottable. Straight sides, which have
  // their control points at one and two thirds, become lines.
  void BeginArea();
  void AreaCurve(std::span<const Vec2> points);
  void FillArea();

  // Text in the colour of UseFill. False when the driver does not show it: it keeps the text invisibly for
  // searches, and the caller draws it.
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
  std::optional<Pen> pen_;        // as last set, like the next five
  std::optional<Stroke> stroke_;  // none when the pen is not a stroke's
  std::optional<Rgb> brush_;
  std::optional<uint32_t> fillMode_;
  std::optional<std::u16string> layer_;
  std::optional<uint8_t> alpha_;
  std::vector<hdi::HT_Double_Point> points_;
  PathPart pathPart_ = PathPart::kNone;
  std::vector<std::vector<hdi::HT_Double_Point>> rings_;  // the first `ringCount_` are in use
  size_t ringCount_ = 0;
  bool hasPageClip_ = false;
  std::vector<Area> clips_;  // of the sheet, if clipped to, and of the views; each within the one before
  bool isMissing_ = false;
};

}  // namespace hdiplot
