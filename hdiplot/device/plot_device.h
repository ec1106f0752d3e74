// One open device of the driver and the job that is plotted on it: the calls of the DeviceTable as methods.
// Every call of hdiplot goes through here, whether it comes from a drawing or from a trace, so this is also
// where a trace is recorded.
//
// Coordinates are the host's: dots of the device, Y down, origin at the upper left corner of the printable
// area.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/device/record_fields.h"
#include "platform/border.h"

namespace hdiplot {

using Points = std::span<const hdi::HT_Double_Point>;

struct Rgb {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  bool operator==(const Rgb&) const = default;
};

struct Pen {
  uint32_t style = hdi::kPenGeometric;
  uint32_t width = 1;  // dots
  Rgb color;
  std::vector<uint32_t> entries;  // dashes and gaps in dots, read for kPenUserStyle
  bool operator==(const Pen&) const = default;
};

struct Brush {
  Rgb color;
  uint32_t style = 0;
  uint64_t hatch = 0;
  bool operator==(const Brush&) const = default;
};

class TraceWriter;

// Methods return what the entry returned. A null position of the table gives 0.
class PlotDevice {
 public:
  // Opens `driver`'s device. The driver must outlive it.
  explicit PlotDevice(hdi::HT_Driver& driver);
  PlotDevice(const PlotDevice&) = delete;
  PlotDevice& operator=(const PlotDevice&) = delete;
  ~PlotDevice();  // closes the device

  // From here on `recorder` gets every call but those of the document's start and end, which traces do not
  // hold. It must outlive the device.
  void RecordTo(TraceWriter& recorder) { recorder_ = &recorder; }

  [[nodiscard]] hdi::HT_Driver& Driver() { return driver_; }
  // Calls that draw: what the summary line counts.
  [[nodiscard]] uint64_t ObjectCount() const { return objects_; }
  [[nodiscard]] uint32_t PageCount() const { return pages_; }

  // No output: `defaultOutput` is the file, which must be given then.
  int32_t StartDoc(const std::u16string& docName, const std::optional<std::u16string>& output,
                   const std::u16string& defaultOutput);
  int32_t EndDoc();

  uint32_t GetCaps(int32_t index);
  // With changes, even an empty list of them, the page starts with a copy of the driver's record in which
  // they have been made; without, with a null record.
  int32_t StartPage(const std::optional<std::vector<FieldSetting>>& changes);
  int32_t EndPage();
  int32_t SetPen(const Pen& pen);
  int32_t SetBrush(const Brush& brush);
  int32_t SetAlpha(uint32_t alpha);
  int32_t SetRasterOp(uint32_t code);
  int32_t SetFillMode(uint32_t mode);
  int32_t SetLineScale(double scale);
  int32_t Polyline(Points points);
  int32_t Polygon(Points points);
  int32_t PolyPolygon(std::span<const std::vector<hdi::HT_Double_Point>> polygons);
  int32_t PolyBezier(Points points);
  // Radii a and b, rotation c, from angle d to angle e, all counter-clockwise as seen on paper.
  int32_t Arc(hdi::HT_Double_Point center, double a, double b, double c, double d, double e);
  int32_t BeginPath();
  int32_t EndPath();
  int32_t FillPath();
  int32_t StrokeFillPath();
  // No polygons: a null list. `apply` goes into the last node.
  int32_t SetClip(std::span<const std::vector<hdi::HT_Double_Point>> polygons, uint32_t apply = 1);
  int32_t BeginLink(const std::u16string& target);
  int32_t EndLink();
  int32_t SetLayer(const std::u16string& name);  // at most 1023 units
  // `advances` holds one number for each unit of the text, or is null.
  int32_t Text(const hdi::LOGFONTW& font, hdi::HT_Double_Point position, std::u16string_view text,
               const std::vector<double>* advances, double textHeight, double obliqueAngle,
               double trackingFactor, double widthFactor);
  // The record and its raster must live until EndDoc has returned.
  int32_t Bitmap(const hdi::HostImageRecord& image);
  // `rect` is x1, x2, y1, y2.
  int32_t ShxComment(const std::u16string& text, std::span<const int32_t, 4> rect, uint32_t flags);

 private:
  template <typename Function, typename... Arguments>
  auto Invoke(hdi::Position position, Arguments... arguments);
  template <typename Record, typename... Values>
  void Log(Values&&... values);

  hdi::HT_Driver& driver_;
  hdi::HostDevice device_{};
  TraceWriter* recorder_ = nullptr;
  std::u16string defaultOutput_;
  std::vector<uint32_t> penWords_;  // kept for its memory, as the next two
  std::vector<hdi::HT_Double_Point> joinedPoints_;
  std::vector<uint32_t> counts_;
  uint64_t objects_ = 0;
  uint32_t pages_ = 0;
};

}  // namespace hdiplot
