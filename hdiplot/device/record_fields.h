// The numeric fields of the records that a plot trace names: the driver's settings and the logical font.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/border.h"

namespace hdiplot {

enum class FieldType : uint8_t { kU8, kI16, kU16, kI32, kU32 };

struct RecordField {
  std::string_view name;
  size_t offset;
  FieldType type;
};

struct ValueRange {
  int64_t lowest;
  int64_t highest;
};

// A field and the value that it is to take, which lies within Range(*field).
struct FieldSetting {
  const RecordField* field;
  int64_t value;
  bool operator==(const FieldSetting&) const = default;
};

[[nodiscard]] std::span<const RecordField> DevModeFields();
[[nodiscard]] std::span<const RecordField> LogFontFields();

// Null when no field of the record has this name.
[[nodiscard]] const RecordField* FindField(std::span<const RecordField> fields, std::string_view name);

// What a field may be set to: the range of its type. The two sizes of a settings record end at those of the
// whole record, as the driver copies as many bytes as they say.
[[nodiscard]] ValueRange Range(const RecordField& field);

[[nodiscard]] int64_t ReadField(const RecordField& field, const void* record);
void WriteField(const FieldSetting& setting, void* record);

// The setting of the settings record's field `name`, which must be one of DevModeFields().
[[nodiscard]] FieldSetting DevModeSetting(std::string_view name, int64_t value);

}  // namespace hdiplot
