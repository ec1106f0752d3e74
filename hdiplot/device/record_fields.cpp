// The tables of record fields, and access to a field by its table row.
#include "hdiplot/device/record_fields.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <limits>
#include <type_traits>

namespace hdiplot {

namespace {

using hdi::DEVMODEW;
using hdi::DriverDevMode;
using hdi::LOGFONTW;

template <typename T>
constexpr FieldType TypeOf() {
  if constexpr (std::is_same_v<T, uint8_t>) {
    return FieldType::kU8;
  } else if constexpr (std::is_same_v<T, int16_t>) {
    return FieldType::kI16;
  } else if constexpr (std::is_same_v<T, uint16_t>) {
    return FieldType::kU16;
  } else if constexpr (std::is_same_v<T, int32_t>) {
    return FieldType::kI32;
  } else {
    static_assert(std::is_same_v<T, uint32_t>);
    return FieldType::kU32;
  }
}

#define HDIPLOT_FIELD(record, member) \
  RecordField { #member, offsetof(record, member), TypeOf < decltype(record::member)>() }

// DEVMODEW stands at the head of the settings record, so its offsets hold in both.
constexpr std::array kDevModeFields = {
    HDIPLOT_FIELD(DEVMODEW, dmSpecVersion),
    HDIPLOT_FIELD(DEVMODEW, dmDriverVersion),
    HDIPLOT_FIELD(DEVMODEW, dmSize),
    HDIPLOT_FIELD(DEVMODEW, dmDriverExtra),
    HDIPLOT_FIELD(DEVMODEW, dmFields),
    HDIPLOT_FIELD(DEVMODEW, dmOrientation),
    HDIPLOT_FIELD(DEVMODEW, dmPaperSize),
    HDIPLOT_FIELD(DEVMODEW, dmPaperLength),
    HDIPLOT_FIELD(DEVMODEW, dmPaperWidth),
    HDIPLOT_FIELD(DEVMODEW, dmScale),
    HDIPLOT_FIELD(DEVMODEW, dmCopies),
    HDIPLOT_FIELD(DEVMODEW, dmDefaultSource),
    HDIPLOT_FIELD(DEVMODEW, dmPrintQuality),
    HDIPLOT_FIELD(DEVMODEW, dmColor),
    HDIPLOT_FIELD(DEVMODEW, dmDuplex),
    HDIPLOT_FIELD(DEVMODEW, dmYResolution),
    HDIPLOT_FIELD(DEVMODEW, dmTTOption),
    HDIPLOT_FIELD(DEVMODEW, dmCollate),
    HDIPLOT_FIELD(DEVMODEW, dmLogPixels),
    HDIPLOT_FIELD(DEVMODEW, dmBitsPerPel),
    HDIPLOT_FIELD(DEVMODEW, dmPelsWidth),
    HDIPLOT_FIELD(DEVMODEW, dmPelsHeight),
    HDIPLOT_FIELD(DEVMODEW, dmDisplayFlags),
    HDIPLOT_FIELD(DEVMODEW, dmDisplayFrequency),
    HDIPLOT_FIELD(DEVMODEW, dmICMMethod),
    HDIPLOT_FIELD(DEVMODEW, dmICMIntent),
    HDIPLOT_FIELD(DEVMODEW, dmMediaType),
    HDIPLOT_FIELD(DEVMODEW, dmDitherType),
    HDIPLOT_FIELD(DEVMODEW, dmReserved1),
    HDIPLOT_FIELD(DEVMODEW, dmReserved2),
    HDIPLOT_FIELD(DEVMODEW, dmPanningWidth),
    HDIPLOT_FIELD(DEVMODEW, dmPanningHeight),
    HDIPLOT_FIELD(DriverDevMode, privateTag),
    HDIPLOT_FIELD(DriverDevMode, paperId),
    HDIPLOT_FIELD(DriverDevMode, paperWidth),
    HDIPLOT_FIELD(DriverDevMode, paperHeight),
    HDIPLOT_FIELD(DriverDevMode, marginLeft),
    HDIPLOT_FIELD(DriverDevMode, marginTop),
    HDIPLOT_FIELD(DriverDevMode, marginRight),
    HDIPLOT_FIELD(DriverDevMode, marginBottom),
    HDIPLOT_FIELD(DriverDevMode, backgroundColor),
    HDIPLOT_FIELD(DriverDevMode, privateCount),
    HDIPLOT_FIELD(DriverDevMode, layersEnabled),
    HDIPLOT_FIELD(DriverDevMode, linksEnabled),
    HDIPLOT_FIELD(DriverDevMode, textAsGeometry),
    HDIPLOT_FIELD(DriverDevMode, openAfterPlot),
    HDIPLOT_FIELD(DriverDevMode, keepFractions),
};

constexpr std::array kLogFontFields = {
    HDIPLOT_FIELD(LOGFONTW, lfHeight),         HDIPLOT_FIELD(LOGFONTW, lfWidth),
    HDIPLOT_FIELD(LOGFONTW, lfEscapement),     HDIPLOT_FIELD(LOGFONTW, lfOrientation),
    HDIPLOT_FIELD(LOGFONTW, lfWeight),         HDIPLOT_FIELD(LOGFONTW, lfItalic),
    HDIPLOT_FIELD(LOGFONTW, lfUnderline),      HDIPLOT_FIELD(LOGFONTW, lfStrikeOut),
    HDIPLOT_FIELD(LOGFONTW, lfCharSet),        HDIPLOT_FIELD(LOGFONTW, lfOutPrecision),
    HDIPLOT_FIELD(LOGFONTW, lfClipPrecision),  HDIPLOT_FIELD(LOGFONTW, lfQuality),
    HDIPLOT_FIELD(LOGFONTW, lfPitchAndFamily),
};

#undef HDIPLOT_FIELD

template <typename T>
constexpr ValueRange RangeOf() {
  return {std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
}

template <typename T>
int64_t Load(const uint8_t* at) {
  T value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

template <typename T>
void Store(int64_t number, uint8_t* at) {
  const T value = static_cast<T>(number);
  std::memcpy(at, &value, sizeof value);
}

}  // namespace

std::span<const RecordField> DevModeFields() { return kDevModeFields; }

std::span<const RecordField> LogFontFields() { return kLogFontFields; }

const RecordField* FindField(std::span<const RecordField> fields, std::string_view name) {
  const auto found = std::ranges::find(fields, name, &RecordField::name);
  return found == fields.end() ? nullptr : &*found;
}

ValueRange Range(const RecordField& field) {
  if (field.name == "dmSize") return {0, sizeof(DEVMODEW)};
  if (field.name == "dmDriverExtra") return {0, sizeof(DriverDevMode) - sizeof(DEVMODEW)};
  switch (field.type) {
    case FieldType::kU8:
      return RangeOf<uint8_t>();
    case FieldType::kI16:
      return RangeOf<int16_t>();
    case FieldType::kU16:
      return RangeOf<uint16_t>();
    case FieldType::kI32:
      return RangeOf<int32_t>();
    case FieldType::kU32:
      break;
  }
  return RangeOf<uint32_t>();
}

int64_t ReadField(const RecordField& field, const void* record) {
  const uint8_t* at = static_cast<const uint8_t*>(record) + field.offset;
  switch (field.type) {
    case FieldType::kU8:
      return Load<uint8_t>(at);
    case FieldType::kI16:
      return Load<int16_t>(at);
    case FieldType::kU16:
      return Load<uint16_t>(at);
    case FieldType::kI32:
      return Load<int32_t>(at);
    case FieldType::kU32:
      break;
  }
  return Load<uint32_t>(at);
}

void WriteField(const FieldSetting& setting, void* record) {
  uint8_t* at = static_cast<uint8_t*>(record) + setting.field->offset;
  switch (setting.field->type) {
    case FieldType::kU8:
      return Store<uint8_t>(setting.value, at);
    case FieldType::kI16:
      return Store<int16_t>(setting.value, at);
    case FieldType::kU16:
      return Store<uint16_t>(setting.value, at);
    case FieldType::kI32:
      return Store<int32_t>(setting.value, at);
    case FieldType::kU32:
      return Store<uint32_t>(setting.value, at);
  }
}

FieldSetting DevModeSetting(std::string_view name, int64_t value) {
  const RecordField* field = FindField(kDevModeFields, name);
  assert(field != nullptr);
  return {field, value};
}

}  // namespace hdiplot
