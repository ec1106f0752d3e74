// Parses the "loca", "glyf" and "hmtx" tables (OpenType, "glyf": simple and composite glyphs). Only the bytes
// of the requested glyphs are read. Fonts are untrusted, so every offset is checked.
#include "platform/windows/font_face_glyph_data.h"

#include <cmath>
#include <span>

#include "platform/sfnt_bytes.h"

namespace hdi {
namespace {

// Reads consecutive numbers. Bytes beyond the end read as 0.
class ByteReader {
 public:
  explicit ByteReader(std::span<const uint8_t> bytes) : bytes_(bytes) {}

  uint8_t Read8() { return Take(1) ? bytes_[at_ - 1] : uint8_t{0}; }
  uint16_t Read16() { return Take(2) ? ReadU16(bytes_, at_ - 2) : uint16_t{0}; }
  int8_t ReadSigned8() { return static_cast<int8_t>(Read8()); }
  int16_t ReadSigned16() { return static_cast<int16_t>(Read16()); }
  double ReadFraction() { return ReadSigned16() / 16384.0; }  // F2DOT14
  void Skip(size_t count) { static_cast<void>(Take(count)); }

  // Whether every read so far was within bounds.
  [[nodiscard]] bool Good() const { return good_; }

 private:
  bool Take(size_t count) {
    good_ = good_ && count <= bytes_.size() - at_;
    if (good_) at_ += count;
    return good_;
  }

  std::span<const uint8_t> bytes_;
  size_t at_ = 0;
  bool good_ = true;
};

constexpr size_t kHeaderSize = 10;  // the number of contours and the bounds

enum SimpleFlag : uint8_t {
  kOnCurve = 0x01,
  kShortX = 0x02,
  kShortY = 0x04,
  kRepeated = 0x08,
  kPositiveOrSameX = 0x10,
  kPositiveOrSameY = 0x20,
};

std::vector<uint8_t> ReadFlags(ByteReader& reader, size_t count) {
  std::vector<uint8_t> flags;
  while (flags.size() < count && reader.Good()) {
    const uint8_t flag = reader.Read8();
    const size_t times = (flag & kRepeated) != 0 ? size_t{1} + reader.Read8() : 1;
    flags.insert(flags.end(), times, flag);
  }
  flags.resize(count);
  return flags;
}

int32_t ReadStep(ByteReader& reader, bool isShort, bool isPositiveOrSame) {
  if (isShort) return isPositiveOrSame ? reader.Read8() : -int32_t{reader.Read8()};
  return isPositiveOrSame ? 0 : reader.ReadSigned16();
}

GlyphData ReadSimpleGlyph(ByteReader reader, size_t contourCount) {
  GlyphData glyph;
  for (size_t i = 0; i < contourCount; ++i) {
    const size_t end = size_t{reader.Read16()} + 1;
    if (!reader.Good() || (i > 0 && end < glyph.ends.back())) return {};
    glyph.ends.push_back(end);
  }
  if (glyph.ends.empty()) return {};
  reader.Skip(reader.Read16());  // instructions
  const std::vector<uint8_t> flags = ReadFlags(reader, glyph.ends.back());
  int32_t x = 0;
  for (const uint8_t flag : flags) {
    x += ReadStep(reader, (flag & kShortX) != 0, (flag & kPositiveOrSameX) != 0);
    glyph.points.push_back({static_cast<double>(x), 0, (flag & kOnCurve) != 0});
  }
  int32_t y = 0;
  for (size_t i = 0; i < flags.size(); ++i) {
    y += ReadStep(reader, (flags[i] & kShortY) != 0, (flags[i] & kPositiveOrSameY) != 0);
    glyph.points[i].y = y;
  }
  return reader.Good() ? glyph : GlyphData();
}

enum ComponentFlag : uint16_t {
  kWordArguments = 0x0001,
  kArgumentsAreOffsets = 0x0002,
  kOneScale = 0x0008,
  kMoreComponents = 0x0020,
  kTwoScales = 0x0040,
  kMatrix = 0x0080,
  kOwnMetrics = 0x0200,
  kScaledOffset = 0x0800,
  kUnscaledOffset = 0x1000,
};

struct Component {
  uint16_t flags;
  uint16_t glyph;
  int32_t first;  // an offset, or a point number in the composite
  int32_t second;
  double xx = 1, yx = 0, xy = 0, yy = 1;
};

Component ReadComponent(ByteReader& reader) {
  Component part = {};
  part.flags = reader.Read16();
  part.glyph = reader.Read16();
  const auto readArgument = [&]() -> int32_t {
    if ((part.flags & kArgumentsAreOffsets) == 0) {
      return (part.flags & kWordArguments) != 0 ? reader.Read16() : reader.Read8();
    }
    return (part.flags & kWordArguments) != 0 ? reader.ReadSigned16() : reader.ReadSigned8();
  };
  part.first = readArgument();
  part.second = readArgument();
  if ((part.flags & kOneScale) != 0) {
    part.xx = part.yy = reader.ReadFraction();
  } else if ((part.flags & kTwoScales) != 0) {
    part.xx = reader.ReadFraction();
    part.yy = reader.ReadFraction();
  } else if ((part.flags & kMatrix) != 0) {
    part.xx = reader.ReadFraction();
    part.yx = reader.ReadFraction();
    part.xy = reader.ReadFraction();
    part.yy = reader.ReadFraction();
  }
  return part;
}

void Move(std::vector<OutlinePoint>& points, double x, double y) {
  for (OutlinePoint& point : points) {
    point.x += x;
    point.y += y;
  }
}

// Transforms the glyph of a component and appends it to the composite.
void Place(GlyphData added, const Component& part, GlyphData& whole) {
  for (OutlinePoint& point : added.points) {
    point = {point.x * part.xx + point.y * part.xy, point.x * part.yx + point.y * part.yy, point.isOnCurve};
  }
  if ((part.flags & kArgumentsAreOffsets) != 0) {
    const bool isScaled = (part.flags & (kScaledOffset | kUnscaledOffset)) == kScaledOffset;
    Move(added.points, part.first * (isScaled ? std::hypot(part.xx, part.xy) : 1),
         part.second * (isScaled ? std::hypot(part.yx, part.yy) : 1));
  } else {
    const auto fixed = static_cast<size_t>(part.first);
    const auto own = static_cast<size_t>(part.second);
    if (fixed >= whole.points.size() || own >= added.points.size()) return;
    const OutlinePoint& to = whole.points[fixed];
    const OutlinePoint from = added.points[own];
    Move(added.points, to.x - from.x, to.y - from.y);
  }
  for (const size_t end : added.ends) whole.ends.push_back(whole.points.size() + end);
  whole.points.insert(whole.points.end(), added.points.begin(), added.points.end());
  if ((part.flags & kOwnMetrics) != 0) whole.origin = added.origin;
}

class GlyphReader {
 public:
  explicit GlyphReader(const SelectedFont& font)
      : font_(font),
        hasLongOffsets_(Number(TableTag("head"), 50) != 0),
        metricCount_(Number(TableTag("hhea"), 34)) {}

  GlyphData Read(uint16_t index, int depth = 0) {
    constexpr int kDeepest = 8;
    constexpr int kMost = 1000;  // glyphs in one, limits recursive references
    if (depth > kDeepest || ++count_ > kMost) return {};
    const std::vector<uint8_t> bytes = GlyphBytes(index);
    if (bytes.size() < kHeaderSize) return {};
    ByteReader reader(bytes);
    const int16_t contourCount = reader.ReadSigned16();
    const double left = reader.ReadSigned16();
    reader.Skip(6);
    GlyphData glyph;
    if (contourCount >= 0) glyph = ReadSimpleGlyph(reader, static_cast<size_t>(contourCount));
    glyph.origin = left - LeftSideBearing(index);
    if (contourCount < 0) AddComponents(reader, depth, glyph);
    return glyph;
  }

 private:
  [[nodiscard]] uint16_t Number(DWORD table, DWORD at) const {
    const std::vector<uint8_t> bytes = font_.Table(table, at, 2);
    return bytes.size() == 2 ? ReadU16(bytes, 0) : uint16_t{0};
  }

  [[nodiscard]] std::vector<uint8_t> GlyphBytes(uint16_t glyph) const {
    const DWORD size = hasLongOffsets_ ? 4 : 2;
    const std::vector<uint8_t> places = font_.Table(TableTag("loca"), size * glyph, 2 * size);
    if (places.size() != 2 * size) return {};
    const DWORD start = hasLongOffsets_ ? ReadU32(places, 0) : 2 * DWORD{ReadU16(places, 0)};
    const DWORD end = hasLongOffsets_ ? ReadU32(places, 4) : 2 * DWORD{ReadU16(places, 2)};
    return start < end ? font_.Table(TableTag("glyf"), start, end - start) : std::vector<uint8_t>();
  }

  // Glyphs after the last advance have only a bearing.
  [[nodiscard]] double LeftSideBearing(uint16_t glyph) const {
    const DWORD at = glyph < metricCount_ ? 4 * DWORD{glyph} + 2 : 2 * (DWORD{metricCount_} + glyph);
    return static_cast<int16_t>(Number(TableTag("hmtx"), at));
  }

  void AddComponents(ByteReader& reader, int depth, GlyphData& whole) {
    bool hasMore = true;
    while (hasMore) {
      const Component part = ReadComponent(reader);
      if (!reader.Good()) return;
      Place(Read(part.glyph, depth + 1), part, whole);
      hasMore = (part.flags & kMoreComponents) != 0;
    }
  }

  const SelectedFont& font_;
  bool hasLongOffsets_;
  uint16_t metricCount_;
  int count_ = 0;
};

}  // namespace

GlyphData ReadGlyphData(const SelectedFont& font, uint16_t glyph) { return GlyphReader(font).Read(glyph); }

}  // namespace hdi
