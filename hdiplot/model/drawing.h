// A drawing in memory, in drawing units and radians, independent of paper. The reader makes it, the plotter
// reads it. Object coordinate systems are resolved: all coordinates are seen from above, and angles run
// counter-clockwise. Folded names are lower case (FoldedName of system/names.h).
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

// Codes among line weights, which are hundredths of a millimetre.
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

// Values of Attributes::plotStyle. Higher ones are indexes in Drawing::plotStyles.
inline constexpr uint16_t kPlotStyleByLayer = 0;
inline constexpr uint16_t kPlotStyleByBlock = 1;

struct Attributes {
  Name layer{&kLayerZero};
  EntityColor color;
  Name lineType{&kByLayer};  // folded
  double lineTypeScale = 1;
  int16_t lineWeight = kLineWeightByLayer;
  uint16_t plotStyle = kPlotStyleByLayer;
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
  double bulge = 0;  // tan of a quarter of the arc's angle to the next vertex; above 0: counter-clockwise
  double startWidth = 0;
  double endWidth = 0;
};

struct PolylineEntity {  // LWPOLYLINE and the two-dimensional and curve-fitted POLYLINE
  std::vector<PolyVertex> vertices;
  bool closed = false;
  bool continuousPattern = false;  // of a line type, around corners; else it starts anew at each of them
};

struct MeshEntity {  // POLYLINE as a polygon mesh or polyface, resolved into faces' edges
  std::vector<std::vector<Vec2>> edges;
};

struct ArcEntity {  // counter-clockwise, end above start; CIRCLE: from 0 to a whole turn
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

struct RayEntity {  // RAY, and XLINE, which runs both ways
  Vec2 base;
  Vec2 direction;  // of any length; none when it is seen end-on
  bool isWhole = false;
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
  PolylineEntity polyline;       // when it has vertices; else the edges
  std::vector<HatchEdge> edges;  // end to end; arcs of either direction, clockwise: end below start
  bool isTextBox = false;        // keeps its area clear, in a hole, too
};

struct HatchPatternLine {  // one family of parallel lines, already at the hatch's angle and scale
  double angle = 0;
  Vec2 base;
  Vec2 offset;                 // from one line to the next
  std::vector<double> dashes;  // positive dash, negative gap, 0 dot; empty: a continuous line
};

// A blend of two colours over the hatch's box, whose sides are along `right` and `up`.
struct HatchGradient {
  enum class Form : uint8_t { kLinear, kCylinder, kSpherical, kHemispherical, kCurved };
  Form form = Form::kLinear;
  bool inverted = false;  // the colours are swapped
  // kLinear and kCurved run from the first colour to the last; the others have the last one in the centre.
  EntityColor first;
  EntityColor last;
  double tint = -1;  // the last colour as a shade of the first: 0 black to 1 white; below 0: `last`
  double shift = 0;  // of the centre, up and to the left: 0 to 1, which is half way
  Vec2 right{1, 0};
  Vec2 up{0, 1};
};

struct HatchEntity {
  bool solid = false;
  std::optional<HatchGradient> gradient;  // of a solid one
  std::vector<HatchPatternLine> lines;
  std::vector<HatchLoop> loops;
};

// How a text is aligned to its place. kAligned and kFit stretch it between `place` and `end`, the former in
// height too.
enum class TextAlign : uint8_t { kLeft, kCenter, kRight, kMiddle, kAligned, kFit };
enum class TextLine : uint8_t { kBase, kBottom, kMiddle, kTop };  // which line of the text lies on the place

// Strings are UTF-8 with formatting codes, but without the file's escapes for characters. Axes are unit
// vectors, one of them mirrored if the text is seen from behind.
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

// The columns that a paragraph text flows through. Lengths are in drawing units.
struct MTextColumns {
  double width = 0;
  double gutter = 0;
  size_t count = 0;             // 0: as many as the text needs
  std::vector<double> heights;  // by column, the last one for all further ones; 0: no limit
  bool reversed = false;        // from right to left
};

// What is drawn around a paragraph text, and below it.
struct MTextPanel {
  bool masked = false;              // hides what lies below, with `fill`
  std::optional<EntityColor> fill;  // none: the paper
  bool framed = false;
  double margin = 0;  // around the text, in heights of its capitals
};

// What few paragraph texts have.
struct MTextExtras {
  std::optional<MTextColumns> columns;
  MTextPanel panel;
};

struct MTextEntity {            // MTEXT
  std::string text;             // with formatting codes
  Name style{&kStandardStyle};  // folded
  Vec2 place;
  int attachment = 1;  // 1 to 9: top left, top centre, top right, middle left, ... bottom right
  Vec2 right{1, 0};
  Vec2 up{0, 1};
  double height = 1;                    // of capitals; above 0
  double wrapWidth = 0;                 // 0: no wrapping
  double lineSpacing = 1;               // in units of 5/3 of the height
  bool exactSpacing = false;            // taller letters do not widen the distance
  bool horizontal = false;              // even if the style runs downwards
  std::shared_ptr<MTextExtras> extras;  // null for most
};

struct ToleranceEntity {        // TOLERANCE: rows of boxes
  std::string text;             // rows apart by "^J", boxes by "%%v"
  Name style{&kStandardStyle};  // folded
  Vec2 place;                   // the middle of the first row's left side
  Vec2 right{1, 0};
  Vec2 up{0, 1};
  double height = 1;  // of capitals; above 0
  double gap = 0.5;   // between the text and its box
};

// How an image's colours are plotted.
struct ImageLook {
  bool transparent = false;  // whether the image's own transparency counts
  int brightness = 50;       // 0 to 100, like the next; 50: unchanged
  int contrast = 50;
  int fade = 0;       // towards white, 0 to 100
  bool grey = false;  // an option of the plot, not of the drawing
  // NOLINTNEXTLINE(modernize-use-nullptr): for a zero that the compiler writes
  auto operator<=>(const ImageLook&) const = default;
};

struct ImageEntity {       // IMAGE
  std::string definition;  // in Drawing::imageFiles
  Vec2 corner;             // the lower left one of the unrotated image
  Vec2 right;              // from there, the whole lower side
  Vec2 up;                 // the whole left side
  bool shown = true;       // else only its frame
  ImageLook look;
  std::vector<Vec2> clip;     // the visible polygon; empty: all of it
  bool clipInverted = false;  // the polygon is the hidden part
};

struct WipeoutEntity {                   // WIPEOUT
  std::vector<std::vector<Vec2>> rings;  // filled together by the even-odd rule
};

struct BlockClip {
  std::vector<Vec2> outline;  // in the block's coordinates
  bool isInverted = false;    // what is within the outline is not seen
};

// INSERT, DIMENSION through its block, and entities made of others, which the reader gives a block of their
// own.
struct InsertEntity {
  Name block{&kNoName};  // folded
  Vec2 at;
  double scaleX = 1;
  double scaleY = 1;
  double rotation = 0;
  Vec2 right{1, 0};  // the axes of its plane as seen from above: rotation and scales are within it
  Vec2 up{0, 1};
  int columns = 1;
  int rows = 1;
  double columnSpacing = 0;
  double rowSpacing = 0;
  std::shared_ptr<const BlockClip> clip;  // what is seen of the block; null: all
};

struct ViewportEntity {    // VIEWPORT
  bool showsModel = true;  // from above; else only its border is plotted
  Vec2 center;             // on the layout, like the size
  double width = 1;
  double height = 1;
  double scale = 1;  // the layout's units on one of the model
  Vec2 viewCenter;   // the point in the centre, of the model rotated by `twist` about `target`
  Vec2 target;
  double twist = 0;                       // radians
  std::vector<std::string> frozenLayers;  // in this viewport
  std::vector<HatchLoop> clip;            // the outline, an entity of its own; none: a rectangle
};

using Shape =
    std::variant<LineEntity, PolylineEntity, MeshEntity, ArcEntity, EllipseEntity, SplineEntity, PointEntity,
                 RayEntity, SolidEntity, FaceEntity, HatchEntity, TextEntity, MTextEntity, ToleranceEntity,
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
  std::string plotStyle;  // folded name; empty: none
};

// A text or a shape in a line type.
struct LineTypeSign {
  size_t element = 0;  // of the dashes, at whose end it is
  std::string text;
  std::string style = kStandardStyle;      // of the text, folded
  int shape = 0;                           // number of a shape, if there is no text
  std::vector<std::vector<Vec2>> strokes;  // of the shape, in its units; none: it is not known
  double scale = 1;                        // height of the text's capitals, or units of the shape
  double rotation = 0;                     // radians, from the line or, if `upright`, from the X axis
  bool upright = false;
  Vec2 offset;  // along the line and to its left
};

struct LineType {
  std::vector<double> dashes;  // positive dash, negative gap, 0 dot, in drawing units; empty: continuous
  std::vector<LineTypeSign> signs;
};

struct TextStyle {               // STYLE
  std::string fontFile = "txt";  // a stroke font (.shx or without an extension) or a TrueType file
  std::string bigFontFile;       // stroke font of a large alphabet
  std::string family;            // of a TrueType font; takes precedence over the file
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

// In millimetres, as oriented for the layout.
struct LayoutSheet {
  double width = 0;
  double height = 0;
  double left = 0;  // margins, like the next three
  double top = 0;
  double right = 0;
  double bottom = 0;
  bool operator==(const LayoutSheet&) const = default;
};

inline constexpr const char* kActivePaper = "*paper_space";

// What a layout wants of its plot.
struct PageSetup {
  enum class Area : uint8_t { kLayout, kExtents, kBox };
  Area area = Area::kLayout;
  Box box;                  // of kBox: a window, the limits or a view, in the layout's units
  bool isCentred = false;   // on the printable area, if not kLayout
  bool isFitted = false;    // as large as the paper allows, if not kLayout
  double weightFactor = 1;  // of line weights; 0: all lines are as thin as possible
  std::string styleSheet;   // a file of plot styles; empty: none
};

struct Layout {  // a sheet in paper space
  std::string name;
  std::string block;                 // of its entities; kActivePaper: some are in Drawing::entities
  int64_t order = 0;                 // among the drawing's layouts
  std::optional<LayoutSheet> sheet;  // none: not in the drawing
  double millimetresPerUnit = 1;     // on paper
  Vec2 origin;                       // millimetres from the lower left corner of the printable area
  PageSetup setup;
  uint64_t viewports = 0;                   // those shown
  std::map<std::string, uint64_t> skipped;  // like Drawing::skipped
};

struct Drawing {
  std::string name;  // the file's name without directories
  Entities entities;
  std::map<std::string, Layer> layers;            // by name as written, compared folded
  std::map<std::string, LineType> lineTypes;      // by folded name
  std::map<std::string, Block> blocks;            // by folded name
  std::map<std::string, std::string> imageFiles;  // as the drawing names them, by HandleKey
  std::filesystem::path folder;                   // of the file
  std::map<std::string, TextStyle> textStyles;    // by folded name
  std::vector<std::string> plotStyles{{}, {}};    // folded names, from index 2 on
  std::string modelStyleSheet;                    // as PageSetup::styleSheet
  bool framesImages = false;                      // images have frames
  std::vector<Layout> layouts;                    // in their order; at least one if paper space has entities
  double lineTypeScale = 1;                       // $LTSCALE
  bool paperLineTypes = true;                     // $PSLTSCALE: line types have paper lengths in viewports
  double millimetresPerUnit = 1;                  // from $INSUNITS, 1 when unitless
  int pointMode = 0;                              // $PDMODE
  double pointSize = 0;                           // $PDSIZE
  std::map<std::string, EntityCount, std::less<>> types;  // all entities but those in blocks, by type
  std::map<std::string, uint64_t> skipped;  // the model's entities that are not plotted, by type
  std::vector<std::string> losses;          // messages about faults of the file
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
