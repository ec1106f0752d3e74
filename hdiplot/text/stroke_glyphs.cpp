// A glyph in a .jhf file is its number in Hershey's tables in five columns, a count of pairs in three, and
// that many pairs of characters, which may continue on the next line. The first pair is the left and the
// right side; each of the others is a point, X before Y, or, where X is a blank, the end of a stroke.
// Coordinates count from 'R', Y down.
#include "hdiplot/text/stroke_glyphs.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

#include "hdiplot/geometry/clipping.h"
#include "hdiplot/geometry/curves.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/font_files.h"
#include "hdiplot/system/paths.h"

namespace hdiplot {

namespace {

constexpr double kCapHeight = 21;  // of all Hershey alphabets, in font units
constexpr char kBaseLine = '[';    // its Y coordinate

// The bytes of a file without line ends; empty when it cannot be read.
std::string ReadWithoutLineEnds(const std::filesystem::path& file) {
  std::string text;
  const FileStream stream = OpenToRead(file);
  for (int byte = stream ? std::getc(stream.get()) : EOF; byte != EOF; byte = std::getc(stream.get())) {
    if (byte != '\n' && byte != '\r') text += static_cast<char>(byte);
  }
  return text;
}

// Removes the next glyph from `rest` and returns its pairs. None at the end and where the text is broken.
std::optional<std::string_view> TakePairs(std::string_view& rest) {
  constexpr size_t kNumberColumns = 5;
  constexpr size_t kCountColumns = 3;
  if (rest.size() < kNumberColumns + kCountColumns) return std::nullopt;
  std::string_view digits = rest.substr(kNumberColumns, kCountColumns);
  digits.remove_prefix(std::min(digits.find_first_not_of(' '), digits.size()));
  size_t count = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), count);
  rest.remove_prefix(kNumberColumns + kCountColumns);
  if (count == 0 || rest.size() < 2 * count) return std::nullopt;
  const std::string_view pairs = rest.substr(0, 2 * count);
  rest.remove_prefix(pairs.size());
  return pairs;
}

StrokeGlyph GlyphOf(std::string_view pairs) {
  const char left = pairs[0];
  StrokeGlyph glyph;
  glyph.advance = (pairs[1] - left) / kCapHeight;
  bool isDown = false;
  for (size_t i = 2; i < pairs.size(); i += 2) {
    const bool isPoint = pairs[i] != ' ';
    if (isPoint && !isDown) glyph.strokes.emplace_back();
    if (isPoint) {
      glyph.strokes.back().push_back(
          {(pairs[i] - left) / kCapHeight, (kBaseLine - pairs[i + 1]) / kCapHeight});
    }
    isDown = isPoint;
  }
  return glyph;
}

using Strokes = std::vector<std::vector<Vec2>>;

std::vector<Vec2> Circle(Vec2 center, double radius) {
  constexpr int kSides = 16;
  std::vector<Vec2> points;
  points.reserve(kSides + 1);
  for (int i = 0; i < kSides; ++i) {
    points.push_back(center + Direction(kWholeTurn * i / kSides) * radius);
  }
  points.push_back(points.front());
  return points;
}

// Above the point (0, 0), which is a gap above the letter.
Strokes AccentAbove(char16_t accent) {
  switch (accent) {
    case 0x0300:  // grave
      return {{{-0.15, 0.25}, {0.08, 0.05}}};
    case 0x0301:  // acute
      return {{{0.15, 0.25}, {-0.08, 0.05}}};
    case 0x0302:  // circumflex
      return {{{-0.18, 0.05}, {0, 0.25}, {0.18, 0.05}}};
    case 0x0303:  // tilde
      return {{{-0.22, 0.08}, {-0.14, 0.18}, {-0.05, 0.18}, {0.05, 0.08}, {0.14, 0.08}, {0.22, 0.18}}};
    case 0x0304:  // macron
      return {{{-0.2, 0.12}, {0.2, 0.12}}};
    case 0x0306:  // breve
      return {{{-0.18, 0.24}, {-0.11, 0.1}, {0, 0.05}, {0.11, 0.1}, {0.18, 0.24}}};
    case 0x0307:  // dot
      return {Circle({0, 0.12}, 0.03)};
    case 0x0308:  // diaeresis
      return {Circle({-0.15, 0.12}, 0.03), Circle({0.15, 0.12}, 0.03)};
    case 0x030A:  // ring
      return {Circle({0, 0.14}, 0.11)};
    case 0x030B:  // double acute
      return {{{0, 0.25}, {-0.15, 0.05}}, {{0.22, 0.25}, {0.07, 0.05}}};
    case 0x030C:  // caron
      return {{{-0.18, 0.25}, {0, 0.05}, {0.18, 0.25}}};
    default:
      return {};
  }
}

// Below the point (0, 0) of the base line.
Strokes AccentBelow(char16_t accent) {
  switch (accent) {
    case 0x0326:  // comma
      return {{{0.04, -0.08}, {0.04, -0.15}, {-0.05, -0.25}}};
    case 0x0327:  // cedilla
      return {{{0, 0}, {0, -0.1}, {0.1, -0.16}, {0.08, -0.26}, {-0.06, -0.3}, {-0.13, -0.26}}};
    case 0x0328:  // ogonek
      return {{{0.12, 0}, {0.02, -0.12}, {0.04, -0.25}, {0.18, -0.28}}};
    default:
      return {};
  }
}

}  // namespace

std::vector<StrokeGlyph> ReadHersheyFont(std::string_view name) {
  const std::string text =
      ReadWithoutLineEnds(HersheyFontFolder() / PathFromUtf8(std::string(name) + ".jhf"));
  std::vector<StrokeGlyph> glyphs;
  std::string_view rest = text;
  while (const auto pairs = TakePairs(rest)) glyphs.push_back(GlyphOf(*pairs));
  return glyphs;
}

std::optional<StrokeGlyph> DrawnSign(char16_t unit) {
  switch (unit) {
    case u'^':  // an arrow in the Hershey fonts
      return StrokeGlyph{0.8, {{{0.15, 0.7}, {0.4, 1}, {0.65, 0.7}}}};
    case 0x00B0:  // degree
      return StrokeGlyph{0.6, {Circle({0.3, 0.82}, 0.17)}};
    case 0x00B1:  // plus-minus
      return StrokeGlyph{1.2,
                         {{{0.15, 0.55}, {1.05, 0.55}}, {{0.6, 0.15}, {0.6, 0.95}}, {{0.15, 0}, {1.05, 0}}}};
    case 0x00D7:  // times
      return StrokeGlyph{1.05, {{{0.2, 0.1}, {0.85, 0.75}}, {{0.2, 0.75}, {0.85, 0.1}}}};
    case 0x00D8:  // O with stroke, and the signs that look like it
    case 0x2205:
    case 0x2300:
      return StrokeGlyph{1.1, {Circle({0.55, 0.5}, 0.42), {{0.1, -0.1}, {1, 1.1}}}};
    default:
      return std::nullopt;
  }
}

bool AddAccent(char16_t accent, StrokeGlyph& glyph) {
  const Strokes above = AccentAbove(accent);
  const Strokes below = AccentBelow(accent);
  if (above.empty() && below.empty()) return false;
  Box box = BoxOf(glyph.strokes);
  if (box.Empty()) box.Add({glyph.advance / 2, 0});
  constexpr double kGap = 0.06;
  const Vec2 place{(box.low.x + box.high.x) / 2, above.empty() ? 0 : box.high.y + kGap};
  for (const auto& stroke : above.empty() ? below : above) {
    auto& points = glyph.strokes.emplace_back();
    for (const Vec2& p : stroke) points.push_back(place + p);
  }
  return true;
}

}  // namespace hdiplot
