#include "hdiplot/dxf/mline_reader.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>
#include <utility>

#include "hdiplot/dxf/table_reader.h"

namespace hdiplot {
namespace {

// Group 71 of MLINE.
constexpr uint64_t kClosed = 2;
constexpr uint64_t kNoStartCap = 4;
constexpr uint64_t kNoEndCap = 8;

// Group 70 of MLINESTYLE. The flags of the start cap, shifted by four bits for the end cap.
constexpr uint64_t kFilled = 1;
constexpr uint64_t kJoints = 2;
constexpr uint64_t kSquareCap = 16;
constexpr uint64_t kInnerArcs = 32;
constexpr uint64_t kRoundCap = 64;

MLineStyle::Cap CapOf(uint64_t flags) {
  return {(flags & kSquareCap) != 0, (flags & kRoundCap) != 0, (flags & kInnerArcs) != 0};
}

bool HasColor(const EntityColor& color) { return color.kind != EntityColor::Kind::kByLayer; }

using Segments = std::vector<std::pair<Vec2, Vec2>>;

// Makes the parts of one line.
class MLineMaker {
 public:
  MLineMaker(const MLine& line, const MLineStyle& style, const Attributes& attributes, Entities& parts)
      : line_(line), style_(style), attributes_(attributes), parts_(parts) {
    for (size_t i = 0; i < style.elements.size(); ++i) order_.push_back(i);
    std::ranges::stable_sort(order_, {}, [&style](size_t i) { return style.elements[i].offset; });
  }

  void Make() {
    if (style_.isFilled) Fill();
    for (size_t i = 0; i < order_.size(); ++i) DrawLine(i);
    const size_t last = line_.vertices.size() - 1;
    for (size_t i = 0; i <= last; ++i) {
      const bool isEnd = !line_.isClosed && (i == 0 || i == last);
      if (style_.hasJoints && !isEnd) DrawAcross(i);
    }
    if (line_.isClosed) return;
    if (line_.hasStartCap) DrawCap(style_.start, 0, 1);
    if (line_.hasEndCap) DrawCap(style_.end, last, -1);
  }

 private:
  // Where line `element` passes the joint of a vertex.
  [[nodiscard]] Vec2 At(size_t vertex, size_t element) const {
    const MLine::Vertex& at = line_.vertices[vertex];
    return at.point + at.miter * at.lines[element].front();
  }
  [[nodiscard]] size_t SegmentCount() const {
    return line_.isClosed ? line_.vertices.size() : line_.vertices.size() - 1;
  }
  [[nodiscard]] size_t Next(size_t vertex) const { return (vertex + 1) % line_.vertices.size(); }

  // The pieces of one segment of a line, by its `cuts`.
  [[nodiscard]] Segments Pieces(size_t vertex, size_t element, std::span<const double> cuts) const {
    const Vec2 from = At(vertex, element);
    const Vec2 to = At(Next(vertex), element);
    const Vec2 along = Unit(to - from);
    Segments pieces;
    for (size_t i = 0; i < cuts.size(); i += 2) {
      const Vec2 start = cuts[i] == 0 ? from : from + along * cuts[i];
      pieces.emplace_back(start, i + 1 < cuts.size() ? from + along * cuts[i + 1] : to);
    }
    if (cuts.empty()) pieces.emplace_back(from, to);
    return pieces;
  }

  void DrawLine(size_t element) {
    const PolylineEntity empty{.vertices = {}, .continuousPattern = true};
    PolylineEntity run = empty;
    const auto flush = [&] {
      if (run.vertices.size() > 1) Add(std::exchange(run, empty), element);
      run = empty;
    };
    bool isWhole = true;
    for (size_t i = 0; i < SegmentCount(); ++i) {
      const std::vector<double>& cuts = line_.vertices[i].lines[element];
      for (const auto& [from, to] : Pieces(i, element, std::span(cuts).subspan(1))) {
        if (run.vertices.empty() || run.vertices.back().point != from) {
          isWhole = isWhole && i == 0 && run.vertices.empty();
          flush();
          run.vertices.push_back({from});
        }
        run.vertices.push_back({to});
      }
    }
    if (line_.isClosed && isWhole && run.vertices.size() == line_.vertices.size() + 1) {
      run.vertices.pop_back();
      run.closed = true;
    }
    flush();
  }

  // From the lowest line to the highest, each half in the colour of its line.
  void DrawAcross(size_t vertex) {
    const Vec2 low = At(vertex, order_.front());
    const Vec2 high = At(vertex, order_.back());
    const Vec2 middle = Between(low, high, 0.5);
    Add(LineEntity{low, middle}, order_.front());
    Add(LineEntity{middle, high}, order_.back());
  }

  // `side`: 1 at the start, -1 at the end.
  void DrawCap(const MLineStyle::Cap& cap, size_t vertex, int side) {
    if (cap.square) DrawAcross(vertex);
    if (cap.round) DrawArc(vertex, order_.front(), order_.back(), side);
    if (!cap.innerArcs) return;
    for (size_t i = 1; i < order_.size() - 1 - i; ++i) {
      DrawArc(vertex, order_[i], order_[order_.size() - 1 - i], side);
    }
  }

  // Half a circle outside of the line's end, each half of it in the colour of its line.
  void DrawArc(size_t vertex, size_t low, size_t high, int side) {
    const Vec2 center = Between(At(vertex, low), At(vertex, high), 0.5);
    const Vec2 up = At(vertex, high) - center;
    const double radius = Length(up);
    if (!(radius > 0)) return;
    const double top = std::atan2(up.y, up.x);
    constexpr double kQuarter = std::numbers::pi / 2;
    const auto add = [&](double from, size_t element) {
      Add(ArcEntity{center, radius, from, from + kQuarter}, element);
    };
    const bool isLeft = IsLeft(vertex, up, side);
    add(isLeft ? top : top - kQuarter, high);
    add(isLeft ? top + kQuarter : top - 2 * kQuarter, low);
  }

  // Whether the outside is to the left of `up` at an end of the line.
  [[nodiscard]] bool IsLeft(size_t vertex, Vec2 up, int side) const {
    const size_t inner = side > 0 ? vertex + 1 : vertex - 1;
    const Vec2 inwards = line_.vertices[inner].point - line_.vertices[vertex].point;
    return Cross(up, inwards) < 0;
  }

  void Fill() {
    const bool isCut = std::ranges::any_of(line_.vertices, [](const MLine::Vertex& vertex) {
      return std::ranges::any_of(vertex.fills, [](const auto& cuts) { return cuts.size() > 1; });
    });
    HatchEntity hatch;
    hatch.solid = true;
    if (isCut) {
      AddCutFill(hatch);
    } else if (line_.isClosed) {
      for (const size_t element : {order_.front(), order_.back()}) {
        PolylineEntity& ring = hatch.loops.emplace_back().polyline;
        ring.closed = true;
        for (size_t i = 0; i < line_.vertices.size(); ++i) ring.vertices.push_back({At(i, element)});
      }
    } else {
      AddBand(hatch);
    }
    Attributes own = Own();
    own.color = style_.fill;
    parts_.emplace_back(own, std::move(hatch));
  }

  // The area between the outer lines, with round ends.
  void AddBand(HatchEntity& hatch) const {
    PolylineEntity& ring = hatch.loops.emplace_back().polyline;
    ring.closed = true;
    const size_t last = line_.vertices.size() - 1;
    for (size_t i = 0; i <= last; ++i) ring.vertices.push_back({At(i, order_.front())});
    for (size_t i = last + 1; i-- > 0;) ring.vertices.push_back({At(i, order_.back())});
    const auto bulge = [this](size_t vertex, int side) {
      const Vec2 up = At(vertex, order_.back()) - At(vertex, order_.front());
      // From high to low at the start, the other way at the end.
      return IsLeft(vertex, up, side) == (side > 0) ? 1.0 : -1.0;
    };
    if (style_.end.round && line_.hasEndCap) ring.vertices[last].bulge = bulge(last, -1);
    if (style_.start.round && line_.hasStartCap) ring.vertices.back().bulge = bulge(0, 1);
  }

  void AddCutFill(HatchEntity& hatch) const {
    for (size_t i = 0; i < SegmentCount(); ++i) {
      const auto cuts = [&](size_t element) -> std::span<const double> {
        return line_.vertices[i].fills[element];
      };
      const Segments low = Pieces(i, order_.front(), cuts(order_.front()));
      const Segments high = Pieces(i, order_.back(), cuts(order_.back()));
      for (size_t piece = 0; piece < std::min(low.size(), high.size()); ++piece) {
        PolylineEntity& ring = hatch.loops.emplace_back().polyline;
        ring.closed = true;
        for (const Vec2& p : {low[piece].first, low[piece].second, high[piece].second, high[piece].first}) {
          ring.vertices.push_back({p});
        }
      }
    }
  }

  // What the MLINE leaves to its parts.
  [[nodiscard]] Attributes Own() const {
    Attributes own;
    own.layer = attributes_.layer;
    own.lineTypeScale = attributes_.lineTypeScale;
    own.lineWeight = kLineWeightByBlock;
    own.alpha = {EntityAlpha::Kind::kByBlock};
    return own;
  }

  template <typename Part>
  void Add(Part&& part, size_t element) {
    Attributes own = Own();
    own.color = style_.elements[element].color;
    own.lineType = style_.elements[element].lineType;
    if (!HasColor(own.color) && HasColor(attributes_.color)) own.color = {EntityColor::Kind::kByBlock};
    if (own.lineType == kByLayer && !(attributes_.lineType == kByLayer)) own.lineType = Name(&kByBlock);
    parts_.emplace_back(own, std::forward<Part>(part));
  }

  const MLine& line_;
  const MLineStyle& style_;
  const Attributes& attributes_;
  Entities& parts_;
  std::vector<size_t> order_;  // of the lines, from the lowest offset
};

}  // namespace

MLine ReadMLine(const DxfObject& entity) {
  MLine line;
  const uint64_t flags = entity.Flags(71);
  line.isClosed = (flags & kClosed) != 0;
  line.hasStartCap = (flags & kNoStartCap) == 0;
  line.hasEndCap = (flags & kNoEndCap) == 0;
  line.styleHandle = HandleKey(entity.Text(340));
  for (const Group& group : entity.groups) {
    if (group.code == 11) line.vertices.emplace_back().point.x = group.number;
    if (line.vertices.empty()) continue;
    MLine::Vertex& vertex = line.vertices.back();
    if (group.code == 21) vertex.point.y = group.number;
    if (group.code == 13) vertex.miter.x = group.number;
    if (group.code == 23) vertex.miter.y = group.number;
    if (group.code == 74) vertex.lines.emplace_back();
    if (group.code == 75) vertex.fills.emplace_back();
    if (group.code == 41 && !vertex.lines.empty()) vertex.lines.back().push_back(group.number);
    if (group.code == 42 && !vertex.fills.empty()) vertex.fills.back().push_back(group.number);
  }
  entity.CheckCount(entity.Find(72), line.vertices.size());
  if (line.vertices.size() < 2) throw DxfFault{entity.place, "MLINE has no two vertices"};
  const size_t lines = line.vertices.front().lines.size();
  for (MLine::Vertex& vertex : line.vertices) {
    const bool isWhole = vertex.lines.size() == lines && lines > 0 &&
                         std::ranges::none_of(vertex.lines, [](const auto& cuts) { return cuts.empty(); });
    if (!isWhole) throw DxfFault{entity.place, "a vertex of the MLINE lacks the places of its lines"};
    vertex.fills.resize(lines);
  }
  entity.CheckCount(entity.Find(73), lines);
  return line;
}

MLineStyle ReadMLineStyle(const DxfObject& object, NameCache& names) {
  MLineStyle style;
  const uint64_t flags = object.Flags(70);
  style.isFilled = (flags & kFilled) != 0;
  style.hasJoints = (flags & kJoints) != 0;
  style.start = CapOf(flags);
  style.end = CapOf(flags >> 4);
  for (const Group& group : object.groups) {
    if (group.code == 49) style.elements.emplace_back().offset = group.number;
    const bool isFill = style.elements.empty();
    EntityColor& color = isFill ? style.fill : style.elements.back().color;
    if (group.code == 62) color = IndexedColor(group.Integer());
    if (group.code == 420) color = TrueColor(group);
    if (group.code == 6 && !isFill) style.elements.back().lineType = names.Folded(group);
  }
  object.CheckCount(object.Find(71), style.elements.size());
  return style;
}

void AppendMLine(const MLine& line, const MLineStyle* style, const Attributes& attributes, Entities& parts) {
  MLineStyle own = style != nullptr ? *style : MLineStyle();
  // Of a style that has changed since, only what is the same for all lines can be used.
  if (own.elements.size() != line.vertices.front().lines.size()) {
    own.elements.assign(line.vertices.front().lines.size(), {});
    for (size_t i = 0; i < own.elements.size(); ++i) own.elements[i].offset = line.vertices[0].lines[i][0];
  }
  MLineMaker(line, own, attributes, parts).Make();
}

}  // namespace hdiplot
