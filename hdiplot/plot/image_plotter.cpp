// The driver takes images whose sides are those of the sheet. Quarter turns and mirrored images get there
// with their pixels in another order; all others are made anew from pixels of about the same size.
#include "hdiplot/plot/image_plotter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "hdiplot/plot/boundaries.h"

namespace hdiplot {

namespace {

// A side this much off the sheet's own directions, in dots, is on them.
constexpr double kStraight = 0.25;

// Of an image that is made anew.
constexpr double kMostPixels = 40e6;
constexpr double kLongestSide = 30000;
constexpr double kSmallestPixel = 0.5;  // dots
constexpr double kSmallestArea = 0.25;  // dots times dots
// Larger pixels would make stairs of the sides: in dots, and in parts of the longer side.
constexpr double kLargestPixel = 4;
constexpr double kLargestPart = 1e-3;

// An image on paper in dots, Y down, by its upper left corner and its sides from there.
struct Placing {
  Vec2 corner;
  Vec2 along;  // the upper side
  Vec2 down;   // the left side
};

Placing PlacingOf(const ImageEntity& image, const Affine& map) {
  return {map(image.corner + image.up), map.Direction(image.right), map.Direction(image.up) * -1};
}

Box BoxOf(const Placing& placing) {
  return BoxOf(Parallelogram(placing.corner, placing.along, placing.down));
}

// None when the sides are not the sheet's.
std::optional<ImageTurn> TurnOf(const Placing& placing) {
  const Vec2 along = placing.along;
  const Vec2 down = placing.down;
  const auto isNone = [](double length) { return std::abs(length) <= kStraight; };
  if (isNone(along.y) && isNone(down.x)) return ImageTurn{false, along.x < 0, down.y < 0};
  if (isNone(along.x) && isNone(down.y)) return ImageTurn{true, down.x < 0, along.y < 0};
  return std::nullopt;
}

// The size of the pixels that an image is made anew of, in dots.
double PixelSize(const Placing& placing, const hdi::BITMAPINFOHEADER& header, const Box& box) {
  const double own =
      std::min(Length(placing.along) / header.biWidth, Length(placing.down) / std::abs(header.biHeight));
  const double smooth = std::max(std::max(box.Width(), box.Height()) * kLargestPart, kLargestPixel);
  const double fewEnough = std::sqrt(box.Width() * box.Height() / kMostPixels);
  const double shortEnough = std::max(box.Width(), box.Height()) / kLongestSide;
  return std::max({std::min(own, smooth), kSmallestPixel, fewEnough, shortEnough});
}

// Pixels of the whole box around an image whose sides are not parallel.
ImageData MakeUpright(Raster& raster, const Placing& placing) {
  const Box box = BoxOf(placing);
  const ImageData source = DescribeRaster(raster);
  const double size = PixelSize(placing, *raster.GetImageHeader(), box);
  const double columns = std::max(std::ceil(box.Width() / size), 1.0);
  const double rows = std::max(std::ceil(box.Height() / size), 1.0);
  // From the pixels made, through dots, to those of the source: the placing's sides are solved for.
  const double turn = Cross(placing.along, placing.down);
  const auto sourceOf = [&](Vec2 dots) {
    return Vec2{Cross(dots, placing.down) / turn * source.width,
                Cross(placing.along, dots) / turn * source.height};
  };
  const Vec2 right = sourceOf({box.Width() / columns, 0});
  const Vec2 down = sourceOf({0, box.Height() / rows});
  const Vec2 origin = sourceOf(box.low - placing.corner);
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
  const Placing placing = PlacingOf(image, map);
  const std::optional<ImageTurn> turn = TurnOf(placing);
  ImageLook look = image.look;
  look.grey = inGrey_;
  Raster* raster = images_.Find(drawing_.folder, *file, look, turn.value_or(ImageTurn{}));
  if (raster == nullptr) return nullptr;
  const Box box = BoxOf(placing);
  if (!(box.Width() > 0 && box.Height() > 0)) return nullptr;
  if (!turn) {
    if (std::abs(Cross(placing.along, placing.down)) < kSmallestArea) return nullptr;
    raster = &Upright(*raster, placing.along, placing.down);
  }
  const hdi::BITMAPINFOHEADER& header = *raster->GetImageHeader();
  return &images_.Place(*raster, box.low, box.Width() / header.biWidth, box.Height() / header.biHeight);
}

// Images of a block that is inserted often differ in place only.
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
