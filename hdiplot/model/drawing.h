// A drawing in memory: what a DXF file says, in drawing units and radians, without any thought of paper. The
// reader makes it, the plotter reads it.
//
// Object coordinate systems are resolved here: whatever had an extrusion direction of (0,0,-1) has been
// mirrored into the drawing's plane, so that all coordinates are seen from above. Angles run
// counter-clockwise.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <variant>
#include <vector>

#include "hdiplot/geometry/curves.h"
#include "hdiplot/geometry/points.h"
#include "hdiplot/geometry/splines.h"

namespace hdiplot {

struct EntityColor {
  enum class Kind : uint8_t { kByLayer, kByBlock, kIndex, kTrue };
  Kind kind = Kind::kByLayer;
  uint32_t value = 7;  // index 1 to 255, or 0xRRGGBB
  bool operator==(const EntityColor&) const = default;
};

// 255 is opaque.
struct EntityAlpha {
  enum class Kind : uint8_t { kByLayer, kByBlock, kOwn };
  Kind kind = Kind::kByLayer;
  uint8_t value = 255;  // of kOwn
  bool operator==(const EntityAlpha&) const = default;
};

// Line weights in hundredths of a millimetre, and the codes that stand for another place to look.
inline constexpr int kLineWeightByLayer = -1;
inline constexpr int kLineWeightByBlock = -2;
inline constexpr int kLineWeightDefault = -3;

// A string that many entities share, in the drawing's `names`.
class Name {
 public:
  explicit Name(const std::string* held) : held_(held) {}
  // NOLINTNEXTLINE(google-explicit-constructor): a name is used as its text
  operator const std::string&() const { return *held_; }
  bool operator==(std::string_view text) const { return *held_ == text; }
  [[nodiscard]] bool empty() const { return held_->empty(); }
  [[nodiscard]] const std::string& Text() const { return *held_; }

 private:
  const std::string* held_;
};

inline const std::string kLayerZero = "0";
inline const std::string kByLayer = "bylayer";
inline const std::string kByBlock = "byblock";
inline const std::string kStandardStyle = "standard";
inline const std::string kNoName;

struct Attributes {
  Name layer{&kLayerZero};
  EntityColor color;
  Name lineType{&kByLayer};  // folded
  double lineTypeScale = 1;
  int lineWeight = kLineWeightByLayer;
  EntityAlpha alpha;
  bool visible = true;
  bool paperSpace = false;
  Name link{&kNoName};  // an address or a file; empty: none
};

struct LineEntity {
  Vec2 start, end;
};

struct PolyVertex {
  Vec2 point;
  double bulge =
      0;  // tangent of a quarter of the arc's angle towards the next vertex, positive counter-clockwise
  double startWidth = 0;
  double endWidth = 0;
};

struct PolylineEntity {  // LWPOLYLINE and the two-dimensional and curve-fitted POLYLINE
  std::vector<PolyVertex> vertices;
  bool closed = false;
};

struct MeshEntity {  // POLYLINE as a polygon mesh or polyface, resolved into faces' edges
  std::vector<std::vector<Vec2>> edges;
};

struct ArcEntity {  // CIRCLE is an arc from 0 to a whole turn; runs counter-clockwise, end above start
  Vec2 center;
  double radius = 0;
  double startAngle = 0;
  double endAngle = 0;
};

[[nodiscard]] inline ConicArc ConicOf(const ArcEntity& arc) {
  return CircularArc(arc.center, arc.radius, {arc.startAngle, arc.endAngle});
}

using EllipseEntity = ConicArc;  // on its principal axes, end above start

using SplineEntity = Spline;

struct PointEntity {
  Vec2 point;
};

struct SolidEntity {  // SOLID and TRACE, corners in drawing order around the area; three or four
  std::vector<Vec2> corners;
};

struct FaceEntity {  // 3DFACE: corners in order, edge i from corner i to the next
  std::vector<Vec2> corners;
  std::array<bool, 4> edgeVisible{true, true, true, true};
};

using HatchEdge = std::variant<LineEntity, ArcEntity, EllipseEntity, SplineEntity>;

struct HatchLoop {
  PolylineEntity polyline;  // when it has vertices; else the edges
  std::vector<HatchEdge>
      edges;  // end to end; an ArcEntity or EllipseEntity may run either way (end below start)
};

struct HatchPatternLine {  // one family of parallel lines, already at the hatch's angle and scale
  double angle = 0;
  Vec2 base;
  Vec2 offset;                 // from one line to the next
  std::vector<double> dashes;  // positive dash, negative gap, 0 dot; empty: a continuous line
};

// Two colours that run into each other over the hatch's box, whose sides are along `right` and `up`.
struct HatchGradient {
  enum class Form : uint8_t { kLinear, kCylinder, kSpherical, kHemispherical, kCurved };
  Form form = Form::kLinear;
  bool inverted = false;  // the colours have changed places
  // kLinear and kCurved run from the first colour to the last; the others have the last at their middle.
  EntityColor first;
  EntityColor last;
  double tint = -1;  // 0 black to 1 white: what the last colour is of the first one; below 0: as `last` says
  double shift = 0;  // 0 to 1: how far up and to the left the middle has moved, 1 half way
  Vec2 right{1, 0};
  Vec2 up{0, 1};
};

struct HatchEntity {
  bool solid = false;
  std::optional<HatchGradient> gradient;  // of one that is solid
  std::vector<HatchPatternLine> lines;
  std::vector<HatchLoop> loops;
};

// How a text stands to its place. The first four are about the base line; kAligned and kFit stretch the text
// between `place` and `end`, the first in height too.
enum class TextAlign : uint8_t { kLeft, kCenter, kRight, kMiddle, kAligned, kFit };
enum class TextLine : uint8_t { kBase, kBottom, kMiddle, kTop };  // which line of the text lies on the place

// Strings are UTF-8 with the file's escapes for characters (\U+XXXX, \M+NXXXX) resolved; the codes that
// format a text stand in it still. Axes are unit vectors, one of them mirrored when the text is seen from
// behind.
struct TextEntity {             // TEXT, ATTRIB and ATTDEF
  std::string text;             // with %% codes
  Name style{&kStandardStyle};  // folded
  Vec2 place;
  Vec2 end;  // for kAligned and kFit
  Vec2 right{1, 0};
  Vec2 up{0, 1};
  double height = 1;  // of capitals; above 0
  double widthFactor = 1;
  double oblique = 0;  // radians, to the right
  TextAlign align = TextAlign::kLeft;
  TextLine line = TextLine::kBase;
  bool backwards = false;
  bool upsideDown = false;
};

struct MTextEntity {            // MTEXT
  std::string text;             // with formatting codes
  Name style{&kStandardStyle};  // folded
  Vec2 place;
  int attachment = 1;  // 1 to 9: top left, top centre, top right, middle left, ... bottom right
  Vec2 right{1, 0};
  Vec2 up{0, 1};
  double height = 1;          // of capitals; above 0
  double wrapWidth = 0;       // 0: lines end only where the text says so
  double lineSpacing = 1;     // factor on the usual distance of base lines, 5/3 of the height
  bool exactSpacing = false;  // taller letters do not widen the distance
  bool vertical = false;      // letters run downwards; else the style says whether they do
};

// How an image's colours come to the paper.
struct ImageLook {
  bool transparent = false;  // whether the paper shows through the image where the image says so
  int brightness = 50;       // 0 to 100, as the next; 50 leaves the image as it is
  int contrast = 50;
  int fade = 0;       // towards white, 0 to 100
  bool grey = false;  // which no drawing asks for, but a plot without colours
  // NOLINTNEXTLINE(modernize-use-nullptr): for a zero that the compiler writes
  auto operator<=>(const ImageLook&) const = default;
};

struct ImageEntity {       // IMAGE
  std::string definition;  // in Drawing::imageFiles
  Vec2 corner;             // the lower left one of the image as it was taken
  Vec2 right;              // from there, the whole lower side
  Vec2 up;                 // the whole left side
  bool shown = true;       // or only its frame
  ImageLook look;
  std::vector<Vec2> clip;     // the polygon that is seen of it; empty: all
  bool clipInverted = false;  // the polygon is what is not seen
};

struct WipeoutEntity {                   // WIPEOUT
  std::vector<std::vector<Vec2>> rings;  // filled together by the even-odd rule
};

struct InsertEntity {    // INSERT, and DIMENSION through its block
  Name block{&kNoName};  // folded
  Vec2 at;
  double scaleX = 1;
  double scaleY = 1;
  double rotation = 0;
  bool mirrored = false;  // the whole insert, its place too, is mirrored in X afterwards (extrusion (0,0,-1))
  int columns = 1;
  int rows = 1;
  double columnSpacing = 0;
  double rowSpacing = 0;
};

struct ViewportEntity {    // VIEWPORT
  bool showsModel = true;  // from above; otherwise it is its border, and its view is not told
  Vec2 center;             // on the layout, as the size
  double width = 1;
  double height = 1;
  double scale = 1;  // the layout's units on one of the model
  Vec2 viewCenter;   // what comes to the middle, of the model turned by `twist` about `target`
  Vec2 target;
  double twist = 0;                       // radians
  std::vector<std::string> frozenLayers;  // not seen here
  std::vector<HatchLoop> clip;            // the outline, an entity of its own; none: a rectangle
};

using Shape = std::variant<LineEntity, PolylineEntity, MeshEntity, ArcEntity, EllipseEntity, SplineEntity,
                           PointEntity, SolidEntity, FaceEntity, HatchEntity, TextEntity, MTextEntity,
                           ImageEntity, WipeoutEntity, ViewportEntity, InsertEntity>;

// Kept small, as drawings have very many.
struct Entity {
  template <typename AnyShape>
  Entity(const Attributes& with, AnyShape&& of) : attributes(with), shape(std::forward<AnyShape>(of)) {}

  Attributes attributes;
  Shape shape;
};
static_assert(sizeof(void*) != 8 || sizeof(Entity) <= 200);

using Entities = std::deque<Entity>;  // without spare memory, and with stable addresses

struct Layer {
  EntityColor color{EntityColor::Kind::kIndex, 7};
  std::string lineType = "continuous";  // folded
  int lineWeight = kLineWeightDefault;
  bool off = false;
  bool frozen = false;
  bool plottable = true;
  uint8_t alpha = 255;
};

struct LineType {
  std::vector<double> dashes;  // positive dash, negative gap, 0 dot, in drawing units; empty: continuous
};

struct TextStyle {               // STYLE
  std::string fontFile = "txt";  // a stroke font (.shx or without an extension) or a TrueType file
  std::string bigFontFile;       // stroke font of a large alphabet
  std::string family;            // of a TrueType font; goes before the file
  bool bold = false;
  bool italic = false;
  double height = 0;  // 0: each text has its own
  double widthFactor = 1;
  double oblique = 0;  // radians, to the right
  bool backwards = false;
  bool upsideDown = false;
  bool vertical = false;
};

struct Block {
  Vec2 base;
  Entities entities;
};

struct EntityCount {
  uint64_t model = 0;
  uint64_t paper = 0;
};

// Millimetres, as the layout is seen on it.
struct LayoutSheet {
  double width = 0;
  double height = 0;
  double left = 0;  // margins, this and the next three
  double top = 0;
  double right = 0;
  double bottom = 0;
  bool operator==(const LayoutSheet&) const = default;
};

inline constexpr const char* kActivePaper = "*paper_space";

struct Layout {  // a sheet in paper space
  std::string name;
  std::string block;                        // holds its entities; kActivePaper: Drawing::entities does, too
  int64_t order = 0;                        // among the drawing's layouts
  std::optional<LayoutSheet> sheet;         // none: the drawing does not say
  double millimetresPerUnit = 1;            // on paper
  Vec2 origin;                              // millimetres from the lower left corner of the printable area
  uint64_t viewports = 0;                   // that are shown
  std::map<std::string, uint64_t> skipped;  // as the drawing's; of the layout alone
};

struct Drawing {
  std::string name;  // the file's name without directories
  Entities entities;
  std::map<std::string, Layer> layers;            // by name as written; look-ups are without regard to case
  std::map<std::string, LineType> lineTypes;      // by folded name
  std::map<std::string, Block> blocks;            // by folded name
  std::map<std::string, std::string> imageFiles;  // as the drawing names them, by upper-case handle
  std::filesystem::path folder;                   // that the file is in
  std::map<std::string, TextStyle> textStyles;    // by folded name
  std::vector<Layout> layouts;    // in their order; one at least when paper space has entities
  double lineTypeScale = 1;       // $LTSCALE
  bool paperLineTypes = true;     // $PSLTSCALE: line types in viewports are as long as on paper
  double millimetresPerUnit = 1;  // from $INSUNITS, 1 when unitless
  int pointMode = 0;              // $PDMODE
  double pointSize = 0;           // $PDSIZE
  std::map<std::string, EntityCount, std::less<>> types;  // all entities but those in blocks, by type
  std::map<std::string, uint64_t> skipped;  // entity types of the model that are not plotted, and how many
  std::vector<std::string> losses;          // messages on what is wrong in the file
  std::shared_ptr<std::unordered_set<std::string>> names =  // of the entities
      std::make_shared<std::unordered_set<std::string>>();
};

// Calls `visit` for the layout's entities, in their order.
template <typename Visit>
void ForEachEntity(const Drawing& drawing, const Layout& layout, Visit visit) {
  const auto block = drawing.blocks.find(layout.block);
  if (block != drawing.blocks.end()) {
    for (const Entity& entity : block->second.entities) visit(entity);
  }
  if (layout.block != kActivePaper) return;
  for (const Entity& entity : drawing.entities) {
    if (entity.attributes.paperSpace) visit(entity);
  }
}

}  // namespace hdiplot
