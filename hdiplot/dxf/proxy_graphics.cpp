// The bytes are two words, the size and the number of records, and the records: their size and type, a word
// each, and their content. Attributes hold for all records that follow, a fill for the next shape.
#include "hdiplot/dxf/proxy_graphics.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>

#include "hdiplot/dxf/object_plane.h"
#include "hdiplot/dxf/proxy_bytes.h"
#include "hdiplot/dxf/table_reader.h"
#include "hdiplot/geometry/ocs.h"
#include "hdiplot/geometry/space_map.h"
#include "hdiplot/system/names.h"
#include "platform/unicode.h"

namespace hdiplot {
namespace {

Vec3 Normalized(Vec3 v) {
  const double length = Length(v);
  return length > 0 ? v / length : v;
}

class ProxyReader {
 public:
  ProxyReader(const Attributes& attributes, const ProxyTables& tables) : tables_(tables) {
    own_.layer = attributes.layer;
    own_.color = {EntityColor::Kind::kByBlock};
    own_.lineType = Name(&kByBlock);
    own_.lineWeight = kLineWeightByBlock;
    own_.lineTypeScale = attributes.lineTypeScale;
    own_.alpha = {EntityAlpha::Kind::kByBlock};
  }

  Entities Read(std::string_view bytes) {
    constexpr size_t kHead = 8;
    ProxyBytes all(bytes);
    (void)all.Take(kHead);
    while (all.Left() > 0) {
      const uint32_t size = all.Word();
      const uint32_t type = all.Word();
      if (size < kHead || type == 0 || type > kHighestProxyRecord) throw ProxyDamage{};
      ProxyBytes content(all.Take(size - kHead));
      ReadRecord(static_cast<ProxyRecord>(type), content);
    }
    return std::move(parts_);
  }

 private:
  void ReadRecord(ProxyRecord type, ProxyBytes& bytes) {
    switch (type) {
      case ProxyRecord::kCircle:
        return ReadCircle(bytes);
      case ProxyRecord::kCircleOfPoints:
        return ReadThroughPoints(bytes, true);
      case ProxyRecord::kArc:
        return ReadArc(bytes);
      case ProxyRecord::kArcOfPoints:
        return ReadThroughPoints(bytes, false);
      case ProxyRecord::kPolyline:
      case ProxyRecord::kPolylineInPlane:
        return AddPolyline(ReadPoints(bytes), false);
      case ProxyRecord::kPolygon:
        return AddPolyline(ReadPoints(bytes), true);
      case ProxyRecord::kLwPolyline:
        return ReadLwPolyline(ProxyBits(bytes.Take(bytes.Left())));
      case ProxyRecord::kMesh:
        return ReadMesh(bytes);
      case ProxyRecord::kShell:
        return ReadShell(bytes);
      case ProxyRecord::kText:
      case ProxyRecord::kWideText:
        return ReadText(bytes, type == ProxyRecord::kWideText);
      case ProxyRecord::kStyledText:
      case ProxyRecord::kStyledWideText:
        return ReadStyledText(bytes, type == ProxyRecord::kStyledWideText);
      case ProxyRecord::kXLine:
      case ProxyRecord::kRay:
        return ReadRay(bytes, type == ProxyRecord::kXLine);
      default:
        ReadAttribute(type, bytes);
    }
  }

  void ReadAttribute(ProxyRecord type, ProxyBytes& bytes) {
    switch (type) {
      case ProxyRecord::kColor:
        own_.color = IndexedColor(bytes.Word());
        break;
      case ProxyRecord::kTrueColor:
        own_.color = ColorOf(bytes.Word());
        break;
      case ProxyRecord::kLayer:
        if (const uint32_t index = bytes.Word(); index < tables_.layers.size())
          own_.layer = tables_.layers[index];
        break;
      case ProxyRecord::kLineType:
        own_.lineType = LineTypeOf(bytes.Word());
        break;
      case ProxyRecord::kFill:
        isFilled_ = bytes.Word() != 0;
        break;
      case ProxyRecord::kLineWeight:
        own_.lineWeight = LineWeight(static_cast<int32_t>(bytes.Word()), kLineWeightByLayer);
        break;
      case ProxyRecord::kLineTypeScale:
        own_.lineTypeScale = bytes.Real();
        break;
      case ProxyRecord::kPushMatrix:
      case ProxyRecord::kPushOtherMatrix:
        maps_.push_back(maps_.back().After(ReadMap(bytes)));
        break;
      case ProxyRecord::kPopMatrix:
        if (maps_.size() == 1) throw ProxyDamage{};
        maps_.pop_back();
        break;
      default:  // extents, markers, clips, materials
        break;
    }
  }

  // The highest byte is the kind.
  static EntityColor ColorOf(uint32_t word) {
    using Kind = EntityColor::Kind;
    switch (word >> 24) {
      case 0xC1:
        return {Kind::kByBlock};
      case 0xC2:
        return {Kind::kTrue, word & 0xFFFFFFU};
      case 0xC3:
        return IndexedColor(word & 0xFFU);
      default:
        return {};
    }
  }

  [[nodiscard]] Name LineTypeOf(uint32_t index) const {
    constexpr uint32_t kByBlockIndex = 0x7FFE;
    if (index == kByBlockIndex) return Name(&kByBlock);
    return index < tables_.lineTypes.size() ? tables_.lineTypes[index] : Name(&kByLayer);
  }

  [[nodiscard]] Vec2 Seen(Vec3 point) const { return Flat(maps_.back()(point)); }
  [[nodiscard]] Vec2 SeenDirection(Vec3 direction) const { return Flat(maps_.back().Direction(direction)); }

  template <typename Part>
  void Add(Part&& part) {
    parts_.emplace_back(own_, std::forward<Part>(part));
    isFilled_ = false;
  }

  // `u` and `v` span the arc's ellipse in space.
  void AddArc(Vec3 center, Vec3 u, Vec3 v, double sweep) {
    ConicArc arc{Seen(center), SeenDirection(u), SeenDirection(v), 0, sweep};
    if (sweep < 0) arc = {arc.center, arc.u, arc.v * -1, 0, -sweep};
    Add(EllipseEntity(OnPrincipalAxes(arc)));
  }

  // Sixteen numbers by rows; the last row is that of every affine map.
  static SpaceMap ReadMap(ProxyBytes& bytes) {
    std::array<double, 12> rows{};
    for (double& value : rows) value = bytes.Real();
    return SpaceMap(rows);
  }

  void ReadCircle(ProxyBytes& bytes) {
    const Vec3 center = bytes.Point();
    const double radius = bytes.Real();
    const Vec3 normal = Normalized(bytes.Point());
    const bool isUpright = std::abs(normal.x) < 1e-9 && std::abs(normal.y) < 1e-9;
    const Vec3 u = isUpright ? Vec3{1, 0, 0} : Normalized(Cross({0, 0, 1}, normal));
    AddArc(center, u * radius, Cross(isUpright ? Vec3{0, 0, 1} : normal, u) * radius, kWholeTurn);
  }

  void ReadArc(ProxyBytes& bytes) {
    const Vec3 center = bytes.Point();
    const double radius = bytes.Real();
    const Vec3 normal = Normalized(bytes.Point());
    const Vec3 start = Normalized(bytes.Point());
    const double sweep = std::clamp(bytes.Real(), -kWholeTurn, kWholeTurn);
    AddArc(center, start * radius, Cross(normal, start) * radius, sweep);
  }

  // In the plane of view; a circle, or an arc from the first point through the second to the third.
  void ReadThroughPoints(ProxyBytes& bytes, bool isWhole) {
    std::array<Vec2, 3> points;
    for (Vec2& point : points) point = Seen(bytes.Point());
    ArcEntity arc = CircleThrough(points[0], points[1], points[2]);
    if (!(arc.radius > 0)) {
      PolylineEntity line;
      for (const Vec2& point : points) line.vertices.push_back({point});
      Add(std::move(line));
      return;
    }
    if (!isWhole) {
      const auto angle = [&arc](Vec2 p) { return std::atan2(p.y - arc.center.y, p.x - arc.center.x); };
      const bool isCounterClockwise = Cross(points[1] - points[0], points[2] - points[0]) > 0;
      const Sweep sweep = isCounterClockwise ? NormalizedSweep(angle(points[0]), angle(points[2]))
                                             : NormalizedSweep(angle(points[2]), angle(points[0]));
      arc.startAngle = sweep.start;
      arc.endAngle = sweep.end;
    }
    Add(arc);
  }

  [[nodiscard]] static std::vector<Vec3> ReadPoints(ProxyBytes& bytes) {
    return ReadPoints(bytes, bytes.Count(kPointSize));
  }
  [[nodiscard]] static std::vector<Vec3> ReadPoints(ProxyBytes& bytes, size_t count) {
    std::vector<Vec3> points(count);
    for (Vec3& point : points) point = bytes.Point();
    return points;
  }

  void AddPolyline(const std::vector<Vec3>& points, bool isClosed) {
    if (points.empty()) return;
    PolylineEntity polyline;
    polyline.closed = isClosed;
    for (const Vec3& point : points) polyline.vertices.push_back({Seen(point)});
    AddOutline(std::move(polyline));
  }

  void AddOutline(PolylineEntity&& polyline) {
    if (isFilled_ && polyline.vertices.size() > 2) {
      HatchEntity hatch;
      hatch.solid = true;
      polyline.closed = true;
      hatch.loops.emplace_back().polyline = std::move(polyline);
      Add(std::move(hatch));
    } else {
      Add(std::move(polyline));
    }
  }

  // By flags: 4 one width, 8 an elevation, 2 a thickness, 1 an extrusion, 16 bulges, 1024 numbers of
  // vertices, 32 widths; 512 closed.
  void ReadLwPolyline(ProxyBits bits) {
    const uint32_t flags = bits.Short();
    const double width = (flags & 4) != 0 ? bits.Real() : 0;
    const double elevation = (flags & 8) != 0 ? bits.Real() : 0;
    if ((flags & 2) != 0) (void)bits.Real();
    Vec3 extrusion{0, 0, 1};
    if ((flags & 1) != 0) extrusion = {bits.Real(), bits.Real(), bits.Real()};
    PolylineEntity polyline;
    polyline.closed = (flags & 512) != 0;
    polyline.vertices.resize(bits.Count());
    const size_t bulges = (flags & 16) != 0 ? bits.Count() : 0;
    const size_t identifiers = (flags & 1024) != 0 ? bits.Count() : 0;
    const size_t widths = (flags & 32) != 0 ? bits.Count() : 0;
    if (polyline.vertices.empty() || bulges > polyline.vertices.size() || widths > polyline.vertices.size()) {
      throw ProxyDamage{};
    }
    Vec2 last{bits.WholeReal(), bits.WholeReal()};
    for (PolyVertex& vertex : polyline.vertices) {
      if (&vertex != &polyline.vertices.front()) {
        last.x = bits.RealNear(last.x);
        last.y = bits.RealNear(last.y);
      }
      vertex = {last, 0, width, width};
    }
    for (size_t i = 0; i < bulges; ++i) polyline.vertices[i].bulge = bits.Real();
    for (size_t i = 0; i < identifiers; ++i) (void)bits.Long();
    for (size_t i = 0; i < widths; ++i) {
      polyline.vertices[i].startWidth = bits.Real();
      polyline.vertices[i].endWidth = bits.Real();
    }
    Place(polyline, Ocs(extrusion), elevation);
    AddOutline(std::move(polyline));
  }

  // Exact for a plane that is seen at right angles.
  void Place(PolylineEntity& polyline, const Ocs& plane, double elevation) const {
    const Vec2 right = SeenDirection({1, 0, 0});
    const double turn = Cross(right, SeenDirection({0, 1, 0})) < 0 ? -1 : 1;
    const double mirror = plane.GetKind() == Ocs::Kind::kMirrored ? -turn : turn;
    for (PolyVertex& vertex : polyline.vertices) {
      const Vec2 flat = plane.Project(vertex.point, elevation);
      vertex.point = Seen({flat.x, flat.y, 0});
      vertex.bulge *= mirror;
      vertex.startWidth *= Length(right);
      vertex.endWidth *= Length(right);
    }
  }

  void ReadMesh(ProxyBytes& bytes) {
    const size_t rows = bytes.Word();
    const size_t columns = bytes.Word();
    if (rows == 0 || columns == 0 || columns > bytes.Left() / kPointSize / rows) throw ProxyDamage{};
    const std::vector<Vec3> points = ReadPoints(bytes, rows * columns);
    MeshEntity mesh;
    for (size_t row = 0; row < rows; ++row) {
      auto& edge = mesh.edges.emplace_back();
      for (size_t column = 0; column < columns; ++column)
        edge.push_back(Seen(points[row * columns + column]));
    }
    for (size_t column = 0; column < columns; ++column) {
      auto& edge = mesh.edges.emplace_back();
      for (size_t row = 0; row < rows; ++row) edge.push_back(Seen(points[row * columns + column]));
    }
    Add(std::move(mesh));
  }

  // A list of faces, each its number of corners, negative for a hole, and their vertices.
  void ReadShell(ProxyBytes& bytes) {
    const std::vector<Vec3> points = ReadPoints(bytes);
    size_t left = bytes.Count(sizeof(uint32_t));
    MeshEntity mesh;
    std::set<std::pair<uint32_t, uint32_t>> drawn;
    while (left > 0) {
      const auto written = static_cast<int32_t>(bytes.Word());
      const auto corners = static_cast<size_t>(std::abs(static_cast<int64_t>(written)));
      if (--left < corners) throw ProxyDamage{};
      left -= corners;
      std::vector<uint32_t> face(corners);
      for (uint32_t& corner : face) {
        corner = bytes.Word();
        if (corner >= points.size()) throw ProxyDamage{};
      }
      for (size_t i = 0; i < corners; ++i) {
        const uint32_t from = face[i];
        const uint32_t to = face[(i + 1) % corners];
        if (from != to && drawn.insert(std::minmax(from, to)).second) {
          mesh.edges.push_back({Seen(points[from]), Seen(points[to])});
        }
      }
    }
    Add(std::move(mesh));
  }

  void ReadRay(ProxyBytes& bytes, bool isWhole) {
    const Vec2 base = Seen(bytes.Point());
    Add(RayEntity{base, Seen(bytes.Point()) - base, isWhole});
  }

  struct TextAxes {
    Vec2 place;
    Vec2 right;  // of length 1 before the map, like the next
    Vec2 up;
  };
  [[nodiscard]] TextAxes ReadAxes(ProxyBytes& bytes) const {
    const Vec3 place = bytes.Point();
    const Vec3 normal = Normalized(bytes.Point());
    const Vec3 right = Normalized(bytes.Point());
    return {Seen(place), SeenDirection(right), SeenDirection(Cross(normal, right))};
  }

  [[nodiscard]] std::string TakeText(ProxyBytes& bytes, bool isWide) const {
    return isWide ? hdi::ToUtf8(bytes.WideText()) : tables_.names.Decoder().Decode(bytes.Text());
  }

  void AddText(TextEntity&& text, const TextAxes& axes) {
    const double high = Length(axes.up);
    const double wide = Length(axes.right);
    if (text.text.empty() || !(text.height * high > 0) || !(wide > 0)) return;
    text.place = axes.place;
    text.right = Unit(axes.right);
    text.up = Unit(axes.up);
    text.height *= high;
    text.widthFactor = (text.widthFactor > 0 ? text.widthFactor : 1) * wide / high;
    Add(std::move(text));
  }

  void ReadText(ProxyBytes& bytes, bool isWide) {
    const TextAxes axes = ReadAxes(bytes);
    TextEntity text;
    text.height = bytes.Real();
    text.widthFactor = bytes.Real();
    text.oblique = bytes.Real();
    text.text = TakeText(bytes, isWide);
    AddText(std::move(text), axes);
  }

  // The text; its length and whether its codes are to be shown; height, width factor, oblique angle and
  // spacing; five flags; in Unicode the face; the font files.
  void ReadStyledText(ProxyBytes& bytes, bool isWide) {
    const TextAxes axes = ReadAxes(bytes);
    TextEntity text;
    TextStyle style;
    text.text = TakeText(bytes, isWide);
    (void)bytes.Word();
    (void)bytes.Word();
    text.height = bytes.Real();
    text.widthFactor = bytes.Real();
    text.oblique = bytes.Real();
    (void)bytes.Real();
    text.backwards = bytes.Word() != 0;
    text.upsideDown = bytes.Word() != 0;
    style.vertical = bytes.Word() != 0;
    (void)bytes.Word();
    (void)bytes.Word();
    if (isWide) {
      style.bold = bytes.Word() != 0;
      style.italic = bytes.Word() != 0;
      (void)bytes.Word();
      (void)bytes.Word();
      style.family = TakeText(bytes, isWide);
    }
    style.fontFile = TakeText(bytes, isWide);
    style.bigFontFile = TakeText(bytes, isWide);
    text.style = StyleOf(style);
    AddText(std::move(text), axes);
  }

  // A text style of that font, under a name that is in no file.
  [[nodiscard]] Name StyleOf(const TextStyle& style) const {
    std::string name = "\n" + style.fontFile + "\n" + style.bigFontFile + "\n" + style.family + "\n";
    name += {style.bold ? 'b' : '-', style.italic ? 'i' : '-', style.vertical ? 'v' : '-'};
    tables_.textStyles.try_emplace(name, style);
    return tables_.names.Hold(name);
  }

  static constexpr size_t kPointSize = 24;

  const ProxyTables& tables_;
  Attributes own_;
  bool isFilled_ = false;
  std::vector<SpaceMap> maps_{SpaceMap()};
  Entities parts_;
};

}  // namespace

Entities ReadProxyGraphics(std::string_view bytes, const Attributes& attributes, const ProxyTables& tables) {
  try {
    return ProxyReader(attributes, tables).Read(bytes);
  } catch (const ProxyDamage&) {
    return {};
  }
}

}  // namespace hdiplot
