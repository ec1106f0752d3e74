#include "hdiplot/device/record_fields.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cstring>
#include <limits>

#include "platform/border.h"

namespace hdiplot {

namespace {

using hdi::DEVMODEW;
using hdi::DriverDevMode;
using hdi::LOGFONTW;

template <typename T>
constexpr RecordField MakeField(std::string_view name, size_t offset) {
  return {name, offset, sizeof(T), std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
}

#define HDIPLOT_FIELD(record, member) MakeField<decltype(record::member)>(#member, offsetof(record, member))
// DEVMODEW stands at the head of the settings record, so its offsets hold in both.
#define PUBLIC(member) HDIPLOT_FIELD(DEVMODEW, member)
#define PRIVATE(member) HDIPLOT_FIELD(DriverDevMode, member)
#define FONT(member) HDIPLOT_FIELD(LOGFONTW, member)

constexpr std::array kDevModeFields = {
    PUBLIC(dmSpecVersion), PUBLIC(dmDriverVersion),
    // The driver copies as many bytes of a record as these two say.
    RecordField{"dmSize", offsetof(DEVMODEW, dmSize), sizeof(DEVMODEW::dmSize), 0, sizeof(DEVMODEW)},
    RecordField{"dmDriverExtra", offsetof(DEVMODEW, dmDriverExtra), sizeof(DEVMODEW::dmDriverExtra), 0,
                sizeof(DriverDevMode) - sizeof(DEVMODEW)},
    PUBLIC(dmFields), PUBLIC(dmOrientation), PUBLIC(dmPaperSize), PUBLIC(dmPaperLength), PUBLIC(dmPaperWidth),
    PUBLIC(dmScale), PUBLIC(dmCopies), PUBLIC(dmDefaultSource), PUBLIC(dmPrintQuality), PUBLIC(dmColor),
    PUBLIC(dmDuplex), PUBLIC(dmYResolution), PUBLIC(dmTTOption), PUBLIC(dmCollate), PUBLIC(dmLogPixels),
    PUBLIC(dmBitsPerPel), PUBLIC(dmPelsWidth), PUBLIC(dmPelsHeight), PUBLIC(dmDisplayFlags),
    PUBLIC(dmDisplayFrequency), PUBLIC(dmICMMethod), PUBLIC(dmICMIntent), PUBLIC(dmMediaType),
    PUBLIC(dmDitherType), PUBLIC(dmReserved1), PUBLIC(dmReserved2), PUBLIC(dmPanningWidth),
    PUBLIC(dmPanningHeight), PRIVATE(privateTag), PRIVATE(paperId), PRIVATE(paperWidth), PRIVATE(paperHeight),
    PRIVATE(marginLeft), PRIVATE(marginTop), PRIVATE(marginRight), PRIVATE(marginBottom),
    PRIVATE(backgroundColor), PRIVATE(privateCount), PRIVATE(layersEnabled), PRIVATE(linksEnabled),
    PRIVATE(textAsGeometry), PRIVATE(openAfterPlot), PRIVATE(keepFractions)};

constexpr std::array kLogFontFields = {FONT(lfHeight),        FONT(lfWidth),         FONT(lfEscapement),
                                       FONT(lfOrientation),   FONT(lfWeight),        FONT(lfItalic),
                                       FONT(lfUnderline),     FONT(lfStrikeOut),     FONT(lfCharSet),
                                       FONT(lfOutPrecision),  FONT(lfClipPrecision), FONT(lfQuality),
                                       FONT(lfPitchAndFamily)};

#undef PUBLIC
#undef PRIVATE
#undef FONT
#undef HDIPLOT_FIELD

// Fields are copied from and to the low bytes of an int64_t.
static_assert(std::endian::native == std::endian::little);

}  // namespace

std::span<const RecordField> DevModeFields() { return kDevModeFields; }

std::span<const RecordField> LogFontFields() { return kLogFontFields; }

const RecordField* FindField(std::span<const RecordField> fields, std::string_view name) {
  const auto found = std::ranges::find(fields, name, &RecordField::name);
  return found == fields.end() ? nullptr : &*found;
}

int64_t ReadField(const RecordField& field, const void* record) {
  int64_t value = 0;
  std::memcpy(&value, static_cast<const uint8_t*>(record) + field.offset, field.size);
  if (field.lowest < 0 && value > field.highest) value += 2 * field.lowest;  // a negative number
  return value;
}

void WriteField(const FieldSetting& setting, void* record) {
  std::memcpy(static_cast<uint8_t*>(record) + setting.field->offset, &setting.value, setting.field->size);
}

FieldSetting DevModeSetting(std::string_view name, int64_t value) {
  const RecordField* field = FindField(kDevModeFields, name);
  assert(field != nullptr);
  return {field, value};
}

}  // namespace hdiplot
