#include "hdiplot/plot/text_plotter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "hdiplot/text/text_parts.h"
#include "hdiplot/text/text_setter.h"

namespace hdiplot {

namespace {

constexpr double kPlainTracking = 1e-4;  // below this, tracking is ignored
constexpr double kRuleWidth = 0.08;      // for outline fonts, in heights of capitals

// The driver rotates text with advances only, and hides such text only if it is tracked.
constexpr double kHidingTracking = 1.001;

// Limits of what the driver is given: in dots, and as factors. Texts beyond them are mistakes.
constexpr double kLowest = 1e-3;
constexpr double kNarrowest = 0.01;
constexpr double kWidest = 100;
constexpr double kClosestTracking = 0.1;
constexpr double kWidestTracking = 10;

// The font at the direction and the size of the text.
hdi::LOGFONTW Turned(hdi::LOGFONTW font, const TextPlacement& placement, double emSize) {
  constexpr double kTenthsOfDegree = 1800 / std::numbers::pi;
  constexpr double kLargest = 1e6;
  font.lfHeight = -static_cast<int32_t>(std::lround(std::clamp(placement.height * emSize, 1.0, kLargest)));
  font.lfEscapement = static_cast<int32_t>(std::lround(placement.angle * kTenthsOfDegree));
  font.lfOrientation = font.lfEscapement;
  return font;
}

Vec2 Along(const TextPlacement& placement, double along) {
  const Vec2 direction{std::cos(placement.angle), -std::sin(placement.angle)};
  return placement.at + direction * (along * placement.unitWidth);
}

// The number of leading units that one face draws.
size_t LengthInOneFace(const OutlineFont& font, std::u16string_view text) {
  const hdi::FontFace* face = font.FaceOf(text.front());
  const auto end = std::ranges::find_if(text, [&](char16_t unit) { return font.FaceOf(unit) != face; });
  return static_cast<size_t>(end - text.begin());
}

bool IsDrawable(const TextPlacement& placement, Vec2 end) {
  return Canvas::IsPlottable(placement.at) && Canvas::IsPlottable(end) && placement.height >= kLowest &&
         placement.unitWidth > 0 && Canvas::IsPlottable(Vec2{placement.height, placement.unitWidth});
}

double WidthFactor(const TextPlacement& placement) { return placement.unitWidth / placement.height; }

// Whether the driver can show text in this position.
bool IsForDriver(const TextPlacement& placement) {
  const double factor = WidthFactor(placement);
  return !placement.isMirrored && factor >= kNarrowest && factor <= kWidest;
}

// The addition of a tracking factor to each advance, in ems.
double Spacing(double trackingFactor) { return (trackingFactor - 1) / 2; }

}  // namespace

TextPlacement PlacementOf(const Affine& map) {
  TextPlacement placement;
  const Vec2 right{map.a, -map.b};
  Vec2 up{map.c, -map.d};
  const double length = Length(right);
  placement.at = {map.e, map.f};
  placement.isMirrored = Cross(right, up) < 0;
  if (placement.isMirrored) {
    placement.at = map({0, 1});
    up = up * -1;
  }
  placement.angle = std::atan2(right.y, right.x);
  placement.unitWidth = length;
  placement.height = length > 0 ? Cross(right, up) / length : 0;
  placement.oblique = std::atan2(Dot(right, up), Cross(right, up));
  return placement;
}

void TextPlotter::Plot(const TextBlock& block, const Affine& map, const Style& style, uint32_t penWidth) {
  const Affine whole = map * block.frame;
  for (const TextPiece& piece : block.pieces) {
    const Rgb color = piece.look.color ? style.Plotted(*piece.look.color) : style.color;
    PlotPiece(piece, whole, color, penWidth);
  }
  PlotRules(block, whole, style, penWidth);
  WriteComment();
}

void TextPlotter::PlotPiece(const TextPiece& piece, const Affine& map, Rgb color, uint32_t penWidth) {
  const bool isBlank = std::ranges::all_of(piece.text, [](char16_t unit) { return unit == u' '; });
  if (isBlank) return;
  const Affine glyphMap = map * PieceMap(piece);
  const FontChoice& choice = piece.look.font;
  const Line line{
      piece, fonts_.Find(choice), fonts_.FontFor(choice), glyphMap, PlacementOf(glyphMap), color, penWidth};
  if (!IsDrawable(line.placement, map(piece.at + Vec2{piece.width, 0}))) {
    canvas_.NoteMissing();
    return;
  }
  const bool isForDriver = line.font.outline != nullptr && IsForDriver(line.placement);
  double along = 0;
  for (const DriverPart& part : DriverParts(piece.text)) {
    if (!isForDriver) HideText(line, part.text, along);
    if (!isForDriver || !ShowText(line, part.text, along)) DrawGlyphs(line, part.visual, along);
    along += AdvanceOf(part.text, line.measure) * piece.look.tracking;
  }
  if (HasComment(line)) NoteWords(piece);
}

// Passes text to the driver in its own font. False when the driver does not show it.
bool TextPlotter::ShowText(const Line& line, std::u16string_view text, double along) {
  const OutlineFont& font = *line.font.outline;
  const TextPlacement& placement = line.placement;
  const double tracking = line.piece.look.tracking;
  drawn_.clear();
  advances_.clear();
  double width = 0;
  for (const char16_t unit : text) {
    drawn_ += font.Drawn(unit);
    const double advance = font.Advance(unit);
    advances_.push_back(advance * placement.unitWidth * tracking);
    width += advance;
  }
  DeviceText call;
  call.font = Turned(font.Selection(), placement, font.EmSize());
  call.at = Along(placement, along);
  call.text = drawn_;
  call.advances = &advances_;
  call.height = placement.height * font.EmSize();
  call.oblique = placement.oblique;
  call.widthFactor = WidthFactor(placement);
  if (std::abs(tracking - 1) > kPlainTracking) {
    const double meanEms = width / font.EmSize() / static_cast<double>(text.size());
    call.trackingFactor =
        std::clamp(1 + (tracking - 1) * meanEms / Spacing(2), kClosestTracking, kWidestTracking);
  }
  canvas_.UseFill(line.color);
  return canvas_.Text(call);
}

// Passes drawn text to the driver as invisible text for searches. A reader highlights its place when it is
// found, so it is in the interface font but as wide as what is drawn.
void TextPlotter::HideText(const Line& line, std::u16string_view text, double along) {
  const OutlineFont* font = fonts_.InterfaceFont();
  if (font == nullptr) return;
  const TextPlacement& placement = line.placement;
  DeviceText call;
  call.font = Turned(font->Selection(), placement, font->EmSize());
  call.height = placement.height * font->EmSize();
  call.oblique = placement.oblique;
  if (call.font.lfEscapement != 0) {
    call.advances = &advances_;
    call.trackingFactor = kHidingTracking;
  }
  const double spacing = Spacing(call.trackingFactor) * font->EmSize();
  // Without advances the driver starts each change of the face at the same place. It also reverses
  // right-to-left runs, which must not be split.
  const bool mayPart = IsPlainLeftToRight(text);
  while (!text.empty()) {
    const std::u16string_view part = mayPart ? text.substr(0, LengthInOneFace(*font, text)) : text;
    const double width = AdvanceOf(part, line.measure) * line.piece.look.tracking;
    const double ownWidth = AdvanceOf(part, *font) + spacing * static_cast<double>(part.size());
    const double stretch = width > 0 && ownWidth > 0 ? width / ownWidth : 1;
    call.at = Along(placement, along);
    call.text = part;
    call.widthFactor = std::clamp(WidthFactor(placement) * stretch, kNarrowest, kWidest);
    advances_.clear();
    for (const char16_t unit : part) {
      advances_.push_back((font->Advance(unit) + spacing) * placement.unitWidth * stretch);
    }
    static_cast<void>(canvas_.Text(call));
    along += width;
    text.remove_prefix(part.size());
  }
}

void TextPlotter::DrawGlyphs(const Line& line, std::u16string_view visual, double along) {
  const StrokeFont* strokes = line.font.stroke;
  const OutlineFont* outlines = strokes != nullptr ? strokes->BigFont() : line.font.outline;
  for (const char16_t unit : visual) {
    const StrokeGlyph* glyph = strokes != nullptr ? strokes->Strokes(unit) : nullptr;
    if (glyph != nullptr) {
      canvas_.UseStroke({line.color, line.penWidth, LineEnds::kRound, nullptr, 1});
      for (const auto& stroke : glyph->strokes) {
        points_.clear();
        for (const Vec2& p : stroke) points_.push_back(line.map(p + Vec2{along, 0}));
        canvas_.Polyline(points_);
        if (HasComment(line)) NoteDrawn(line);
      }
    } else if (outlines != nullptr) {
      const auto form = strokes != nullptr ? strokes->BigFormOf(unit) : StrokeFont::BigForm{};
      const Affine glyphMap =
          Affine::Translation({along, form.rise}) * Affine::Scaling(form.scale, form.scale);
      DrawOutline(line, outlines->Outline(unit), line.map * glyphMap);
    }
    along += line.measure.Advance(unit) * line.piece.look.tracking;
  }
}

void TextPlotter::DrawOutline(const Line& line, const std::vector<hdi::GlyphContour>& contours,
                              const Affine& map) {
  if (contours.empty()) return;
  canvas_.UseFill(line.color);
  canvas_.BeginArea();
  for (const hdi::GlyphContour& contour : contours) {
    points_.clear();
    for (const hdi::GlyphPoint& p : contour) points_.push_back(map({p.x, p.y}));
    canvas_.AreaCurve(points_);
    if (HasComment(line)) NoteDrawn(line);
  }
  canvas_.FillArea();
}

// A piece that does not continue where the last one ends starts a new word.
void TextPlotter::NoteWords(const TextPiece& piece) {
  constexpr double kRoom = 1e-6;  // in heights of capitals
  if (lastWords_ != nullptr) {
    const Vec2 end = lastWords_->at + Vec2{lastWords_->width, 0};
    if (Length(piece.at - end) > kRoom * piece.look.height) words_ += u' ';
  }
  words_ += piece.text;
  lastWords_ = &piece;
}

void TextPlotter::NoteDrawn(const Line& line) {
  for (const Vec2& p : points_) wordsArea_.Add(p, line.penWidth / 2.0);
}

void TextPlotter::WriteComment() {
  if (!wordsArea_.Empty()) canvas_.Comment(words_, wordsArea_);
  words_.clear();
  wordsArea_ = {};
  lastWords_ = nullptr;
}

void TextPlotter::PlotRules(const TextBlock& block, const Affine& map, const Style& style,
                            uint32_t penWidth) {
  if (block.rules.empty()) return;
  const double unit = PlacementOf(map).height;
  for (const TextRule& rule : block.rules) {
    const bool isStroked = fonts_.Find(rule.font).outline == nullptr;
    const uint32_t width = isStroked ? penWidth : PenWidth(rule.height * unit * kRuleWidth);
    canvas_.UseStroke(
        {rule.color ? style.Plotted(*rule.color) : style.color, width, LineEnds::kFlat, nullptr, 1});
    canvas_.Line(map(rule.from), map(rule.to));
  }
}

}  // namespace hdiplot
