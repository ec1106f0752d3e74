#include "hdiplot/trace/json_reader.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "hdiplot/trace/base64.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

// Remembers the keys of the objects that are open while a line is parsed.
class DuplicateKeys {
 public:
  void Check(Json::parse_event_t event, const Json& parsed) {
    if (event == Json::parse_event_t::object_start) {
      open_.emplace_back();
    } else if (event == Json::parse_event_t::object_end) {
      open_.pop_back();
    } else if (event == Json::parse_event_t::key) {
      const auto& key = parsed.get_ref<const std::string&>();
      if (!open_.back().insert(key).second) throw ValueError("key \"" + key + "\" is given twice");
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

std::u16string ReadString(const Json& json) {
  if (!json.is_string()) throw ValueError("must be a string");
  return hdi::ToUtf16(json.get_ref<const std::string&>());
}

}  // namespace

Json ParseJson(std::string_view text) {
  DuplicateKeys duplicates;
  const auto check = [&duplicates](int, Json::parse_event_t event, Json& parsed) {
    duplicates.Check(event, parsed);
    return true;
  };
  try {
    return Json::parse(text, check);
  } catch (const Json::exception& error) {
    throw ValueError(ParseMessage(error.what()));
  }
}

void ThrowAt(std::string_view place, const ValueError& error) {
  const std::string_view rest = error.what();
  throw ValueError(std::string(place) + (rest.starts_with('[') ? "" : ": ") + std::string(rest));
}

void ThrowAt(size_t place, const ValueError& error) { ThrowAt("[" + std::to_string(place) + "]", error); }

int64_t ValueReader::ReadInteger(const Json& json, int64_t lowest, int64_t highest) {
  if (!json.is_number_integer()) throw ValueError("must be an integer");
  // What is above the signed range is above `highest`, too.
  const bool huge = json.is_number_unsigned() && json.get<uint64_t>() > std::numeric_limits<int64_t>::max();
  const int64_t value = huge ? 0 : json.get<int64_t>();
  if (huge || value < lowest || value > highest) {
    throw ValueError("must be from " + std::to_string(lowest) + " to " + std::to_string(highest));
  }
  return value;
}

FieldSetting ValueReader::ReadField(std::span<const RecordField> fields, const std::string& name,
                                    const Json& json) {
  const RecordField* field = FindField(fields, name);
  if (field == nullptr) throw ValueError("unknown field \"" + name + "\"");
  return At(name, [&] { return FieldSetting{field, ReadInteger(json, field->lowest, field->highest)}; });
}

void ValueReader::Read(const Json& json, bool& value) {
  if (!json.is_boolean()) throw ValueError("must be true or false");
  value = json.get<bool>();
}

void ValueReader::Read(const Json& json, double& value) {
  if (!json.is_number()) throw ValueError("must be a number");
  value = json.get<double>();
}

void ValueReader::Read(const Json& json, uint64_t& value) {
  if (!json.is_number_unsigned()) throw ValueError("must be an integer that is not negative");
  value = json.get<uint64_t>();
}

void ValueReader::Read(const Json& json, std::u16string& value) {
  value = ReadString(json);
  if (value.find(u'\0') != std::u16string::npos) throw ValueError("contains a zero character");
}

void ValueReader::Read(const Json& json, std::u16string_view& value) {
  value = storage_.Make<std::u16string>(ReadString(json));
}

void ValueReader::Read(const Json& json, Rgb& value) {
  std::array<uint8_t, 3> bytes{};
  Read(json, bytes);
  value = {bytes[0], bytes[1], bytes[2]};
}

void ValueReader::Read(const Json& json, hdi::HT_Double_Point& value) {
  if (!json.is_array() || json.size() != 2 || !json[0].is_number() || !json[1].is_number()) {
    throw ValueError("must be an array of two numbers");
  }
  value = {json[0].get<double>(), json[1].get<double>()};
}

void ValueReader::Read(const Json& json, hdi::LOGFONTW& value) {
  if (!json.is_object()) throw ValueError("must be an object");
  value = {};
  for (const auto& [name, field] : json.items()) {
    if (name != "lfFaceName") {
      WriteField(ReadField(LogFontFields(), name, field), &value);
      continue;
    }
    At(name, [&, &json = field] {
      std::u16string face;
      Read(json, face);
      if (face.size() >= std::size(value.lfFaceName)) throw ValueError("has more than 31 units");
      std::ranges::copy(face, value.lfFaceName);
    });
  }
}

void ValueReader::Read(const Json& json, FieldSettings& value) {
  if (!json.is_object()) throw ValueError("must be an object");
  value.clear();
  for (const auto& [name, field] : json.items()) value.push_back(ReadField(DevModeFields(), name, field));
}

void ValueReader::Read(const Json& json, Points& value) {
  auto& points = storage_.Make<std::vector<hdi::HT_Double_Point>>();
  Read(json, points);
  value = points;
}

void ValueReader::Read(const Json& json, Polygons& value) {
  auto& polygons = storage_.Make<std::vector<std::vector<hdi::HT_Double_Point>>>();
  Read(json, polygons);
  value = polygons;
}

void ValueReader::Read(const Json& json, const std::vector<double>*& value) {
  value = nullptr;
  if (json.is_null()) return;
  auto& numbers = storage_.Make<std::vector<double>>();
  Read(json, numbers);
  value = &numbers;
}

void ValueReader::Read(const Json& json, std::vector<uint8_t>& value) {
  std::optional<std::vector<uint8_t>> bytes;
  if (json.is_string()) bytes = DecodeBase64(json.get_ref<const std::string&>());
  if (!bytes) throw ValueError("must be a base64 string");
  value = std::move(*bytes);
}

void ValueReader::Read(const Json& json, hdi::RasterImage*& value) {
  ImageData image;
  Read(json, image);
  value = &storage_.Make<Raster>(std::move(image));
}

KeyReader::KeyReader(const Json& object, std::string_view context, ValueReader& values)
    : object_(object), values_(values) {
  if (!context.empty()) known_.push_back(context);
}

const Json* KeyReader::Find(std::string_view name) {
  known_.push_back(name);
  const auto found = object_.find(name);
  return found == object_.end() ? nullptr : &*found;
}

void KeyReader::Finish() const {
  for (const auto& [key, value] : object_.items()) {
    if (std::ranges::find(known_, key) == known_.end()) throw ValueError("unknown key \"" + key + "\"");
  }
  if (!missing_.empty()) throw ValueError("key \"" + std::string(missing_) + "\" is missing");
}

}  // namespace hdiplot
