// A glyph is its number in Hershey's tables in five columns, a count of pairs in three, and so many pairs of
// characters, which may go on behind a line's end. The first pair is the left and the right side; each of the
// others is a point, X before Y, or, where X is a blank, the end of a stroke. Coordinates count from 'R', Y
// down.
#include "hdiplot/text/hershey_font.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string>

#include "hdiplot/system/files.h"
#include "hdiplot/system/font_files.h"
#include "hdiplot/system/paths.h"

namespace hdiplot {

namespace {

constexpr double kCapHeight = 21;  // of all Hershey alphabets, in their own units
constexpr char kBaseLine = '[';    // the Y of it

// The bytes of a file but for the ends of its lines; empty when it cannot be read.
std::string ReadWithoutLineEnds(const std::filesystem::path& file) {
  std::string text;
  const FileStream stream = OpenToRead(file);
  for (int byte = stream ? std::getc(stream.get()) : EOF; byte != EOF; byte = std::getc(stream.get())) {
    if (byte != '\n' && byte != '\r') text += static_cast<char>(byte);
  }
  return text;
}

// The pairs of the next glyph, which are taken from `rest`; none at the end and where the text is broken.
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

}  // namespace

std::vector<StrokeGlyph> ReadHersheyFont(std::string_view name) {
  const std::string text =
      ReadWithoutLineEnds(HersheyFontFolder() / PathFromUtf8(std::string(name) + ".jhf"));
  std::vector<StrokeGlyph> glyphs;
  std::string_view rest = text;
  while (const auto pairs = TakePairs(rest)) glyphs.push_back(GlyphOf(*pairs));
  return glyphs;
}

}  // namespace hdiplot
