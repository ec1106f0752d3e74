#include "hdiplot/finish/pdfa_fonts.h"

#include <fmt/format.h>

#include <cmath>
#include <memory>
#include <optional>
#include <qpdf/Buffer.hh>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/finish/objects.h"
#include "hdiplot/finish/pdfa.h"
#include "hdiplot/finish/text.h"

namespace hdiplot {

namespace {

// Tables of an OpenType font program. Reading beyond the end throws NoPdfA.
class FontProgram {
 public:
  explicit FontProgram(const std::shared_ptr<Buffer>& data)
      : data_(data), bytes_(reinterpret_cast<const char*>(data->getBuffer()), data->getSize()) {}

  [[nodiscard]] bool HasCffOutlines() const { return bytes_.starts_with("OTTO"); }

  // In thousandths of the em, one for each glyph.
  [[nodiscard]] std::vector<double> Advances() const {
    const double unitsPerEm = Number(Table("head"), 18);
    const size_t glyphs = Number(Table("maxp"), 4);
    const size_t metrics = Number(Table("hhea"), 34);
    if (unitsPerEm == 0 || metrics == 0) throw NoPdfA("a font program has no metrics");
    const std::string_view table = Table("hmtx");
    std::vector<double> advances;
    for (size_t glyph = 0; glyph < glyphs; ++glyph) {
      advances.push_back(Number(table, 4 * std::min(glyph, metrics - 1)) * 1000 / unitsPerEm);
    }
    return advances;
  }

 private:
  [[nodiscard]] static uint16_t Number(std::string_view bytes, size_t position) {
    if (position + 2 > bytes.size()) throw NoPdfA("a font program is cut off");
    return static_cast<uint16_t>(static_cast<uint8_t>(bytes[position]) << 8 |
                                 static_cast<uint8_t>(bytes[position + 1]));
  }

  [[nodiscard]] size_t LongNumber(size_t position) const {
    return size_t{Number(bytes_, position)} << 16 | Number(bytes_, position + 2);
  }

  [[nodiscard]] std::string_view Table(std::string_view tag) const {
    constexpr size_t kHeader = 12;
    constexpr size_t kRecord = 16;
    const size_t count = Number(bytes_, 4);
    for (size_t record = kHeader; record < kHeader + count * kRecord; record += kRecord) {
      if (record + kRecord > bytes_.size()) break;
      if (bytes_.substr(record, tag.size()) != tag) continue;
      const size_t offset = LongNumber(record + 8);
      if (offset > bytes_.size()) break;
      return bytes_.substr(offset, LongNumber(record + 12));
    }
    throw NoPdfA(fmt::format("a font program has no table \"{}\"", tag));
  }

  std::shared_ptr<Buffer> data_;
  std::string_view bytes_;
};

// The widths of a CID font (ISO 32000-1:2008, 9.7.4.3), one for each glyph.
std::vector<double> DictionaryWidths(QPDFObjectHandle font, size_t glyphs) {
  QPDFObjectHandle standard = font.getKey("/DW");
  std::vector<double> widths(glyphs, standard.isNumber() ? standard.getNumericValue() : 1000);
  const auto set = [&widths](long long glyph, QPDFObjectHandle width) {
    const bool isThere = glyph >= 0 && static_cast<size_t>(glyph) < widths.size() && width.isNumber();
    if (isThere) widths[static_cast<size_t>(glyph)] = width.getNumericValue();
  };
  std::vector<QPDFObjectHandle> items = ItemsOf(font.getKey("/W"));
  for (size_t i = 0; i + 1 < items.size();) {
    if (!items[i].isInteger()) break;
    long long glyph = items[i].getIntValue();
    if (items[i + 1].isArray()) {
      for (const QPDFObjectHandle& width : items[i + 1].getArrayAsVector()) set(glyph++, width);
      i += 2;
    } else {
      if (i + 2 >= items.size() || !items[i + 1].isInteger()) break;
      const long long last = std::min<long long>(items[i + 1].getIntValue(), static_cast<long long>(glyphs));
      for (; glyph <= last; ++glyph) set(glyph, items[i + 2]);
      i += 3;
    }
  }
  return widths;
}

// 6.2.11.5: those of the program within one unit, other than of glyph 0, which is never shown. The others
// stay as they are, as text is placed by them.
void ConformWidths(QPDFObjectHandle font, const std::vector<double>& written,
                   const std::vector<double>& advances) {
  bool differs = false;
  QPDFObjectHandle widths = QPDFObjectHandle::newArray();
  for (size_t glyph = 0; glyph < advances.size(); ++glyph) {
    const bool isRight = glyph == 0 || std::abs(written[glyph] - advances[glyph]) <= 1;
    differs = differs || !isRight;
    widths.appendItem(QPDFObjectHandle::newReal(isRight ? written[glyph] : std::round(advances[glyph])));
  }
  if (!differs) return;
  QPDFObjectHandle array = QPDFObjectHandle::newArray();
  array.appendItem(QPDFObjectHandle::newInteger(0));
  array.appendItem(widths);
  font.replaceKey("/W", array);
}

// ISO 32000-1:2008, Table 126: a program with CFF outlines is no FontFile2, and its font of type 0. Of one
// that is not keyed by CID the codes stay glyph numbers (9.7.4.2).
void EmbedAsOpenType(QPDFObjectHandle font, QPDFObjectHandle descriptor) {
  QPDFObjectHandle program = descriptor.getKey("/FontFile2");
  if (program.isNull()) return;
  program.getDict().replaceKey("/Subtype", QPDFObjectHandle::newName("/OpenType"));
  program.getDict().removeKey("/Length1");
  descriptor.removeKey("/FontFile2");
  descriptor.replaceKey("/FontFile3", program);
  font.replaceKey("/Subtype", QPDFObjectHandle::newName("/CIDFontType0"));
  font.removeKey("/CIDToGIDMap");
}

// 6.1.8 and 6.1.13: UTF-8, and not too long.
void ConformName(QPDFObjectHandle dictionary, const std::string& key) {
  constexpr size_t kLongest = 127;
  QPDFObjectHandle name = dictionary.getKey(key);
  if (!name.isName()) throw NoPdfA("a font has no name");
  std::string text = CleanText(std::string_view(name.getName()).substr(1));
  if (text.size() > kLongest) {
    size_t end = kLongest;
    while ((static_cast<uint8_t>(text[end]) & 0xC0) == 0x80) --end;
    text.resize(end);
  }
  if ("/" + text != name.getName()) dictionary.replaceKey(key, QPDFObjectHandle::newName("/" + text));
}

QPDFObjectHandle CidFont(QPDFObjectHandle font) {
  QPDFObjectHandle encoding = font.getKey("/Encoding");
  QPDFObjectHandle descendants = font.getKey("/DescendantFonts");
  const bool isKnown = font.isDictionaryOfType("/Font", "/Type0") && encoding.isName() &&
                       encoding.getName() == "/Identity-H" && descendants.isArray() &&
                       descendants.getArrayNItems() == 1 && descendants.getArrayItem(0).isDictionary();
  if (!isKnown) throw NoPdfA("a font's codes are no glyph numbers");
  return descendants.getArrayItem(0);
}

FontFacts ConformFont(const QPDFObjectHandle& font) {
  QPDFObjectHandle cidFont = CidFont(font);
  QPDFObjectHandle descriptor = cidFont.getKey("/FontDescriptor");
  QPDFObjectHandle program = descriptor.getKeyIfDict("/FontFile2");
  if (program.isNull()) program = descriptor.getKeyIfDict("/FontFile3");
  if (!program.isStream()) {
    throw NoPdfA("the font " + CleanText(cidFont.getKey("/BaseFont").unparse()) + " is not embedded");
  }
  ConformName(font, "/BaseFont");
  ConformName(cidFont, "/BaseFont");
  ConformName(descriptor, "/FontName");
  const FontProgram tables(program.getStreamData(qpdf_dl_generalized));
  if (tables.HasCffOutlines()) {
    EmbedAsOpenType(cidFont, descriptor);
  } else {
    cidFont.replaceKey("/CIDToGIDMap", QPDFObjectHandle::newName("/Identity"));  // 6.2.11.3.2
  }
  const std::vector<double> advances = tables.Advances();
  const std::vector<double> written = DictionaryWidths(cidFont, advances.size());
  ConformWidths(cidFont, written, advances);
  return {.glyphCount = static_cast<uint32_t>(advances.size()),
          .missingGlyphWidth = written.empty() ? 0 : written.front()};
}

}  // namespace

FontsByName PdfAFonts::Conform(const QPDFObjectHandle& resources) {
  FontsByName facts;
  for (auto& [name, font] : EntriesOf(resources)) {
    const auto known = known_.find(font.getObjGen());
    const FontFacts found = known != known_.end() ? known->second : ConformFont(font);
    if (font.isIndirect()) known_.emplace(font.getObjGen(), found);
    facts.emplace(name.substr(1), found);
  }
  return facts;
}

}  // namespace hdiplot
