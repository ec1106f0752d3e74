// Characters, widths and heights of a face. All are in the font's own units, not rounded by GDI for a size.
#include <algorithm>
#include <numeric>

#include "platform/sfnt_bytes.h"
#include "platform/windows/font_face_list.h"
#include "platform/windows/font_face_outline.h"
#include "platform/windows/selected_font.h"
#include "platform/windows/wide.h"

namespace hdi {
namespace {

constexpr char16_t kFirstSurrogate = 0xD800;
constexpr char16_t kLastSurrogate = 0xDFFF;
constexpr size_t kSymbolPage = 0xF0;
constexpr size_t kFirstPrivatePage = 0xE0;
constexpr size_t kLastPrivatePage = 0xF8;

constexpr size_t kHorizontalHeaderSize = 36;  // of "hhea"

int16_t ReadS16(std::span<const uint8_t> table, size_t at) {
  return static_cast<int16_t>(ReadU16(table, at));
}

}  // namespace

uint16_t SystemFace::GlyphOf(char16_t unit) const {
  std::unique_ptr<GlyphPage>& page = glyphs_[unit / kPageSize];
  if (page == nullptr) page = std::make_unique<GlyphPage>(ReadGlyphs(unit / kPageSize));
  return (*page)[unit % kPageSize];
}

SystemFace::GlyphPage SystemFace::ReadGlyphs(size_t page) const {
  constexpr uint16_t kMissing = 0xFFFF;
  GlyphPage glyphs = {};
  if (page >= kFirstSurrogate / kPageSize && page <= kLastSurrogate / kPageSize) return glyphs;
  if (facts_.isSymbol) {
    // For characters of the system's code page GDI also finds symbols, which depends on the system.
    if (page == 0) page = kSymbolPage;
    if (page < kFirstPrivatePage || page > kLastPrivatePage) return glyphs;
  }
  std::array<char16_t, kPageSize> units = {};
  std::iota(units.begin(), units.end(), static_cast<char16_t>(page * kPageSize));
  const SelectedFont font(own_);
  if (GetGlyphIndicesW(font.Device(), Wide(units.data()), kPageSize, glyphs.data(),
                       GGI_MARK_NONEXISTING_GLYPHS) == GDI_ERROR) {
    return {};
  }
  std::replace(glyphs.begin(), glyphs.end(), kMissing, uint16_t{0});
  return glyphs;
}

std::vector<uint16_t> SystemFace::ReadAdvances() const {
  constexpr size_t kMetricCount = 34;  // offset in "hhea"
  constexpr size_t kMetricSize = 4;    // advance and left side bearing
  const SelectedFont font(own_);
  const std::vector<uint8_t> header = font.Table(TableTag("hhea"));
  const std::vector<uint8_t> metrics = font.Table(TableTag("hmtx"));
  if (header.size() < kHorizontalHeaderSize) return {};
  std::vector<uint16_t> advances(
      std::min<size_t>(ReadU16(header, kMetricCount), metrics.size() / kMetricSize));
  for (size_t i = 0; i < advances.size(); ++i) advances[i] = ReadU16(metrics, i * kMetricSize);
  return advances;
}

double SystemFace::Advance(char16_t unit) const {
  if (!advances_) advances_ = ReadAdvances();
  if (advances_->empty()) return 0;
  return (*advances_)[std::min<size_t>(GlyphOf(unit), advances_->size() - 1)] / facts_.unitsPerEm;
}

std::vector<GlyphContour> SystemFace::Outline(char16_t unit) const {
  const uint16_t glyph = GlyphOf(unit);
  const SelectedFont font(own_);
  return MakeContours(ReadGlyphData(font, glyph), 1 / facts_.unitsPerEm);
}

const SystemFace::Heights& SystemFace::Measured() const {
  if (!heights_) heights_ = Measure();
  return *heights_;
}

SystemFace::Heights SystemFace::Measure() const {
  constexpr size_t kAscender = 4;  // offsets in "hhea"
  constexpr size_t kDescender = 6;
  VerticalExtent letters;
  const auto measureLetters = [&](char16_t first, char16_t last) {
    for (char16_t unit = first; unit <= last; ++unit) {
      if (!HasCharacter(unit)) continue;
      const VerticalExtent extent = ExtentOf(Outline(unit));
      letters.highest = std::max(letters.highest, extent.highest);
      letters.lowest = std::min(letters.lowest, extent.lowest);
    }
  };
  measureLetters(u'A', u'Z');
  measureLetters(u'a', u'z');

  const SelectedFont font(own_);
  const std::vector<uint8_t> header = font.Table(TableTag("hhea"));
  if (header.size() >= kHorizontalHeaderSize) {
    if (letters.highest <= 0) letters.highest = ReadS16(header, kAscender) / facts_.unitsPerEm;
    if (letters.lowest >= 0) letters.lowest = ReadS16(header, kDescender) / facts_.unitsPerEm;
  }
  double capital = CapHeightOfTable();
  if (capital <= 0 && HasCharacter(u'H')) capital = ExtentOf(Outline(u'H')).highest;
  return {capital > 0 ? capital : kUsualCapHeight, letters.highest > 0 ? letters.highest : kUsualAscent,
          letters.lowest < 0 ? letters.lowest : kUsualDescent};
}

// Returns 0 if "OS/2" does not provide it: sCapHeight exists from version 2 on.
double SystemFace::CapHeightOfTable() const {
  constexpr size_t kCapHeight = 88;  // offset in "OS/2"
  const SelectedFont font(own_);
  const std::vector<uint8_t> os2 = font.Table(TableTag("OS/2"));
  if (os2.size() < kCapHeight + 2 || ReadU16(os2, 0) < 2 || ReadU16(os2, 0) == 0xFFFF) return 0;
  const int16_t height = ReadS16(os2, kCapHeight);
  return height > 0 && height < 2 * facts_.unitsPerEm ? height / facts_.unitsPerEm : 0;
}

}  // namespace hdi
