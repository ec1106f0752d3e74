// TEXT, ATTRIB and ATTDEF are in their own plane. The place and the direction of an MTEXT are in world
// coordinates; its rotation, an alternative to the direction, is in its plane.
#include "hdiplot/dxf/text_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "hdiplot/dxf/mtext_extras.h"
#include "hdiplot/dxf/object_plane.h"

namespace hdiplot {
namespace {

// Group 70 of STYLE, and the flags after the name of a TrueType family.
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

// The limits of what CAD programs accept.
constexpr double kSteepest = 85;  // degrees
constexpr double kNarrowest = 0.01;
constexpr double kWidest = 100;
constexpr double kClosestLines = 0.25;
constexpr double kWidestLines = 4;

// The projected area of a unit square below which it is seen edge-on.
constexpr double kEdgeOn = 1e-6;

// The form of the letters, in a style or a text; only the code of the slant differs.
template <typename Lettering>
void ReadLettering(const DxfObject& object, int obliqueCode, Lettering& lettering) {
  const uint64_t flags = object.Flags(71);
  const double width = object.Real(41, 1);
  lettering.backwards = ((flags & kBackwards) != 0) != (width < 0);
  lettering.upsideDown = (flags & kUpsideDown) != 0;
  if (width != 0) lettering.widthFactor = std::clamp(std::fabs(width), kNarrowest, kWidest);
  const double oblique = std::remainder(object.Real(obliqueCode, 0), 360);
  lettering.oblique = Radians(std::clamp(oblique, -kSteepest, kSteepest));
}

// The axes of a text projected onto the drawing's plane, and the scales along them.
struct SeenAxes {
  Vec2 right, up;
  double along = 1;
  double across = 1;
};

// From projected unit vectors. None for a text seen edge-on.
std::optional<SeenAxes> Seen(Vec2 right, Vec2 up) {
  if (!(std::fabs(Cross(right, up)) > kEdgeOn)) return {};
  SeenAxes seen;
  seen.along = std::hypot(right.x, right.y);
  seen.across = std::hypot(up.x, up.y);
  seen.right = {right.x / seen.along, right.y / seen.along};
  seen.up = {up.x / seen.across, up.y / seen.across};
  return seen;
}

// Exact in a plane that is not tilted.
std::optional<SeenAxes> SeenIn(const Ocs& plane, Vec2 right) {
  const Vec2 seenRight = plane.Project(right);
  const Vec2 seenUp = plane.Project(TurnedLeft(right));
  if (plane.GetKind() == Ocs::Kind::kTilted) return Seen(seenRight, seenUp);
  return SeenAxes{seenRight, seenUp};
}

constexpr std::array kAligns = {TextAlign::kLeft,    TextAlign::kCenter, TextAlign::kRight,
                                TextAlign::kAligned, TextAlign::kMiddle, TextAlign::kFit};
constexpr std::array kLines = {TextLine::kBase, TextLine::kBottom, TextLine::kMiddle, TextLine::kTop};

// The justification in that group; the first one if it is invalid.
template <typename Choices>
auto JustificationOf(const DxfObject& object, int code, const Choices& choices) {
  const uint64_t index = object.Flags(code);
  return choices[index < choices.size() ? index : 0];
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
  placing.place = object.SpacePoint(10);
  placing.right = Direction(object.Angle(50));
  // A text with a single point is aligned left there.
  if (!object.Find(11) || !object.Find(21)) return placing;
  const Vec3 second = object.SpacePoint(11);
  placing.align = JustificationOf(object, 72, kAligns);
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
  if (placing.align != TextAlign::kMiddle) {
    placing.line = JustificationOf(object, object.type == "TEXT" ? 73 : 74, kLines);
  }
  if (placing.align != TextAlign::kLeft || placing.line != TextLine::kBase) placing.place = second;
  return placing;
}

// The shown text of a TEXT, ATTRIB or ATTDEF; null for none. In the drawing, an attribute's definition shows
// its tag. In a block, only a constant one is part of what is inserted.
const Group* ShownText(const DxfObject& object, bool inBlock) {
  constexpr int kTag = 2;
  constexpr int kValue = 1;
  if (object.type == "TEXT") return object.Find(kValue);
  const uint64_t flags = object.Flags(70);
  if ((flags & kHidden) != 0) return nullptr;
  if (object.type == "ATTRIB") return object.Find(kValue);
  if (!inBlock) return object.Find(kTag);
  return (flags & kConstant) != 0 ? object.Find(kValue) : nullptr;
}

// The direction (11) and the rotation (50) are alternatives; the last one counts. With neither, the direction
// is the X axis of the drawing, not that of the text's plane.
std::optional<SeenAxes> AxesOfMText(const DxfObject& object, const Ocs& plane) {
  double rotation = 0;
  int last = 0;
  for (const Group& group : object.groups) {
    if (group.code == 50) rotation = group.number;
    if (group.code == 11 || group.code == 50) last = group.code;
  }
  Vec3 direction = object.SpacePoint(11);
  if (last == 0 && plane.GetKind() == Ocs::Kind::kMirrored) {
    direction = {1, 0, 0};
    last = 11;
  }
  const double length = Length(direction);
  if (last != 11 || !(length > 0)) return SeenIn(plane, Direction(Radians(rotation)));
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

std::optional<TextStyle> ReadStyle(const DxfObject& entry, const TextDecoder& decoder) {
  const uint64_t flags = entry.Flags(70);
  if ((flags & kShapeFile) != 0) return {};
  TextStyle style;
  if (const Group* file = entry.Find(3); file && !file->Value().empty()) {
    style.fontFile = decoder.DecodeName(*file);
  }
  if (const Group* file = entry.Find(4)) style.bigFontFile = decoder.DecodeName(*file);
  style.height = std::max(entry.Real(40, 0), 0.0);
  style.vertical = (flags & kVertical) != 0;
  ReadLettering(entry, 50, style);
  // A TrueType family is a name followed by flags. Data of other programs have other groups.
  const auto family = std::ranges::adjacent_find(entry.extended, [](const Group& name, const Group& flag) {
    return name.code == 1000 && flag.code == 1071;
  });
  if (family == entry.extended.end()) return style;
  const auto familyFlags = static_cast<uint64_t>(std::next(family)->Integer());
  style.family = decoder.DecodeName(*family);
  style.bold = (familyFlags & kBold) != 0;
  style.italic = (familyFlags & kItalic) != 0;
  return style;
}

std::optional<TextEntity> TextReader::ReadText(const DxfObject& object, bool inBlock) const {
  (void)object.NeededPoint(10);
  const Group* shown = ShownText(object, inBlock);
  if (!shown) return {};
  return ReadForm(object, names_.Decoder().DecodeText(shown->Raw(), Backslash::kItself));
}

std::optional<TextEntity> TextReader::ReadDefinition(const DxfObject& object) const {
  const bool isShown = (object.Flags(70) & (kHidden | kConstant)) == 0;
  return isShown ? ReadForm(object, std::string(object.Text(2))) : std::nullopt;
}

std::optional<TextEntity> TextReader::ReadForm(const DxfObject& object, std::string&& shown) const {
  TextEntity text;
  text.text = std::move(shown);
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
  ReadLettering(object, 51, text);
  text.height = HeightOf(object, text.style) * axes->across;
  if (plane.GetKind() == Ocs::Kind::kTilted) {
    const double stretch = axes->along / axes->across;
    text.widthFactor *= stretch;
    text.oblique = std::atan(std::tan(text.oblique) * stretch);
  }
  return text;
}

std::optional<MTextEntity> TextReader::ReadMText(const DxfObject& object) const {
  MTextEntity text;
  text.place = object.NeededPoint(10);
  // Long texts are split into groups, even within characters.
  std::string raw;
  for (const Group& group : object.groups) {
    if (group.code == 1 || group.code == 3) raw += group.Raw();
  }
  text.text = names_.Decoder().DecodeText(raw, Backslash::kStartsCode);
  const auto axes = AxesOfMText(object, PlaneOf(object));
  if (text.text.empty() || !axes) return {};
  text.style = StyleOf(object);
  const int64_t attachment = object.Integer(71, 1);
  if (attachment >= 1 && attachment <= 9) text.attachment = static_cast<int>(attachment);
  text.right = axes->right;
  text.up = axes->up;
  // Both have the same scale, so that a tilted text is wrapped like one that is not.
  text.height = HeightOf(object, text.style) * axes->across;
  text.wrapWidth = std::max(object.Real(41, 0), 0.0) * axes->across;
  const double spacing = object.Real(44, 1);
  if (spacing > 0) text.lineSpacing = std::clamp(spacing, kClosestLines, kWidestLines);
  text.exactSpacing = object.Integer(73, 1) == 2;
  constexpr int64_t kAcross = 1;
  constexpr int64_t kByStyle = 5;
  text.horizontal = object.Integer(72, kByStyle) == kAcross;
  text.extras = ReadMTextExtras(object, axes->across);
  return text;
}

Name TextReader::StyleOf(const DxfObject& object) const {
  const Group* style = object.Find(7);
  return style && !style->Value().empty() ? names_.Folded(*style) : Name(&kStandardStyle);
}

// A text without a height has that of its style, or 1.
double TextReader::HeightOf(const DxfObject& object, const std::string& style) const {
  const double height = object.Real(40, 0);
  if (height > 0) return height;
  auto found = styles_.find(style);
  if (found == styles_.end()) found = styles_.find(kStandardStyle);
  return found != styles_.end() && found->second.height > 0 ? found->second.height : 1;
}

}  // namespace hdiplot
