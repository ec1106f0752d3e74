// TEXT and its like are in their own plane. MTEXT stands in world coordinates, its direction too; its
// rotation, which may stand in the direction's place, is one of its plane.
#include "hdiplot/dxf/text_reader.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "hdiplot/dxf/object_plane.h"
#include "hdiplot/dxf/table_reader.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {
namespace {

// Group 70 of STYLE, and the flags behind a TrueType family's name.
constexpr uint64_t kShapeFile = 1;
constexpr uint64_t kVertical = 4;
constexpr uint64_t kItalic = 0x1000000;
constexpr uint64_t kBold = 0x2000000;

// Group 70 of ATTRIB and ATTDEF.
constexpr uint64_t kHidden = 1;
constexpr uint64_t kConstant = 2;

// Group 71 of STYLE and TEXT.
constexpr uint64_t kBackwards = 2;
constexpr uint64_t kUpsideDown = 4;

// What programs let their users set. Beyond it there are only mistakes.
constexpr double kSteepest = 85;  // degrees
constexpr double kNarrowest = 0.01;
constexpr double kWidest = 100;
constexpr double kClosestLines = 0.25;
constexpr double kWidestLines = 4;

// The area that a unit square is seen as, below which it is seen edge-on.
constexpr double kEdgeOn = 1e-6;

constexpr int kNeeded[] = {10, 20};

uint64_t FlagsOf(const DxfObject& object, int code) { return static_cast<uint64_t>(object.Integer(code, 0)); }

// How letters are formed is the same in a style and in a text, but for the code of the slant.
template <typename Lettering>
void ReadForm(const DxfObject& object, int obliqueCode, Lettering& lettering) {
  const uint64_t flags = FlagsOf(object, 71);
  const double width = object.Real(41, 1);
  lettering.backwards = ((flags & kBackwards) != 0) != (width < 0);
  lettering.upsideDown = (flags & kUpsideDown) != 0;
  if (width != 0) lettering.widthFactor = std::clamp(std::fabs(width), kNarrowest, kWidest);
  const double oblique = std::remainder(object.Real(obliqueCode, 0), 360);
  lettering.oblique = Radians(std::clamp(oblique, -kSteepest, kSteepest));
}

// The axes of a text as they are seen from above, and what is left of its lengths along them.
struct SeenAxes {
  Vec2 right, up;
  double along = 1;
  double across = 1;
};

// Nothing when the text is seen edge-on. Unit vectors in space are given.
std::optional<SeenAxes> Seen(Vec2 right, Vec2 up) {
  if (!(std::fabs(Cross(right, up)) > kEdgeOn)) return {};
  SeenAxes seen;
  seen.along = std::hypot(right.x, right.y);
  seen.across = std::hypot(up.x, up.y);
  seen.right = {right.x / seen.along, right.y / seen.along};
  seen.up = {up.x / seen.across, up.y / seen.across};
  return seen;
}

// In a plane that is not tilted, the axes stay as they are to the last bit.
std::optional<SeenAxes> SeenIn(const Ocs& plane, Vec2 right) {
  const Vec2 seenRight = plane.Project(right);
  const Vec2 seenUp = plane.Project(TurnedLeft(right));
  if (plane.GetKind() == Ocs::Kind::kTilted) return Seen(seenRight, seenUp);
  return SeenAxes{seenRight, seenUp};
}

TextAlign AlignOf(int64_t justification) {
  constexpr TextAlign kAligns[] = {TextAlign::kLeft,    TextAlign::kCenter, TextAlign::kRight,
                                   TextAlign::kAligned, TextAlign::kMiddle, TextAlign::kFit};
  const auto index = static_cast<uint64_t>(justification);
  return index < std::size(kAligns) ? kAligns[index] : TextAlign::kLeft;
}

TextLine LineOf(int64_t justification) {
  constexpr TextLine kLines[] = {TextLine::kBase, TextLine::kBottom, TextLine::kMiddle, TextLine::kTop};
  const auto index = static_cast<uint64_t>(justification);
  return index < std::size(kLines) ? kLines[index] : TextLine::kBase;
}

// Where a text stands in its plane.
struct Placing {
  TextAlign align = TextAlign::kLeft;
  TextLine line = TextLine::kBase;
  Vec3 place, end;
  Vec2 right{1, 0};
};

Placing PlacingOf(const DxfObject& object) {
  Placing placing;
  placing.place = {object.Real(10, 0), object.Real(20, 0), object.Real(30, 0)};
  placing.right = Direction(Radians(object.Real(50, 0)));
  // A text that has but one point stands there on the left.
  if (!object.Find(11) || !object.Find(21)) return placing;
  const Vec3 second = {object.Real(11, 0), object.Real(21, 0), object.Real(31, 0)};
  placing.align = AlignOf(object.Integer(72, 0));
  if (placing.align == TextAlign::kAligned || placing.align == TextAlign::kFit) {
    const Vec2 span = {second.x - placing.place.x, second.y - placing.place.y};
    const double length = std::hypot(span.x, span.y);
    if (length > 0) {
      placing.end = second;
      placing.right = {span.x / length, span.y / length};
    } else {
      placing.align = TextAlign::kLeft;
    }
    return placing;
  }
  if (placing.align != TextAlign::kMiddle)
    placing.line = LineOf(object.Integer(object.type == "TEXT" ? 73 : 74, 0));
  if (placing.align != TextAlign::kLeft || placing.line != TextLine::kBase) placing.place = second;
  return placing;
}

// What a TEXT or its like shows; null for nothing. The definition of an attribute is a place for one, known
// by its tag, in the drawing; of a block's definitions only the constant ones are part of what is inserted.
const Group* ShownText(const DxfObject& object, bool inBlock) {
  constexpr int kTag = 2;
  constexpr int kValue = 1;
  if (object.type == "TEXT") return object.Find(kValue);
  const uint64_t flags = FlagsOf(object, 70);
  if ((flags & kHidden) != 0) return nullptr;
  if (object.type == "ATTRIB") return object.Find(kValue);
  if (!inBlock) return object.Find(kTag);
  return (flags & kConstant) != 0 ? object.Find(kValue) : nullptr;
}

// The direction (11) and the rotation (50) say the same; the last of them counts.
std::optional<SeenAxes> AxesOfMText(const DxfObject& object, const Ocs& plane) {
  double rotation = 0;
  bool hasDirection = false;
  for (const Group& group : object.groups) {
    if (group.code == 50) rotation = group.number;
    if (group.code == 11 || group.code == 50) hasDirection = group.code == 11;
  }
  const Vec3 direction = {object.Real(11, 0), object.Real(21, 0), object.Real(31, 0)};
  const double length = Length(direction);
  if (!hasDirection || !(length > 0)) return SeenIn(plane, Direction(Radians(rotation)));
  const Vec3 up = plane.MinorDirection(direction / length);
  const Vec3 left = plane.MinorDirection(up);  // in the plane, even where the direction is not
  const double inPlane = Length(up);
  return Seen({-left.x / inPlane, -left.y / inPlane}, {up.x / inPlane, up.y / inPlane});
}

}  // namespace

bool CutLongText(std::string& utf8) {
  if (utf8.size() <= kLongestText) return false;
  size_t length = kLongestText;
  while (length > 0 && (static_cast<unsigned char>(utf8[length]) & 0xc0) == 0x80) --length;
  utf8.resize(length);
  return true;
}

std::optional<TextReader::NamedStyle> TextReader::ReadStyle(const DxfObject& entry) const {
  const uint64_t flags = FlagsOf(entry, 70);
  const NameDecoder& names = names_.Decoder();
  NamedStyle named{UpperCase(NameOf(entry, names)), {}};
  if ((flags & kShapeFile) != 0 || named.name.empty()) return {};
  TextStyle& style = named.style;
  if (const Group* file = entry.Find(3); file && !file->Value().empty()) style.fontFile = names.Decode(*file);
  if (const Group* file = entry.Find(4)) style.bigFontFile = names.Decode(*file);
  style.height = std::max(entry.Real(40, 0), 0.0);
  style.vertical = (flags & kVertical) != 0;
  ReadForm(entry, 50, style);
  // A TrueType family is the name with flags behind it; other programs' data have other groups there.
  const auto family = std::ranges::adjacent_find(entry.extended, [](const Group& name, const Group& flag) {
    return name.code == 1000 && flag.code == 1071;
  });
  if (family == entry.extended.end()) return named;
  const auto familyFlags = static_cast<uint64_t>(std::next(family)->Integer());
  style.family = names.Decode(*family);
  style.bold = (familyFlags & kBold) != 0;
  style.italic = (familyFlags & kItalic) != 0;
  return named;
}

std::optional<TextEntity> TextReader::ReadText(const DxfObject& object, bool inBlock) const {
  object.Require(kNeeded);
  const Group* shown = ShownText(object, inBlock);
  if (!shown) return {};
  TextEntity text;
  text.text = names_.Decoder().DecodeText(shown->Raw(), Backslash::kItself);
  const Ocs plane = PlaneOf(object);
  const Placing placing = PlacingOf(object);
  const auto axes = SeenIn(plane, placing.right);
  if (text.text.empty() || !axes) return {};
  text.style = StyleOf(object);
  text.place = plane.Project(placing.place);
  text.end = plane.Project(placing.end);
  text.align = placing.align;
  text.line = placing.line;
  text.right = axes->right;
  text.up = axes->up;
  ReadForm(object, 51, text);
  text.height = HeightOf(object, text.style) * axes->across;
  if (plane.GetKind() == Ocs::Kind::kTilted) {
    const double stretch = axes->along / axes->across;
    text.widthFactor *= stretch;
    text.oblique = std::atan(std::tan(text.oblique) * stretch);
  }
  return text;
}

std::optional<MTextEntity> TextReader::ReadMText(const DxfObject& object) const {
  object.Require(kNeeded);
  // Long texts are cut into pieces without regard to characters.
  std::string raw;
  for (const Group& group : object.groups) {
    if (group.code == 1 || group.code == 3) raw += group.Raw();
  }
  MTextEntity text;
  text.text = names_.Decoder().DecodeText(raw, Backslash::kStartsCode);
  const auto axes = AxesOfMText(object, PlaneOf(object));
  if (text.text.empty() || !axes) return {};
  text.style = StyleOf(object);
  text.place = {object.Real(10, 0), object.Real(20, 0)};
  const int64_t attachment = object.Integer(71, 1);
  if (attachment >= 1 && attachment <= 9) text.attachment = static_cast<int>(attachment);
  text.right = axes->right;
  text.up = axes->up;
  // Both by the same measure, so that lines of a tilted text end where they do when it is seen straight.
  text.height = HeightOf(object, text.style) * axes->across;
  text.wrapWidth = std::max(object.Real(41, 0), 0.0) * axes->across;
  const double spacing = object.Real(44, 1);
  if (spacing > 0) text.lineSpacing = std::clamp(spacing, kClosestLines, kWidestLines);
  text.exactSpacing = object.Integer(73, 1) == 2;
  text.vertical = object.Integer(72, 1) == 3;
  return text;
}

Name TextReader::StyleOf(const DxfObject& object) const {
  const Group* style = object.Find(7);
  return style && !style->Value().empty() ? names_.UpperCaseOf(*style) : Name(&kStandardStyle);
}

// A text without a height has that of its style, where the style has one.
double TextReader::HeightOf(const DxfObject& object, const std::string& style) const {
  const double height = object.Real(40, 0);
  if (height > 0) return height;
  auto found = styles_.find(style);
  if (found == styles_.end()) found = styles_.find(kStandardStyle);
  return found != styles_.end() && found->second.height > 0 ? found->second.height : 1;
}

}  // namespace hdiplot
