// The numeric fields of records that plot traces name: the driver's settings and the logical font.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace hdiplot {

// An integer of `size` bytes at `offset`; signed when `lowest` is negative.
struct RecordField {
  std::string_view name;
  size_t offset;
  size_t size;
  int64_t lowest;  // what the field may be set to, from here to `highest`
  int64_t highest;
};

// A field and its value, which must be in the field's range.
struct FieldSetting {
  const RecordField* field;
  int64_t value;
  bool operator==(const FieldSetting&) const = default;
};
using FieldSettings = std::vector<FieldSetting>;

[[nodiscard]] std::span<const RecordField> DevModeFields();  // of hdi::DriverDevMode
[[nodiscard]] std::span<const RecordField> LogFontFields();  // of hdi::LOGFONTW, without the name

// Null when no field of the record has this name.
[[nodiscard]] const RecordField* FindField(std::span<const RecordField> fields, std::string_view name);

[[nodiscard]] int64_t ReadField(const RecordField& field, const void* record);
void WriteField(const FieldSetting& setting, void* record);

// The setting of the settings record's field `name`, which must be one of DevModeFields().
[[nodiscard]] FieldSetting DevModeSetting(std::string_view name, int64_t value);

}  // namespace hdiplot
