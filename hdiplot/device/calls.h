// The calls that a host makes on an open device, each described once: its entry, its keys in a plot trace,
// and how it is made. To add a call, add its structure and name it in `Call`.
//
// Describe passes each key with its member to `keys`, which reads or writes it:
//   keys(name, member)                     a key that must be there; the value of a std::optional may be null
//   keys.Optional(name, member, leftOut)   may be left out and then means `leftOut`; default: 0 or empty
//   keys.IfGiven(name, member)             a std::optional without a value when the key is left out
// Problem(), where there is one, returns what the driver could not take, or an empty string.
//
// Points, polygons, advances and counted text are borrowed and must outlive the call; a raster must outlive
// the document. Coordinates are the host's: dots of the device, Y down, origin at the upper left corner of
// the printable area.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "hdiplot/device/open_device.h"
#include "hdiplot/device/record_fields.h"
#include "platform/border.h"

namespace hdiplot {

using Points = std::span<const hdi::HT_Double_Point>;
using Polygons = std::span<const std::vector<hdi::HT_Double_Point>>;

struct Rgb {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  bool operator==(const Rgb&) const = default;
};

// 0x00BBGGRR, as records hold colours.
[[nodiscard]] constexpr uint32_t ColorWord(Rgb color) {
  return uint32_t{color.red} | uint32_t{color.green} << 8 | uint32_t{color.blue} << 16;
}

struct Pen {
  uint32_t style = hdi::kPenGeometric;
  uint32_t width = 1;  // dots
  Rgb color;
  std::vector<uint32_t> entries;  // dashes and gaps in dots, read for kPenUserStyle
  bool operator==(const Pen&) const = default;
};

namespace call {

namespace entry = hdi::entry;
using enum CallKind;
using hdi::Position;

// A call without arguments.
template <typename Self>
struct Bare {
  static void Describe(const auto& /*self*/, const auto& /*keys*/) {}
  int32_t MakeOn(OpenDevice& device) const { return device.Enter(Self::kEntry); }
};

// A call that takes an array of points.
template <typename Self>
struct WithPoints {
  Points points;

  static void Describe(auto& self, auto& keys) { keys("points", self.points); }
  int32_t MakeOn(OpenDevice& device) const {
    return device.Enter(Self::kEntry, points.data(), static_cast<int32_t>(points.size()));
  }
};

struct GetCaps {
  static constexpr DeviceEntry<entry::GetCaps> kEntry{"DevGetCaps", Position::kGetCaps};
  int32_t index = 0;

  static void Describe(auto& self, auto& keys) { keys("index", self.index); }
  uint32_t MakeOn(OpenDevice& device) const { return device.Enter(kEntry, index); }
};

struct StartPage {
  static constexpr DeviceEntry<entry::StartPage> kEntry{"DevStartPage", Position::kStartPage, kPage};
  // Without them the page starts with a null record, otherwise with a changed copy of the driver's.
  std::optional<FieldSettings> changes;

  static void Describe(auto& self, auto& keys) { keys.IfGiven("devMode", self.changes); }
  int32_t MakeOn(OpenDevice& device) const;
};

struct EndPage : Bare<EndPage> {
  static constexpr DeviceEntry<entry::EndPage> kEntry{"DevEndPage", Position::kEndPage};
};

struct SetPen {
  static constexpr DeviceEntry<entry::SetPen> kEntry{"DevSetPen", Position::kSetPen};
  Pen pen;

  static void Describe(auto& self, auto& keys) {
    keys("style", self.pen.style)("width", self.pen.width)("color", self.pen.color);
    keys.Optional("entries", self.pen.entries);
  }
  int32_t MakeOn(OpenDevice& device) const;
};

struct SetBrush {
  static constexpr DeviceEntry<entry::SetBrush> kEntry{"DevSetBrush", Position::kSetBrush};
  Rgb color;
  uint32_t style = 0;
  uint64_t hatch = 0;

  static void Describe(auto& self, auto& keys) {
    keys("color", self.color).Optional("style", self.style).Optional("hatch", self.hatch);
  }
  int32_t MakeOn(OpenDevice& device) const {
    const hdi::LOGBRUSH record{style, ColorWord(color), hatch};
    return device.Enter(kEntry, &record);
  }
};

struct SetAlpha {
  static constexpr DeviceEntry<entry::SetAlpha> kEntry{"DevSetAlpha", Position::kSetAlpha};
  uint32_t alpha = 0;

  static void Describe(auto& self, auto& keys) { keys("alpha", self.alpha); }
  int32_t MakeOn(OpenDevice& device) const { return device.Enter(kEntry, alpha); }
};

struct SetRasterOp {
  static constexpr DeviceEntry<entry::SetRasterOp> kEntry{"DevSetRasterOp", Position::kSetRasterOp};
  uint32_t code = 0;

  static void Describe(auto& self, auto& keys) { keys("code", self.code); }
  int32_t MakeOn(OpenDevice& device) const { return device.Enter(kEntry, code); }
};

struct SetFillMode {
  static constexpr DeviceEntry<entry::SetFillMode> kEntry{"DevSetFillMode", Position::kSetFillMode};
  uint32_t mode = 0;

  static void Describe(auto& self, auto& keys) { keys("mode", self.mode); }
  int32_t MakeOn(OpenDevice& device) const { return device.Enter(kEntry, mode); }
};

struct SetLineScale {
  static constexpr DeviceEntry<entry::SetLineScale> kEntry{"DevSetLineScale", Position::kSetLineScale};
  double scale = 0;

  static void Describe(auto& self, auto& keys) { keys("scale", self.scale); }
  int32_t MakeOn(OpenDevice& device) const { return device.Enter(kEntry, scale); }
};

struct Polyline : WithPoints<Polyline> {
  static constexpr DeviceEntry<entry::Polyline> kEntry{"DevPolyline", Position::kPolyline, kObject};
};

struct Polygon : WithPoints<Polygon> {
  static constexpr DeviceEntry<entry::Polygon> kEntry{"DevPolygon", Position::kPolygon, kObject};
};

struct PolyBezier : WithPoints<PolyBezier> {
  static constexpr DeviceEntry<entry::PolyBezier> kEntry{"DevPolyBezier", Position::kPolyBezier, kObject};
};

struct PolyPolygon {
  static constexpr DeviceEntry<entry::PolyPolygon> kEntry{"DevPolyPolygon", Position::kPolyPolygon, kObject};
  Polygons polygons;

  static void Describe(auto& self, auto& keys) { keys("polygons", self.polygons); }
  int32_t MakeOn(OpenDevice& device) const;
};

// Radii a and b, rotation c, from angle d to angle e; angles in radians, counter-clockwise as seen on paper.
struct Arc {
  static constexpr DeviceEntry<entry::Arc> kEntry{"DevArc", Position::kArc, kObject};
  hdi::HT_Double_Point center{};
  double a = 0;
  double b = 0;
  double c = 0;
  double d = 0;
  double e = 0;

  static void Describe(auto& self, auto& keys) {
    keys("center", self.center)("a", self.a)("b", self.b)("c", self.c)("d", self.d)("e", self.e);
  }
  int32_t MakeOn(OpenDevice& device) const { return device.Enter(kEntry, &center, a, b, c, d, e); }
};

struct BeginPath : Bare<BeginPath> {
  static constexpr DeviceEntry<entry::BeginPath> kEntry{"DevBeginPath", Position::kBeginPath};
};

struct EndPath : Bare<EndPath> {
  static constexpr DeviceEntry<entry::EndPath> kEntry{"DevEndPath", Position::kEndPath};
};

struct FillPath : Bare<FillPath> {
  static constexpr DeviceEntry<entry::FillPath> kEntry{"DevFillPath", Position::kFillPath};
};

struct StrokeFillPath : Bare<StrokeFillPath> {
  static constexpr DeviceEntry<entry::StrokeFillPath> kEntry{"DevStrokeFillPath", Position::kStrokeFillPath};
};

struct SetClip {
  static constexpr DeviceEntry<entry::SetClip> kEntry{"DevSetClip", Position::kSetClip};
  std::optional<Polygons> polygons;  // without any, a null list of nodes
  uint32_t apply = 1;                // of the last node

  static void Describe(auto& self, auto& keys) {
    keys("polygons", self.polygons).Optional("apply", self.apply, 1);
  }
  int32_t MakeOn(OpenDevice& device) const;
};

struct BeginLink {
  static constexpr DeviceEntry<entry::BeginLink> kEntry{"DevBeginLink", Position::kBeginLink};
  std::u16string target;

  static void Describe(auto& self, auto& keys) { keys("target", self.target); }
  int32_t MakeOn(OpenDevice& device) const { return device.Enter(kEntry, target.c_str()); }
};

struct EndLink : Bare<EndLink> {
  static constexpr DeviceEntry<entry::EndLink> kEntry{"DevEndLink", Position::kEndLink};
};

struct SetLayer {
  static constexpr DeviceEntry<entry::SetLayer> kEntry{"DevSetLayer", Position::kSetLayer};
  std::u16string name;

  static void Describe(auto& self, auto& keys) { keys("name", self.name); }
  [[nodiscard]] std::string Problem() const;
  int32_t MakeOn(OpenDevice& device) const { return device.Enter(kEntry, int64_t{0}, name.c_str()); }
};

struct Text {
  static constexpr DeviceEntry<entry::Text> kEntry{"DevText", Position::kText, kObject};
  hdi::LOGFONTW font{};
  hdi::HT_Double_Point position{};
  std::u16string_view text;
  const std::vector<double>* advances = nullptr;  // null, or one number for each unit of the text
  double textHeight = 0;
  double obliqueAngle = 0;
  double trackingFactor = 0;
  double widthFactor = 0;

  static void Describe(auto& self, auto& keys) {
    keys("font", self.font)("position", self.position)("text", self.text)("advances", self.advances);
    keys("textHeight", self.textHeight)("obliqueAngle", self.obliqueAngle);
    keys("trackingFactor", self.trackingFactor)("widthFactor", self.widthFactor);
  }
  [[nodiscard]] std::string Problem() const;
  int32_t MakeOn(OpenDevice& device) const;
};

struct Bitmap {
  static constexpr DeviceEntry<entry::Bitmap> kEntry{"DevBitmap", Position::kBitmap, kObject};
  hdi::HostImageRecord record{};

  static void Describe(auto& self, auto& keys) {
    auto& record = self.record;
    keys("image", record.image)("originX", record.originX)("originY", record.originY);
    keys("scaleX", record.scaleX)("scaleY", record.scaleY);
  }
  int32_t MakeOn(OpenDevice& device) const { return device.Enter(kEntry, device.Keep(record)); }
};

struct ShxComment {
  static constexpr DeviceEntry<entry::ShxComment> kEntry{"DevShxComment", Position::kShxComment, kObject};
  std::u16string text;
  std::array<int32_t, 4> rect{};  // x1, x2, y1, y2
  uint32_t flags = 0;

  static void Describe(auto& self, auto& keys) {
    keys("text", self.text)("rect", self.rect)("flags", self.flags);
  }
  int32_t MakeOn(OpenDevice& device) const { return device.Enter(kEntry, text.c_str(), rect.data(), flags); }
};

}  // namespace call

using Call =
    std::variant<call::GetCaps, call::StartPage, call::EndPage, call::SetPen, call::SetBrush, call::SetAlpha,
                 call::SetRasterOp, call::SetFillMode, call::SetLineScale, call::Polyline, call::Polygon,
                 call::PolyPolygon, call::PolyBezier, call::Arc, call::BeginPath, call::EndPath,
                 call::FillPath, call::StrokeFillPath, call::SetClip, call::BeginLink, call::EndLink,
                 call::SetLayer, call::Text, call::Bitmap, call::ShxComment>;

}  // namespace hdiplot
