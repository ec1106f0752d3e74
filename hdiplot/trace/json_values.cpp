// The rules for single JSON values.
#include "hdiplot/trace/json_values.h"

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <utility>

#include "hdiplot/trace/base64.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

int64_t ReadInteger(const Json& json, int64_t lowest, int64_t highest) {
  if (!json.is_number_integer()) throw ValueError("must be an integer");
  // What lies above the signed range is in any case above `highest`.
  const bool huge = json.is_number_unsigned() && json.get<uint64_t>() > std::numeric_limits<int64_t>::max();
  const int64_t value = huge ? std::numeric_limits<int64_t>::max() : json.get<int64_t>();
  if (huge || value < lowest || value > highest) {
    throw ValueError("must be from " + std::to_string(lowest) + " to " + std::to_string(highest));
  }
  return value;
}

template <typename T>
T ReadIntegerOf(const Json& json) {
  return static_cast<T>(ReadInteger(json, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
}

template <typename T, size_t count>
void ReadIntegers(const Json& json, std::array<T, count>& values) {
  if (!json.is_array() || json.size() != count) {
    throw ValueError("must be an array of " + std::to_string(count) + " integers");
  }
  for (size_t i = 0; i < count; ++i) {
    try {
      values[i] = ReadIntegerOf<T>(json[i]);
    } catch (const ValueError& error) {
      ThrowAt("[" + std::to_string(i) + "]", error);
    }
  }
}

FieldSetting ReadField(std::span<const RecordField> fields, const std::string& name, const Json& json) {
  const RecordField* field = FindField(fields, name);
  if (field == nullptr) throw ValueError("unknown field \"" + name + "\"");
  try {
    const ValueRange range = Range(*field);
    return {field, ReadInteger(json, range.lowest, range.highest)};
  } catch (const ValueError& error) {
    ThrowAt(name, error);
  }
}

// Remembers the keys of the objects that are open while a line is parsed.
class DuplicateKeys {
 public:
  void Look(Json::parse_event_t event, const Json& parsed) {
    if (event == Json::parse_event_t::object_start) {
      open_.emplace_back();
    } else if (event == Json::parse_event_t::object_end) {
      open_.pop_back();
    } else if (event == Json::parse_event_t::key) {
      const auto& key = parsed.get_ref<const std::string&>();
      if (!open_.back().insert(key).second) throw ValueError("key \"" + key + "\" is there twice");
    }
  }

 private:
  std::vector<std::unordered_set<std::string>> open_;
};

// The library's text without its own label and the line, which is always the first.
std::string ParseMessage(std::string text) {
  const auto dropThrough = [&text](std::string_view mark) {
    const size_t at = text.find(mark);
    if (at != std::string::npos) text.erase(0, at + mark.size());
  };
  dropThrough("] ");
  dropThrough("parse error at line 1, ");
  return "invalid JSON: " + text;
}

}  // namespace

Json ParseJson(std::string_view text) {
  DuplicateKeys duplicates;
  const auto look = [&duplicates](int, Json::parse_event_t event, Json& parsed) {
    duplicates.Look(event, parsed);
    return true;
  };
  try {
    return Json::parse(text, look);
  } catch (const Json::exception& error) {
    throw ValueError(ParseMessage(error.what()));
  }
}

void ThrowAt(const std::string& place, const ValueError& error) {
  const std::string_view rest = error.what();
  throw ValueError(place + (rest.starts_with('[') ? "" : ": ") + std::string(rest));
}

void RequireArray(const Json& json) {
  if (!json.is_array()) throw ValueError("must be an array");
}

void ReadValue(const Json& json, bool& value) {
  if (!json.is_boolean()) throw ValueError("must be true or false");
  value = json.get<bool>();
}

void ReadValue(const Json& json, int32_t& value) { value = ReadIntegerOf<int32_t>(json); }

void ReadValue(const Json& json, uint32_t& value) { value = ReadIntegerOf<uint32_t>(json); }

void ReadValue(const Json& json, uint64_t& value) {
  if (!json.is_number_unsigned()) throw ValueError("must be an integer that is not negative");
  value = json.get<uint64_t>();
}

void ReadValue(const Json& json, double& value) {
  if (!json.is_number()) throw ValueError("must be a number");
  value = json.get<double>();
}

void ReadValue(const Json& json, std::u16string& value) {
  if (!json.is_string()) throw ValueError("must be a string");
  value = hdi::ToUtf16(json.get_ref<const std::string&>());
}

void ReadValue(const Json& json, Rgb& value) {
  std::array<uint8_t, 3> bytes{};
  ReadIntegers(json, bytes);
  value = {bytes[0], bytes[1], bytes[2]};
}

void ReadValue(const Json& json, hdi::HT_Double_Point& value) {
  if (!json.is_array() || json.size() != 2 || !json[0].is_number() || !json[1].is_number()) {
    throw ValueError("must be an array of two numbers");
  }
  value = {json[0].get<double>(), json[1].get<double>()};
}

void ReadValue(const Json& json, hdi::LOGFONTW& value) {
  if (!json.is_object()) throw ValueError("must be an object");
  value = {};
  for (const auto& [name, field] : json.items()) {
    if (name != "lfFaceName") {
      WriteField(ReadField(LogFontFields(), name, field), &value);
      continue;
    }
    std::u16string face;
    try {
      ReadValue(field, face);
    } catch (const ValueError& error) {
      ThrowAt(name, error);
    }
    if (face.size() >= std::size(value.lfFaceName)) throw ValueError("lfFaceName: has more than 31 units");
    if (face.find(u'\0') != std::u16string::npos) throw ValueError("lfFaceName: holds a zero character");
    std::ranges::copy(face, value.lfFaceName);
  }
}

void ReadValue(const Json& json, FieldSettings& value) {
  if (!json.is_object()) throw ValueError("must be an object");
  value.clear();
  for (const auto& [name, field] : json.items()) value.push_back(ReadField(DevModeFields(), name, field));
}

void ReadValue(const Json& json, std::array<int32_t, 4>& value) { ReadIntegers(json, value); }

void ReadValue(const Json& json, std::array<uint8_t, 4>& value) { ReadIntegers(json, value); }

void ReadValue(const Json& json, std::vector<uint8_t>& value) {
  std::optional<std::vector<uint8_t>> bytes;
  if (json.is_string()) bytes = DecodeBase64(json.get_ref<const std::string&>());
  if (!bytes) throw ValueError("must be a base64 string");
  value = std::move(*bytes);
}

ObjectReader::ObjectReader(const Json& object, std::string_view context) : object_(object) {
  if (!context.empty()) known_.push_back(context);
}

const Json* ObjectReader::Take(std::string_view name) {
  known_.push_back(name);
  const auto found = object_.find(name);
  return found == object_.end() ? nullptr : &*found;
}

void ObjectReader::Finish() const {
  for (const auto& [key, value] : object_.items()) {
    if (std::ranges::find(known_, key) == known_.end()) throw ValueError("unknown key \"" + key + "\"");
  }
  if (!missing_.empty()) throw ValueError("key \"" + std::string(missing_) + "\" is missing");
}

}  // namespace hdiplot
