// A plot trace in memory: the settings of one job and its calls. Each structure describes its keys once, in
// Describe, and the reader and the writer of trace files both go by that.
//
// A description calls keys.Required(name, member) and keys.Optional(name, member, valueWhenLeftOut).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "hdiplot/device/plot_device.h"
#include "hdiplot/device/raster.h"
#include "hdiplot/device/record_fields.h"
#include "platform/border.h"

namespace hdiplot {

using FieldSettings = std::vector<FieldSetting>;
using PointList = std::vector<hdi::HT_Double_Point>;
using PolygonList = std::vector<PointList>;

struct CustomPaper {  // tenths of a millimetre, as SetCustomPaper takes them
  std::u16string name;
  double width = 0;
  double height = 0;
  double left = 0;
  double right = 0;
  double top = 0;
  double bottom = 0;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("name", self.name);
    keys.Required("width", self.width);
    keys.Required("height", self.height);
    keys.Required("left", self.left);
    keys.Required("right", self.right);
    keys.Required("top", self.top);
    keys.Required("bottom", self.bottom);
  }
};

struct JobSettings {
  std::u16string device;                 // empty: the first driver of the module
  std::optional<std::u16string> output;  // lpszOutput
  std::u16string defaultOutput;          // empty: none
  std::u16string docName;
  FieldSettings devMode;
  std::optional<CustomPaper> customPaper;
  double lineScale = 1;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Optional("device", self.device, std::u16string());
    keys.Optional("output", self.output, std::optional<std::u16string>());
    keys.Optional("defaultOutput", self.defaultOutput, std::u16string());
    keys.Optional("docName", self.docName, std::u16string());
    keys.Optional("devMode", self.devMode, FieldSettings());
    keys.Optional("customPaper", self.customPaper);
    keys.Optional("lineScale", self.lineScale, 1.0);
  }
};

namespace call {

struct NoKeys {
  template <typename Self, typename Keys>
  static void Describe(Self&, Keys&) {}
};

struct GetCaps {
  static constexpr std::string_view kName = "DevGetCaps";
  int32_t index = 0;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("index", self.index);
  }
};

struct StartPage {
  static constexpr std::string_view kName = "DevStartPage";
  std::optional<FieldSettings> devMode;  // none: the page starts with a null record

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Optional("devMode", self.devMode);
  }
};

struct EndPage : NoKeys {
  static constexpr std::string_view kName = "DevEndPage";
};

struct BeginPath : NoKeys {
  static constexpr std::string_view kName = "DevBeginPath";
};

struct EndPath : NoKeys {
  static constexpr std::string_view kName = "DevEndPath";
};

struct FillPath : NoKeys {
  static constexpr std::string_view kName = "DevFillPath";
};

struct StrokeFillPath : NoKeys {
  static constexpr std::string_view kName = "DevStrokeFillPath";
};

struct SetPen {
  static constexpr std::string_view kName = "DevSetPen";
  Pen pen;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("style", self.pen.style);
    keys.Required("width", self.pen.width);
    keys.Required("color", self.pen.color);
    keys.Optional("entries", self.pen.entries, std::vector<uint32_t>());
  }
};

struct SetBrush {
  static constexpr std::string_view kName = "DevSetBrush";
  Brush brush;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("color", self.brush.color);
    keys.Optional("style", self.brush.style, uint32_t{0});
    keys.Optional("hatch", self.brush.hatch, uint64_t{0});
  }
};

struct SetAlpha {
  static constexpr std::string_view kName = "DevSetAlpha";
  uint32_t alpha = 0;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("alpha", self.alpha);
  }
};

struct SetRasterOp {
  static constexpr std::string_view kName = "DevSetRasterOp";
  uint32_t code = 0;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("code", self.code);
  }
};

struct SetFillMode {
  static constexpr std::string_view kName = "DevSetFillMode";
  uint32_t mode = 0;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("mode", self.mode);
  }
};

struct SetLineScale {
  static constexpr std::string_view kName = "DevSetLineScale";
  double scale = 0;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("scale", self.scale);
  }
};

struct PointsCall {
  PointList points;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("points", self.points);
  }
};

struct Polyline : PointsCall {
  static constexpr std::string_view kName = "DevPolyline";
};

struct Polygon : PointsCall {
  static constexpr std::string_view kName = "DevPolygon";
};

struct PolyBezier : PointsCall {
  static constexpr std::string_view kName = "DevPolyBezier";
};

struct PolyPolygon {
  static constexpr std::string_view kName = "DevPolyPolygon";
  PolygonList polygons;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("polygons", self.polygons);
  }
};

struct Arc {
  static constexpr std::string_view kName = "DevArc";
  hdi::HT_Double_Point center{};
  double a = 0;
  double b = 0;
  double c = 0;
  double d = 0;
  double e = 0;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("center", self.center);
    keys.Required("a", self.a);
    keys.Required("b", self.b);
    keys.Required("c", self.c);
    keys.Required("d", self.d);
    keys.Required("e", self.e);
  }
};

struct SetClip {
  static constexpr std::string_view kName = "DevSetClip";
  std::optional<PolygonList> polygons;  // none, or an empty list: a null list of nodes
  uint32_t apply = 1;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("polygons", self.polygons);
    keys.Optional("apply", self.apply, uint32_t{1});
  }
};

struct BeginLink {
  static constexpr std::string_view kName = "DevBeginLink";
  std::u16string target;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("target", self.target);
  }
};

struct EndLink : NoKeys {
  static constexpr std::string_view kName = "DevEndLink";
};

struct SetLayer {
  static constexpr std::string_view kName = "DevSetLayer";
  std::u16string name;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("name", self.name);
  }
};

struct Text {
  static constexpr std::string_view kName = "DevText";
  hdi::LOGFONTW font{};
  hdi::HT_Double_Point position{};
  std::u16string text;
  std::optional<std::vector<double>> advances;  // one for each unit of the text
  double textHeight = 0;
  double obliqueAngle = 0;
  double trackingFactor = 0;
  double widthFactor = 0;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("font", self.font);
    keys.Required("position", self.position);
    keys.Required("text", self.text);
    keys.Required("advances", self.advances);
    keys.Required("textHeight", self.textHeight);
    keys.Required("obliqueAngle", self.obliqueAngle);
    keys.Required("trackingFactor", self.trackingFactor);
    keys.Required("widthFactor", self.widthFactor);
  }
};

struct Bitmap {
  static constexpr std::string_view kName = "DevBitmap";
  ImageData image;
  double originX = 0;
  double originY = 0;
  double scaleX = 0;
  double scaleY = 0;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("image", self.image);
    keys.Required("originX", self.originX);
    keys.Required("originY", self.originY);
    keys.Required("scaleX", self.scaleX);
    keys.Required("scaleY", self.scaleY);
  }
};

struct ShxComment {
  static constexpr std::string_view kName = "DevShxComment";
  std::u16string text;
  std::array<int32_t, 4> rect{};  // x1, x2, y1, y2
  uint32_t flags = 0;

  template <typename Self, typename Keys>
  static void Describe(Self& self, Keys& keys) {
    keys.Required("text", self.text);
    keys.Required("rect", self.rect);
    keys.Required("flags", self.flags);
  }
};

}  // namespace call

using Call =
    std::variant<call::GetCaps, call::StartPage, call::EndPage, call::SetPen, call::SetBrush, call::SetAlpha,
                 call::SetRasterOp, call::SetFillMode, call::SetLineScale, call::Polyline, call::Polygon,
                 call::PolyPolygon, call::PolyBezier, call::Arc, call::BeginPath, call::EndPath,
                 call::FillPath, call::StrokeFillPath, call::SetClip, call::BeginLink, call::EndLink,
                 call::SetLayer, call::Text, call::Bitmap, call::ShxComment>;

struct CallLine {
  size_t line = 0;  // of the file, from 1
  Call call;
};

struct Trace {
  JobSettings job;
  std::vector<CallLine> calls;
};

}  // namespace hdiplot
