// From JSON to the values of a plot trace. Every error is a ValueError whose text begins with the path of the
// value, as in "points[3]: must be ...".
#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "hdiplot/device/raster.h"
#include "hdiplot/trace/trace.h"

namespace hdiplot {

using Json = nlohmann::json;

struct ValueError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Parses one line. An object that has a key twice is an error.
[[nodiscard]] Json ParseJson(std::string_view text);

// Runs `step`; `place`, a key or an array's index, goes before the text of an error.
[[noreturn]] void ThrowAt(std::string_view place, const ValueError& error);
[[noreturn]] void ThrowAt(size_t place, const ValueError& error);
template <typename Place, typename Step>
auto At(const Place& place, const Step& step) {
  try {
    return step();
  } catch (const ValueError& error) {
    ThrowAt(place, error);
  }
}

class KeyReader;

template <typename T>
concept Described = requires(T& value, KeyReader& keys) {
  T::Describe(value, keys);
};

// Reads values by their types. What they refer to is kept in the storage.
class ValueReader {
 public:
  explicit ValueReader(CallStorage& storage) : storage_(storage) {}

  void Read(const Json& json, bool& value);
  void Read(const Json& json, double& value);
  void Read(const Json& json, uint64_t& value);
  void Read(const Json& json, std::u16string& value);  // terminated: a zero character is an error
  void Read(const Json& json, std::u16string_view& value);
  void Read(const Json& json, Rgb& value);
  void Read(const Json& json, hdi::HT_Double_Point& value);
  void Read(const Json& json, hdi::LOGFONTW& value);
  void Read(const Json& json, FieldSettings& value);
  void Read(const Json& json, Points& value);
  void Read(const Json& json, Polygons& value);
  void Read(const Json& json, const std::vector<double>*& value);  // or null
  void Read(const Json& json, std::vector<uint8_t>& value);        // base64
  void Read(const Json& json, hdi::RasterImage*& value);

  template <std::integral T>
  void Read(const Json& json, T& value) {
    value = static_cast<T>(ReadInteger(json, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
  }

  template <typename T, size_t count>
  void Read(const Json& json, std::array<T, count>& value) {
    if (!json.is_array() || json.size() != count) {
      throw ValueError("must be an array of " + std::to_string(count) + " integers");
    }
    for (size_t i = 0; i < count; ++i) At(i, [&] { Read(json[i], value[i]); });
  }

  template <typename T>
  void Read(const Json& json, std::vector<T>& value) {
    if (!json.is_array()) throw ValueError("must be an array");
    value.resize(json.size());
    for (size_t i = 0; i < value.size(); ++i) At(i, [&] { Read(json[i], value[i]); });
  }

  template <typename T>
  void Read(const Json& json, std::optional<T>& value) {  // or null
    if (json.is_null()) {
      value.reset();
    } else {
      Read(json, value.emplace());
    }
  }

  template <Described T>
  void Read(const Json& json, T& value) {
    ReadObject(json, {}, value);
  }

  // `context` is a key of the object beside the described ones, or empty.
  template <Described T>
  void ReadObject(const Json& json, std::string_view context, T& value);

 private:
  [[nodiscard]] static int64_t ReadInteger(const Json& json, int64_t lowest, int64_t highest);
  [[nodiscard]] static FieldSetting ReadField(std::span<const RecordField> fields, const std::string& name,
                                              const Json& json);

  CallStorage& storage_;
};

// What Describe gets to read the keys of one object.
class KeyReader {
 public:
  KeyReader(const Json& object, std::string_view context, ValueReader& values);

  template <typename T>
  KeyReader& operator()(std::string_view name, T& value) {
    if (!ReadIfThere(name, value) && missing_.empty()) missing_ = name;
    return *this;
  }

  template <typename T>
  KeyReader& Optional(std::string_view name, T& value, const std::type_identity_t<T>& leftOut = {}) {
    if (!ReadIfThere(name, value)) value = leftOut;
    return *this;
  }

  template <typename T>
  KeyReader& IfGiven(std::string_view name, std::optional<T>& value) {
    if (!ReadIfThere(name, value.emplace())) value.reset();
    return *this;
  }

  // To be called after Describe. Throws for an unknown key and for a missing one.
  void Finish() const;

 private:
  template <typename T>
  bool ReadIfThere(std::string_view name, T& value) {
    const Json* json = Find(name);
    if (json != nullptr) At(name, [&] { values_.Read(*json, value); });
    return json != nullptr;
  }

  const Json* Find(std::string_view name);  // null when left out

  const Json& object_;
  ValueReader& values_;
  std::vector<std::string_view> known_;
  std::string_view missing_;
};

template <Described T>
void ValueReader::ReadObject(const Json& json, std::string_view context, T& value) {
  if (!json.is_object()) throw ValueError("must be an object");
  KeyReader keys(json, context, *this);
  T::Describe(value, keys);
  keys.Finish();
  if constexpr (requires { value.Problem(); }) {
    if (const std::string problem = value.Problem(); !problem.empty()) throw ValueError(problem);
  }
}

}  // namespace hdiplot
