// The driver takes axis-aligned images only. Quarter turns and mirrored images are reordered pixel by pixel;
// all others are resampled with pixels of about the same size.
#include "hdiplot/plot/image_plotter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "hdiplot/plot/boundaries.h"

namespace hdiplot {

namespace {

// In dots: sides that deviate less than this are axis-aligned.
constexpr double kStraight = 0.25;

// Limits of a resampled image.
constexpr double kMostPixels = 40e6;
constexpr double kLongestSide = 30000;
constexpr double kSmallestPixel = 0.5;  // dots
constexpr double kSmallestArea = 0.25;  // dots times dots
// Larger pixels would give visibly jagged sides: in dots, and relative to the longer side.
constexpr double kLargestPixel = 4;
constexpr double kLargestPart = 1e-3;

// An image on paper in dots, Y down, by its upper left corner and its sides from there.
struct ImageSides {
  Vec2 corner;
  Vec2 along;  // the upper side
  Vec2 down;   // the left side
};

ImageSides SidesOf(const ImageEntity& image, const Affine& map) {
  return {map(image.corner + image.up), map.Direction(image.right), map.Direction(image.up) * -1};
}

Box BoxOf(const ImageSides& sides) { return BoxOf(Parallelogram(sides.corner, sides.along, sides.down)); }

// None when the sides are not axis-aligned.
std::optional<ImageTurn> TurnOf(const ImageSides& sides) {
  const Vec2 along = sides.along;
  const Vec2 down = sides.down;
  const auto isNone = [](double length) { return std::abs(length) <= kStraight; };
  if (isNone(along.y) && isNone(down.x)) return ImageTurn{false, along.x < 0, down.y < 0};
  if (isNone(along.x) && isNone(down.y)) return ImageTurn{true, down.x < 0, along.y < 0};
  return std::nullopt;
}

// The pixel size of a resampled image, in dots.
double PixelSize(const ImageSides& sides, const hdi::BITMAPINFOHEADER& header, const Box& box) {
  const double own =
      std::min(Length(sides.along) / header.biWidth, Length(sides.down) / std::abs(header.biHeight));
  const double smooth = std::max(std::max(box.Width(), box.Height()) * kLargestPart, kLargestPixel);
  const double fewEnough = std::sqrt(box.Width() * box.Height() / kMostPixels);
  const double shortEnough = std::max(box.Width(), box.Height()) / kLongestSide;
  return std::max({std::min(own, smooth), kSmallestPixel, fewEnough, shortEnough});
}

// The image resampled over the box around it.
ImageData MakeUpright(Raster& raster, const ImageSides& sides) {
  const Box box = BoxOf(sides);
  const ImageData source = DescribeRaster(raster);
  const double size = PixelSize(sides, *raster.GetImageHeader(), box);
  const double columns = std::max(std::ceil(box.Width() / size), 1.0);
  const double rows = std::max(std::ceil(box.Height() / size), 1.0);
  // From new pixels by way of dots to pixels of the source.
  const double turn = Cross(sides.along, sides.down);
  const auto sourceOf = [&](Vec2 dots) {
    return Vec2{Cross(dots, sides.down) / turn * source.width,
                Cross(sides.along, dots) / turn * source.height};
  };
  const Vec2 right = sourceOf({box.Width() / columns, 0});
  const Vec2 down = sourceOf({0, box.Height() / rows});
  const Vec2 origin = sourceOf(box.low - sides.corner);
  return Resampled(source, Affine::OfAxes(right, down, origin), static_cast<int32_t>(columns),
                   static_cast<int32_t>(rows));
}

}  // namespace

void ImagePlotter::Plot(const ImageEntity& image, const Affine& map, const Stroke& stroke) {
  const auto isPlottable = [&map](Vec2 p) { return Canvas::IsPlottable(map(p)); };
  if (!std::ranges::all_of(FrameOf(image), isPlottable) || !std::ranges::all_of(image.clip, isPlottable)) {
    canvas_.NoteMissing();
    return;
  }
  const hdi::HostImageRecord* record = image.shown ? Placed(image, map) : nullptr;
  if (record == nullptr) {
    DrawFrame(image, map, stroke);
  } else if (image.clip.empty()) {
    canvas_.Bitmap(*record);
  } else if (Clip(image, map)) {
    canvas_.Bitmap(*record);
    canvas_.Unclip();
  }
  if (record != nullptr && drawing_.framesImages) DrawFrame(image, map, stroke);
}

void ImagePlotter::Plot(const WipeoutEntity& wipeout, const Affine& map) {
  canvas_.UseFill(paper_);
  for (const auto& ring : wipeout.rings) {
    canvas_.BeginRing();
    for (const Vec2& p : ring) canvas_.RingPoint(map(p));
  }
  canvas_.FillRings(hdi::kFillAlternate);
}

void ImagePlotter::DrawFrame(const ImageEntity& image, const Affine& map, const Stroke& stroke) {
  const bool isClipped = !image.clip.empty() && !image.clipInverted;
  Ring ring = Mapped(isClipped ? image.clip : FrameOf(image), map);
  ring.push_back(ring.front());
  canvas_.UseStroke(stroke);
  canvas_.Polyline(ring);
}

bool ImagePlotter::Clip(const ImageEntity& image, const Affine& map) {
  const Area clip = {Mapped(image.clip, map)};
  return canvas_.ClipTo(image.clipInverted ? Without({Mapped(FrameOf(image), map)}, clip) : clip);
}

// Null when the image cannot be shown.
const hdi::HostImageRecord* ImagePlotter::Placed(const ImageEntity& image, const Affine& map) {
  const std::string* file = FileOf(image);
  if (file == nullptr) return nullptr;
  const ImageSides sides = SidesOf(image, map);
  const std::optional<ImageTurn> turn = TurnOf(sides);
  ImageLook look = image.look;
  look.grey = inGrey_;
  Raster* raster = images_.Find(drawing_.folder, *file, look, turn.value_or(ImageTurn{}));
  if (raster == nullptr) return nullptr;
  const Box box = BoxOf(sides);
  if (!(box.Width() > 0 && box.Height() > 0)) return nullptr;
  if (!turn) {
    if (std::abs(Cross(sides.along, sides.down)) < kSmallestArea) return nullptr;
    raster = &Upright(*raster, sides.along, sides.down);
  }
  const hdi::BITMAPINFOHEADER& header = *raster->GetImageHeader();
  return &images_.Place(*raster, box.low, box.Width() / header.biWidth, box.Height() / header.biHeight);
}

// Cached by the sides: images of a block that is inserted many times differ only in place.
Raster& ImagePlotter::Upright(Raster& raster, Vec2 along, Vec2 down) {
  constexpr double kPartsOfDot = 16;
  const auto rounded = [](double dots) { return static_cast<int64_t>(std::llround(dots * kPartsOfDot)); };
  const std::tuple key{&raster, rounded(along.x), rounded(along.y), rounded(down.x), rounded(down.y)};
  const auto [entry, isNew] = upright_.try_emplace(key, nullptr);
  if (isNew) entry->second = &images_.Keep(MakeUpright(raster, {{}, along, down}));
  return *entry->second;
}

const std::string* ImagePlotter::FileOf(const ImageEntity& image) {
  const auto found = drawing_.imageFiles.find(image.definition);
  if (found != drawing_.imageFiles.end() && !found->second.empty()) return &found->second;
  images_.ReportUnusable(drawing_.name + ": an image has no file");
  return nullptr;
}

}  // namespace hdiplot
