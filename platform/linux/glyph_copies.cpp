// Rewrites the "glyf", "loca" and "hmtx" tables and the counts that depend on them.
#include "platform/linux/glyph_copies.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

namespace hdi {
namespace {

constexpr size_t kHeadSize = 54;
constexpr size_t kHeadLocaFormat = 50;
constexpr size_t kHheaSize = 36;
constexpr size_t kHheaMetricCount = 34;
constexpr size_t kMaxpSize = 6;
constexpr size_t kMaxpGlyphCount = 4;

// Short offsets count 16-bit words.
constexpr size_t kLargestShortOffset = 0x1FFFE;

// Larger outlines come from a broken font with a huge glyph copied many times.
constexpr size_t kLargestOutlines = 1 << 28;

struct Metric {
  uint16_t advance;
  uint16_t bearing;
};

SfntTable WriteLoca(const std::vector<size_t>& offsets, bool isLong) {
  SfntTable loca;
  for (const size_t offset : offsets) {
    if (isLong) {
      AppendU32(loca, offset);
    } else {
      AppendU16(loca, offset / 2);
    }
  }
  return loca;
}

// Writes the outlines of `glyphs`. Returns false, with the tables unchanged, if one is broken.
bool WriteOutlines(GlyphTables& tables, const std::vector<uint16_t>& glyphs) {
  const bool wasLong = ReadU16(tables.head, kHeadLocaFormat) != 0;
  const auto offsetOf = [&](size_t glyph) -> size_t {
    return wasLong ? ReadU32(tables.loca, 4 * glyph) : size_t{2} * ReadU16(tables.loca, 2 * glyph);
  };
  const size_t entries = tables.loca.size() / (wasLong ? 4 : 2);
  SfntTable glyf;
  std::vector<size_t> offsets{0};
  for (const uint16_t glyph : glyphs) {
    if (glyph + size_t{1} >= entries) return false;
    const size_t begin = offsetOf(glyph);
    const size_t end = offsetOf(glyph + size_t{1});
    if (begin > end || end > tables.glyf.size() || glyf.size() > kLargestOutlines) return false;
    glyf.insert(glyf.end(), tables.glyf.data() + begin, tables.glyf.data() + end);
    if (glyf.size() % 2 != 0) glyf.push_back(0);
    offsets.push_back(glyf.size());
  }
  if (glyf.empty()) glyf.push_back(0);  // readers reject an empty table

  const bool isLong = offsets.back() > kLargestShortOffset;
  tables.loca = WriteLoca(offsets, isLong);
  tables.glyf = std::move(glyf);
  WriteU16(tables.head, kHeadLocaFormat, isLong ? 1 : 0);
  return true;
}

std::optional<std::vector<Metric>> ReadMetrics(const GlyphTables& tables, size_t glyphCount) {
  const size_t full = ReadU16(tables.hhea, kHheaMetricCount);
  if (full == 0 || full > glyphCount || tables.hmtx.size() < 4 * full + 2 * (glyphCount - full)) {
    return std::nullopt;
  }
  std::vector<Metric> metrics;
  for (size_t i = 0; i < glyphCount; ++i) {
    const size_t bearingAt = i < full ? 4 * i + 2 : 4 * full + 2 * (i - full);
    metrics.push_back({ReadU16(tables.hmtx, 4 * std::min(i, full - 1)), ReadU16(tables.hmtx, bearingAt)});
  }
  return metrics;
}

// Trailing glyphs of the same width share one advance.
void WriteMetrics(GlyphTables& tables, const std::vector<Metric>& metrics) {
  size_t full = metrics.size();
  while (full > 1 && metrics[full - 1].advance == metrics[full - 2].advance) --full;
  SfntTable hmtx;
  for (size_t i = 0; i < metrics.size(); ++i) {
    if (i < full) AppendU16(hmtx, metrics[i].advance);
    AppendU16(hmtx, metrics[i].bearing);
  }
  tables.hmtx = std::move(hmtx);
  WriteU16(tables.hhea, kHheaMetricCount, full);
}

}  // namespace

bool AppendGlyphCopies(GlyphTables& tables, std::span<const uint16_t> originals) {
  if (tables.head.size() < kHeadSize || tables.hhea.size() < kHheaSize || tables.maxp.size() < kMaxpSize) {
    return false;
  }
  const size_t glyphCount = ReadU16(tables.maxp, kMaxpGlyphCount);
  const std::optional<std::vector<Metric>> metrics = ReadMetrics(tables, glyphCount);
  if (!metrics || glyphCount + originals.size() > 0xFFFF) return false;

  std::vector<uint16_t> glyphs(glyphCount);
  std::iota(glyphs.begin(), glyphs.end(), uint16_t{0});
  glyphs.insert(glyphs.end(), originals.begin(), originals.end());
  std::vector<Metric> allMetrics = *metrics;
  for (const uint16_t original : originals) {
    if (original >= glyphCount) return false;
    allMetrics.push_back((*metrics)[original]);
  }
  if (!WriteOutlines(tables, glyphs)) return false;
  WriteMetrics(tables, allMetrics);
  WriteU16(tables.maxp, kMaxpGlyphCount, glyphs.size());
  return true;
}

}  // namespace hdi
