// Both entities have the same groups: a corner, the sides of one pixel in space, the size in pixels, and a
// polygon in pixels. Those are counted from the middle of the upper left one, downwards.
#include "hdiplot/dxf/image_reader.h"

#include <algorithm>

#include "hdiplot/system/ascii_case.h"

namespace hdiplot {
namespace {

constexpr uint64_t kShown = 1;
constexpr uint64_t kTransparent = 8;
constexpr uint64_t kClipped = 4;
constexpr int64_t kPolygonOfTwoCorners = 1;

// The whole image in the drawing.
struct Frame {
  Vec2 corner;  // lower left
  Vec2 pixelRight, pixelUp;
  double columns = 1;
  double rows = 1;

  Vec2 At(double x, double y) const {
    return {corner.x + pixelRight.x * x + pixelUp.x * y, corner.y + pixelRight.y * x + pixelUp.y * y};
  }
  // Of a point as polygons have it.
  Vec2 AtPixel(Vec2 p) const { return At(p.x + 0.5, rows - (p.y + 0.5)); }

  std::vector<Vec2> Outline() const { return {At(0, 0), At(columns, 0), At(columns, rows), At(0, rows)}; }
};

Frame FrameOf(const DxfObject& object) {
  constexpr int kNeeded[] = {10, 20, 11, 21, 12, 22, 13, 23};
  object.Require(kNeeded);
  Frame frame;
  frame.corner = {object.Real(10, 0), object.Real(20, 0)};
  frame.pixelRight = {object.Real(11, 0), object.Real(21, 0)};
  frame.pixelUp = {object.Real(12, 0), object.Real(22, 0)};
  frame.columns = object.Real(13, 0);
  frame.rows = object.Real(23, 0);
  return frame;
}

// In pixels; two opposite corners stand for a rectangle.
std::vector<Vec2> PolygonOf(const DxfObject& object) {
  std::vector<Vec2> polygon;
  for (const Group& group : object.groups) {
    if (group.code == 14) polygon.push_back({group.number, 0});
    if (group.code == 24 && !polygon.empty()) polygon.back().y = group.number;
  }
  object.CheckCount(object.Find(91), polygon.size());
  const bool isRectangle = object.Integer(71, kPolygonOfTwoCorners) == kPolygonOfTwoCorners;
  if (isRectangle && polygon.size() == 2) {
    const Vec2 a = polygon[0];
    const Vec2 b = polygon[1];
    polygon = {a, {b.x, a.y}, b, {a.x, b.y}};
  }
  if (polygon.size() < 3) polygon.clear();
  return polygon;
}

// Whether all of the image is within the polygon, as it is when nobody has clipped it.
bool IsWhole(const std::vector<Vec2>& polygon, const Frame& frame) {
  constexpr double kRoom = 1e-6;  // pixels
  return polygon.size() == 4 && std::ranges::all_of(polygon, [&frame](Vec2 p) {
           const bool atSide = p.x <= -0.5 + kRoom || p.x >= frame.columns - 0.5 - kRoom;
           return atSide && (p.y <= -0.5 + kRoom || p.y >= frame.rows - 0.5 - kRoom);
         });
}

std::vector<Vec2> InDrawing(std::vector<Vec2> polygon, const Frame& frame) {
  for (Vec2& p : polygon) p = frame.AtPixel(p);
  return polygon;
}

bool IsInverted(const DxfObject& object) { return object.Integer(290, 0) != 0; }

int Percent(const DxfObject& object, int code, int fallback) {
  return static_cast<int>(std::clamp<int64_t>(object.Integer(code, fallback), 0, 100));
}

}  // namespace

std::string ImageKey(const Group& handle) { return UpperCase(handle.Value()); }

Shape ReadImage(const DxfObject& object) {
  const Frame frame = FrameOf(object);
  const auto flags = static_cast<uint64_t>(object.Integer(70, kShown));
  ImageEntity image;
  if (const Group* definition = object.Find(340)) image.definition = ImageKey(*definition);
  image.corner = frame.corner;
  image.right = {frame.pixelRight.x * frame.columns, frame.pixelRight.y * frame.columns};
  image.up = {frame.pixelUp.x * frame.rows, frame.pixelUp.y * frame.rows};
  image.shown = (flags & kShown) != 0;
  image.look.transparent = (flags & kTransparent) != 0;
  image.look.brightness = Percent(object, 281, image.look.brightness);
  image.look.contrast = Percent(object, 282, image.look.contrast);
  image.look.fade = Percent(object, 283, image.look.fade);
  if (object.Integer(280, (flags & kClipped) != 0 ? 1 : 0) == 0) return image;
  const std::vector<Vec2> polygon = PolygonOf(object);
  image.clipInverted = !polygon.empty() && IsInverted(object);
  if (image.clipInverted || !IsWhole(polygon, frame)) image.clip = InDrawing(polygon, frame);
  return image;
}

Shape ReadWipeout(const DxfObject& object) {
  const Frame frame = FrameOf(object);
  WipeoutEntity wipeout;
  const std::vector<Vec2> polygon = PolygonOf(object);
  if (!polygon.empty()) wipeout.rings.push_back(InDrawing(polygon, frame));
  if (polygon.empty() || IsInverted(object)) wipeout.rings.push_back(frame.Outline());
  return wipeout;
}

}  // namespace hdiplot
