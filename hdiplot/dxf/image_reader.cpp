// Both entities have the same groups: a corner, the sides of one pixel in space, the size in pixels, and a
// polygon in pixels, counted downwards from the centre of the upper left one.
#include <algorithm>

#include "hdiplot/dxf/shape_reader.h"

namespace hdiplot {
namespace {

constexpr uint64_t kShown = 1;
constexpr uint64_t kTransparent = 8;
constexpr uint64_t kClipped = 4;
constexpr int64_t kPolygonOfTwoCorners = 1;

// The whole image in the drawing.
struct ImageFrame {
  Vec2 corner;  // lower left
  Vec2 pixelRight, pixelUp;
  double columns = 1;
  double rows = 1;

  Vec2 At(double x, double y) const { return corner + pixelRight * x + pixelUp * y; }
  // A point of the polygon.
  Vec2 AtPixel(Vec2 p) const { return At(p.x + 0.5, rows - (p.y + 0.5)); }

  std::vector<Vec2> Outline() const { return {At(0, 0), At(columns, 0), At(columns, rows), At(0, rows)}; }
};

ImageFrame ReadFrame(const DxfObject& object) {
  ImageFrame frame{object.NeededPoint(10), object.NeededPoint(11), object.NeededPoint(12)};
  frame.columns = object.Needed(13).number;
  frame.rows = object.Needed(23).number;
  return frame;
}

// In pixels. Two opposite corners are a rectangle.
std::vector<Vec2> PolygonOf(const DxfObject& object) {
  std::vector<Vec2> polygon = object.Points(14);
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

// Whether the polygon is the outline of the image, as written for an image that is not clipped.
bool IsOutline(const std::vector<Vec2>& polygon, const ImageFrame& frame) {
  constexpr double kRoom = 1e-6;  // pixels
  return polygon.size() == 4 && std::ranges::all_of(polygon, [&frame](Vec2 p) {
           const bool atSide = p.x <= -0.5 + kRoom || p.x >= frame.columns - 0.5 - kRoom;
           return atSide && (p.y <= -0.5 + kRoom || p.y >= frame.rows - 0.5 - kRoom);
         });
}

std::vector<Vec2> InDrawing(std::vector<Vec2> polygon, const ImageFrame& frame) {
  for (Vec2& p : polygon) p = frame.AtPixel(p);
  return polygon;
}

bool IsInverted(const DxfObject& object) { return object.Integer(290, 0) != 0; }

int Percent(const DxfObject& object, int code, int fallback) {
  return static_cast<int>(std::clamp<int64_t>(object.Integer(code, fallback), 0, 100));
}

}  // namespace

ImageEntity ReadImage(const DxfObject& object) {
  const ImageFrame frame = ReadFrame(object);
  const uint64_t flags = object.Flags(70, kShown);
  ImageEntity image;
  image.definition = HandleKey(object.Text(340));
  image.corner = frame.corner;
  image.right = frame.pixelRight * frame.columns;
  image.up = frame.pixelUp * frame.rows;
  image.shown = (flags & kShown) != 0;
  image.look.transparent = (flags & kTransparent) != 0;
  image.look.brightness = Percent(object, 281, image.look.brightness);
  image.look.contrast = Percent(object, 282, image.look.contrast);
  image.look.fade = Percent(object, 283, image.look.fade);
  if (object.Integer(280, (flags & kClipped) != 0 ? 1 : 0) == 0) return image;
  const std::vector<Vec2> polygon = PolygonOf(object);
  image.clipInverted = !polygon.empty() && IsInverted(object);
  if (image.clipInverted || !IsOutline(polygon, frame)) image.clip = InDrawing(polygon, frame);
  return image;
}

WipeoutEntity ReadWipeout(const DxfObject& object) {
  const ImageFrame frame = ReadFrame(object);
  WipeoutEntity wipeout;
  const std::vector<Vec2> polygon = PolygonOf(object);
  if (!polygon.empty()) wipeout.rings.push_back(InDrawing(polygon, frame));
  if (polygon.empty() || IsInverted(object)) wipeout.rings.push_back(frame.Outline());
  return wipeout;
}

}  // namespace hdiplot
