// Loads fonts, corrects their widths and maps units to character codes.
#include "engine/font.h"

#include <algorithm>
#include <array>
#include <limits>
#include <set>
#include <utility>

#include "core/fpdfapi/font/cpdf_font.h"
#include "core/fpdfapi/parser/cpdf_array.h"
#include "core/fpdfapi/parser/cpdf_dictionary.h"
#include "core/fpdfapi/parser/cpdf_number.h"
#include "core/fpdfapi/parser/cpdf_stream.h"
#include "core/fpdfapi/parser/cpdf_stream_acc.h"
#include "core/fxcrt/utf16.h"
#include "core/fxge/cfx_face.h"
#include "core/fxge/cfx_fontmgr.h"
#include "core/fxge/cfx_gemodule.h"
#include "engine/document_implementation.h"
#include "engine/new_objects.h"
#include "engine/unit_codes.h"
#include "fpdfsdk/cpdfsdk_helpers.h"
#include "public/fpdf_edit.h"

namespace hdi::engine {
namespace {

// Character codes have two bytes and are glyph numbers.
constexpr int kMaximumGlyphs = 0x10000;

constexpr uint32_t Tag(const char (&letters)[5]) {
  uint32_t tag = 0;
  for (size_t i = 0; i < 4; ++i) tag = tag << 8 | static_cast<uint8_t>(letters[i]);
  return tag;
}

// Big-endian. Bytes beyond the end read as ones, which are not a valid count or offset in a complete file.
uint32_t Read(std::span<const uint8_t> bytes, size_t position, size_t count) {
  uint32_t value = 0;
  for (size_t i = position; i < position + count; ++i)
    value = value << 8 | (i < bytes.size() ? bytes[i] : 0xFF);
  return value;
}

// Tables of an embedded font program (ISO 32000-1:2008, 9.9), and the character map.
constexpr std::array kNeededTables = {Tag("CFF "), Tag("CFF2"), Tag("cmap"), Tag("cvt "),
                                      Tag("fpgm"), Tag("glyf"), Tag("head"), Tag("hhea"),
                                      Tag("hmtx"), Tag("loca"), Tag("maxp"), Tag("prep")};

// Whether the table directory of the file, or of a collection's first font, and the tables above lie within
// the file.
bool IsWhole(std::span<const uint8_t> bytes) {
  const size_t font = Read(bytes, 0, 4) == Tag("ttcf") ? Read(bytes, 12, 4) : 0;
  const size_t tables = Read(bytes, font + 4, 2);
  for (size_t i = 0; i < tables; ++i) {
    const size_t record = font + 12 + 16 * i;
    if (record + 16 > bytes.size()) return false;
    const size_t end = size_t{Read(bytes, record + 8, 4)} + Read(bytes, record + 12, 4);
    if (end > bytes.size() && std::ranges::count(kNeededTables, Read(bytes, record, 4)) > 0) return false;
  }
  return true;
}

bool Has(CFX_Face& face, uint32_t table) { return face.GetSfntTable(table, {}) != 0; }

bool HasOutlines(CFX_Face& face) {
  return Has(face, Tag("glyf")) || Has(face, Tag("CFF ")) || Has(face, Tag("CFF2"));
}

// Opens a face that the engine can embed; null otherwise. The engine aborts on a file of 2 GiB or a glyph
// number of more than two bytes, and accepts truncated files, bitmap fonts and fonts without a character map,
// none of which should be embedded.
RetainPtr<CFX_Face> OpenFace(std::span<const uint8_t> bytes) {
  if (bytes.empty() || bytes.size() > size_t{std::numeric_limits<int32_t>::max()}) return nullptr;
  if (!IsWhole(bytes)) return nullptr;
  RetainPtr<CFX_Face> face =
      CFX_Face::New(CFX_GEModule::Get()->GetFontMgr()->GetFTLibrary(), nullptr, bytes, 0);
  const bool isUsable = face != nullptr && face->IsTtOt() && HasOutlines(*face) && Has(*face, Tag("cmap")) &&
                        face->GetCurrentCharMap() != nullptr && face->GetGlyphCount() <= kMaximumGlyphs;
  return isUsable ? face : nullptr;
}

// The engine's widths array (ISO 32000-1:2008, 9.7.4.3) is only right if the glyph numbers have no gap:
// otherwise it may assign the width after a gap to the glyph before it. Such an array is rebuilt.
void CorrectWidths(CPDF_Font& font, CFX_Face& face) {
  std::set<uint32_t> glyphs;
  for (const auto& item : face.GetCharCodesAndIndices(pdfium::kMaximumSupplementaryCodePoint)) {
    glyphs.insert(item.glyph_index);
  }
  if (glyphs.empty() || *glyphs.rbegin() - *glyphs.begin() + 1 == glyphs.size()) return;
  const auto descendants = font.GetMutableFontDict()->GetMutableArrayFor("DescendantFonts");
  const auto array = descendants->GetMutableDictAt(0)->GetMutableArrayFor("W");
  array->Clear();
  uint32_t next = 0;
  RetainPtr<CPDF_Array> stretch;
  for (const uint32_t glyph : glyphs) {
    if (stretch == nullptr || glyph != next) {
      array->AppendNew<CPDF_Number>(static_cast<int>(glyph));
      stretch = array->AppendNew<CPDF_Array>();
    }
    stretch->AppendNew<CPDF_Number>(face.GetGlyphWidth(glyph, 0, 0, nullptr));
    next = glyph + 1;
  }
}

std::vector<uint16_t> FontCodes(const CPDF_Font& font) {
  const RetainPtr<const CPDF_Stream> toUnicode = font.GetFontDict()->GetStreamFor("ToUnicode");
  if (toUnicode == nullptr) return CodesByUnit({});
  const auto reader = pdfium::MakeRetain<CPDF_StreamAcc>(toUnicode);
  reader->LoadAllDataFiltered();
  return CodesByUnit({reader->GetSpan().data(), reader->GetSpan().size()});
}

}  // namespace

struct Font::Implementation {
  ScopedFPDFFont handle;
  uint32_t objectNumber = 0;
  std::vector<uint16_t> codesByUnit;
};

Font::Font(std::unique_ptr<Implementation> implementation) : implementation_(std::move(implementation)) {}

Font::~Font() = default;

std::unique_ptr<Font> Font::Load(Document& document, std::span<const uint8_t> bytes) {
  const RetainPtr<CFX_Face> face = OpenFace(bytes);
  if (face == nullptr) return nullptr;
  NewObjects objects(*document.Internals().document);
  ScopedFPDFFont handle(FPDFText_LoadFont(document.Internals().handle.get(), bytes.data(),
                                          static_cast<uint32_t>(bytes.size()), FPDF_FONT_TRUETYPE, 1));
  if (handle == nullptr) return nullptr;
  CPDF_Font& font = *CPDFFontFromFPDFFont(handle.get());
  CorrectWidths(font, *face);
  auto implementation = std::make_unique<Implementation>();
  implementation->objectNumber = font.GetFontDictObjNum();
  implementation->codesByUnit = FontCodes(font);
  implementation->handle = std::move(handle);
  std::unique_ptr<Font> result(new Font(std::move(implementation)));
  objects.Keep();
  return result;
}

uint32_t Font::ObjectNumber() const { return implementation_->objectNumber; }

void Font::AppendCodes(std::u16string_view units, std::vector<uint16_t>& codes) const {
  codes.reserve(codes.size() + units.size());
  for (const char16_t unit : units) codes.push_back(implementation_->codesByUnit[unit]);
}

}  // namespace hdi::engine
