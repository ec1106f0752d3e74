// From JSON values to the values of a plot trace. Every function throws ValueError when the value does not
// fit; its text begins with the way to the value, as in "points[3]: must be ...".
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/trace/trace.h"

namespace hdiplot {

using Json = nlohmann::json;

struct ValueError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Parses one line; an object that has a key twice is an error, too.
[[nodiscard]] Json ParseJson(std::string_view text);

void ReadValue(const Json& json, bool& value);
void ReadValue(const Json& json, int32_t& value);
void ReadValue(const Json& json, uint32_t& value);
void ReadValue(const Json& json, uint64_t& value);
void ReadValue(const Json& json, double& value);
void ReadValue(const Json& json, std::u16string& value);
void ReadValue(const Json& json, Rgb& value);
void ReadValue(const Json& json, hdi::HT_Double_Point& value);
void ReadValue(const Json& json, hdi::LOGFONTW& value);
void ReadValue(const Json& json, FieldSettings& value);
void ReadValue(const Json& json, std::array<int32_t, 4>& value);
void ReadValue(const Json& json, std::array<uint8_t, 4>& value);
void ReadValue(const Json& json, std::vector<uint8_t>& value);  // base64

template <typename T>
void ReadValue(const Json& json, std::optional<T>& value);  // a value or null
template <typename T>
void ReadValue(const Json& json, std::vector<T>& value);

// Takes the keys of one JSON object, as a Describe function names them.
class ObjectReader {
 public:
  // `context` is a key that stands in the object beside the described ones, or empty.
  ObjectReader(const Json& object, std::string_view context);

  template <typename T>
  void Required(std::string_view name, T& value) {
    if (const Json* json = Take(name)) {
      Read(name, *json, value);
    } else if (missing_.empty()) {
      missing_ = name;
    }
  }

  template <typename T>
  void Optional(std::string_view name, T& value, const T& valueWhenLeftOut) {
    if (const Json* json = Take(name)) {
      Read(name, *json, value);
    } else {
      value = valueWhenLeftOut;
    }
  }

  // A key that may be left out but not be null.
  template <typename T>
  void Optional(std::string_view name, std::optional<T>& value) {
    if (const Json* json = Take(name)) Read(name, *json, value.emplace());
  }

  // To be called behind the description: throws for a key that it did not name, and for one that is missing.
  void Finish() const;

 private:
  template <typename T>
  static void Read(std::string_view name, const Json& json, T& value);

  const Json* Take(std::string_view name);

  const Json& object_;
  std::vector<std::string_view> known_;
  std::string_view missing_;
};

[[noreturn]] void ThrowAt(const std::string& place, const ValueError& error);
void RequireArray(const Json& json);

template <typename T>
concept Described = requires(T& value, ObjectReader& reader) {
  T::Describe(value, reader);
};

template <Described T>
void ReadValue(const Json& json, T& value) {
  if (!json.is_object()) throw ValueError("must be an object");
  ObjectReader reader(json, {});
  T::Describe(value, reader);
  reader.Finish();
}

template <typename T>
void ReadValue(const Json& json, std::optional<T>& value) {
  if (json.is_null()) {
    value.reset();
  } else {
    ReadValue(json, value.emplace());
  }
}

template <typename T>
void ReadValue(const Json& json, std::vector<T>& value) {
  RequireArray(json);
  value.resize(json.size());
  for (size_t i = 0; i < value.size(); ++i) {
    try {
      ReadValue(json[i], value[i]);
    } catch (const ValueError& error) {
      ThrowAt("[" + std::to_string(i) + "]", error);
    }
  }
}

template <typename T>
void ObjectReader::Read(std::string_view name, const Json& json, T& value) {
  try {
    ReadValue(json, value);
  } catch (const ValueError& error) {
    ThrowAt(std::string(name), error);
  }
}

}  // namespace hdiplot
