// FontGlyphs by FreeType.
#include "platform/linux/font_glyphs.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_BBOX_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>

#include "platform/glyph_contours.h"
#include "platform/linux/font_file.h"

namespace hdi {
namespace {

constexpr size_t kUnits = 0x10000;
constexpr char16_t kFirstSurrogate = 0xD800;
constexpr char16_t kLastSurrogate = 0xDFFF;
constexpr char16_t kSymbolPage = 0xF000;
constexpr size_t kSymbolCount = 0x100;
constexpr FT_Int32 kAsDesigned = FT_LOAD_NO_SCALE | FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP;

// One library for all faces, released with the last of them.
std::shared_ptr<FT_LibraryRec_> SharedLibrary() {
  static std::weak_ptr<FT_LibraryRec_> shared;
  std::shared_ptr<FT_LibraryRec_> library = shared.lock();
  if (library == nullptr) {
    FT_Library made = nullptr;
    if (FT_Init_FreeType(&made) != 0) return nullptr;
    library.reset(made, FT_Done_FreeType);
    shared = library;
  }
  return library;
}

// FreeType would map the file, and a mapped file that shrinks ends the process.
unsigned long ReadStream(FT_Stream stream, unsigned long offset, unsigned char* buffer, unsigned long count) {
  const auto& file = *static_cast<const FontFile*>(stream->descriptor.pointer);
  if (count == 0) return offset > file.Size() ? 1 : 0;  // a seek: returns whether it failed
  return file.Read(offset, std::span(buffer, count)) ? count : 0;
}

// Builds contours from FreeType's outline decomposition, which closes each contour.
class ContourMaker {
 public:
  // Implied points may lie on half units; with this shift the decomposition yields half units as integers.
  static constexpr int kShift = 1;

  explicit ContourMaker(double unitsPerEm) : scale_(1 / unitsPerEm / (1 << kShift)) {}

  void MoveTo(const FT_Vector& to) { contours_.push_back({Point(to)}); }

  void LineTo(const FT_Vector& to) { AddLine(contours_.back(), Point(to)); }

  void QuadraticTo(const FT_Vector& control, const FT_Vector& to) {
    AddQuadratic(contours_.back(), Point(control), Point(to));
  }

  void CubicTo(const FT_Vector& control1, const FT_Vector& control2, const FT_Vector& to) {
    AddCubic(contours_.back(), Point(control1), Point(control2), Point(to));
  }

  std::vector<GlyphContour> Take() {
    RemoveAnchors(contours_);
    return std::move(contours_);
  }

 private:
  [[nodiscard]] GlyphPoint Point(const FT_Vector& at) const {
    return {static_cast<double>(at.x) * scale_, static_cast<double>(at.y) * scale_};
  }

  double scale_;
  std::vector<GlyphContour> contours_;
};

ContourMaker& Maker(void* user) { return *static_cast<ContourMaker*>(user); }

constexpr FT_Outline_Funcs kWalk = {
    [](const FT_Vector* to, void* user) { return Maker(user).MoveTo(*to), 0; },
    [](const FT_Vector* to, void* user) { return Maker(user).LineTo(*to), 0; },
    [](const FT_Vector* control, const FT_Vector* to, void* user) {
      return Maker(user).QuadraticTo(*control, *to), 0;
    },
    [](const FT_Vector* control1, const FT_Vector* control2, const FT_Vector* to, void* user) {
      return Maker(user).CubicTo(*control1, *control2, *to), 0;
    },
    ContourMaker::kShift,
    0};

}  // namespace

struct FontGlyphs::Face {
  explicit Face(const std::string& path) : library(SharedLibrary()), file(path) {}
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;
  ~Face() {
    if (face != nullptr) FT_Done_Face(face);
  }

  bool Open(uint32_t memberIndex) {
    stream.size = static_cast<unsigned long>(file.Size());
    stream.descriptor.pointer = &file;
    stream.read = ReadStream;
    FT_Open_Args arguments = {};
    arguments.flags = FT_OPEN_STREAM;
    arguments.stream = &stream;
    return library != nullptr && FT_Open_Face(library.get(), &arguments, memberIndex, &face) == 0 &&
           FT_IS_SCALABLE(face) && face->units_per_EM > 0;
  }

  [[nodiscard]] FT_Outline* Load(uint16_t glyph) const {
    if (FT_Load_Glyph(face, glyph, kAsDesigned) != 0) return nullptr;
    return face->glyph->format == FT_GLYPH_FORMAT_OUTLINE ? &face->glyph->outline : nullptr;
  }

  std::shared_ptr<FT_LibraryRec_> library;
  FontFile file;
  FT_StreamRec stream = {};
  FT_Face face = nullptr;
};

FontGlyphs::FontGlyphs(const std::string& path, uint32_t memberIndex)
    : face_(std::make_unique<Face>(path)),
      glyphs_(kUnits),
      capHeight_(kUsualCapHeight),
      ascent_(kUsualAscent),
      descent_(kUsualDescent) {
  if (!face_->Open(memberIndex)) {
    face_.reset();
    return;
  }
  unitsPerEm_ = face_->face->units_per_EM;
  ReadCharacterMaps();
  ReadAdvances();
  Measure();
}

FontGlyphs::~FontGlyphs() = default;

void FontGlyphs::ReadCharacterMaps() {
  const FT_Face face = face_->face;
  for (const FT_Encoding encoding : {FT_ENCODING_UNICODE, FT_ENCODING_MS_SYMBOL}) {
    if (FT_Select_Charmap(face, encoding) != 0) continue;
    FT_UInt glyph = 0;
    for (FT_ULong code = FT_Get_First_Char(face, &glyph); glyph != 0 && code < kUnits;
         code = FT_Get_Next_Char(face, code, &glyph)) {
      const bool isSurrogate = code >= kFirstSurrogate && code <= kLastSurrogate;
      if (glyphs_[code] == 0 && !isSurrogate) glyphs_[code] = static_cast<uint16_t>(glyph);
    }
    if (encoding != FT_ENCODING_MS_SYMBOL) continue;
    for (size_t unit = 0; unit < kSymbolCount; ++unit) {
      if (glyphs_[unit] == 0) glyphs_[unit] = glyphs_[kSymbolPage + unit];
    }
  }
}

void FontGlyphs::ReadAdvances() {
  constexpr size_t kMetricSize = 4;  // the advance and the left side bearing
  const FT_Face face = face_->face;
  const auto* header = static_cast<const TT_HoriHeader*>(FT_Get_Sfnt_Table(face, FT_SFNT_HHEA));
  FT_ULong size = 0;
  if (header == nullptr || FT_Load_Sfnt_Table(face, FontTag("hmtx"), 0, nullptr, &size) != 0) return;
  std::vector<uint8_t> metrics(std::min<size_t>(size, kMetricSize * header->number_Of_HMetrics));
  size = static_cast<FT_ULong>(metrics.size());
  if (size == 0 || FT_Load_Sfnt_Table(face, FontTag("hmtx"), 0, metrics.data(), &size) != 0) return;
  for (size_t i = 0; i + kMetricSize <= metrics.size(); i += kMetricSize)
    advances_.push_back(ReadU16(metrics, i));
}

void FontGlyphs::Measure() {
  double highest = 0;
  double lowest = 0;
  double capital = 0;
  const auto measureLetters = [&](char16_t first, char16_t last) {
    for (char16_t unit = first; unit <= last; ++unit) {
      FT_Outline* outline = GlyphOf(unit) == 0 ? nullptr : face_->Load(GlyphOf(unit));
      FT_BBox box = {};
      if (outline == nullptr || FT_Outline_Get_BBox(outline, &box) != 0) continue;
      highest = std::max(highest, static_cast<double>(box.yMax));
      lowest = std::min(lowest, static_cast<double>(box.yMin));
      if (unit == u'H') capital = static_cast<double>(box.yMax);
    }
  };
  measureLetters(u'A', u'Z');
  measureLetters(u'a', u'z');

  const FT_Face face = face_->face;
  if (highest <= 0) highest = face->ascender;
  if (lowest >= 0) lowest = face->descender;
  // sCapHeight exists from version 2 on.
  const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
  const bool hasCapHeight = os2 != nullptr && os2->version != 0xFFFF && os2->version >= 2 &&
                            os2->sCapHeight > 0 && os2->sCapHeight < 2 * face->units_per_EM;
  if (hasCapHeight) capital = os2->sCapHeight;
  if (capital > 0) capHeight_ = capital / unitsPerEm_;
  if (highest > 0) ascent_ = highest / unitsPerEm_;
  if (lowest < 0) descent_ = lowest / unitsPerEm_;
}

double FontGlyphs::Advance(uint16_t glyph) const {
  if (advances_.empty()) return 0;
  return advances_[std::min<size_t>(glyph, advances_.size() - 1)] / unitsPerEm_;
}

std::vector<GlyphContour> FontGlyphs::Outline(uint16_t glyph) const {
  FT_Outline* outline = face_ == nullptr ? nullptr : face_->Load(glyph);
  if (outline == nullptr) return {};
  ContourMaker maker(unitsPerEm_);
  if (FT_Outline_Decompose(outline, &kWalk, &maker) != 0) return {};
  return maker.Take();
}

}  // namespace hdi
