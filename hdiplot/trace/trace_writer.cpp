#include "hdiplot/trace/trace_writer.h"

#include <fmt/format.h>

#include <cmath>
#include <concepts>
#include <iterator>
#include <nlohmann/json.hpp>
#include <span>
#include <type_traits>
#include <vector>

#include "hdiplot/device/raster.h"
#include "hdiplot/trace/base64.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

struct NotFinite {};

// What Describe gets to write the keys of one line. Numbers, arrays and objects are formatted here: through
// nlohmann::json it takes five times as long, and 1 becomes 1.0.
class JsonLine {
 public:
  explicit JsonLine(std::string& line) : line_(line) {}

  template <typename T>
  JsonLine& operator()(std::string_view name, const T& value) {
    Separate();
    fmt::format_to(std::back_inserter(line_), "\"{}\": ", name);
    needsComma_ = false;
    Write(value);
    return *this;
  }

  template <typename T>
  JsonLine& Optional(std::string_view name, const T& value, const std::type_identity_t<T>& leftOut = {}) {
    return value == leftOut ? *this : (*this)(name, value);
  }

  // Not by the vector's own comparison: GCC 14 warns that its memcmp gets an empty vector's null pointer.
  template <typename T>
  JsonLine& Optional(std::string_view name, const std::vector<T>& value) {
    return value.empty() ? *this : (*this)(name, value);
  }

  template <typename T>
  JsonLine& IfGiven(std::string_view name, const std::optional<T>& value) {
    return value ? (*this)(name, *value) : *this;
  }

  // An object of the keys that `describe` writes.
  template <typename Describe>
  void Object(const Describe& describe) {
    Open('{');
    describe();
    Close('}');
  }

 private:
  void Write(bool value) { Append(value ? "true" : "false"); }
  template <std::integral T>
  void Write(T value) {
    fmt::format_to(std::back_inserter(line_), "{}", value);
    needsComma_ = true;
  }

  // The shortest text that reads back as the same f64. Without a decimal point a negative zero would read
  // back as the integer 0.
  void Write(double value) {
    if (!std::isfinite(value)) throw NotFinite();
    if (value == 0 && std::signbit(value)) {
      line_ += "-0.0";
    } else {
      fmt::format_to(std::back_inserter(line_), "{}", value);
    }
    needsComma_ = true;
  }

  void Write(std::string_view text) {
    Append(nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
  }
  void Write(std::u16string_view text) { Write(std::string_view(hdi::ToUtf8(text))); }
  void Write(const std::u16string& text) { Write(std::u16string_view(text)); }
  void Write(const Rgb& color) { Write(std::array{color.red, color.green, color.blue}); }
  void Write(const hdi::HT_Double_Point& point) { Write(std::array{point.x, point.y}); }
  void Write(const std::vector<uint8_t>& bytes) { Write(std::string_view(EncodeBase64(bytes))); }
  void Write(hdi::RasterImage* raster) { Write(DescribeRaster(*raster)); }

  void Write(const FieldSettings& settings) {
    Object([&] {
      for (const FieldSetting& setting : settings) (*this)(setting.field->name, setting.value);
    });
  }

  void Write(const hdi::LOGFONTW& font) {
    Object([&] {
      for (const RecordField& field : LogFontFields()) Optional(field.name, ReadField(field, &font));
      const std::u16string_view face(font.lfFaceName, std::size(font.lfFaceName));
      Optional("lfFaceName", face.substr(0, face.find(u'\0')));
    });
  }

  template <typename T>
  requires requires(const T& value, JsonLine& line) { T::Describe(value, line); }
  void Write(const T& value) {
    Object([&] { T::Describe(value, *this); });
  }

  template <typename T, size_t extent>
  void Write(std::span<T, extent> values) {
    Open('[');
    for (const auto& value : values) {
      Separate();
      Write(value);
    }
    Close(']');
  }
  template <typename T, size_t count>
  void Write(const std::array<T, count>& values) {
    Write(std::span(values));
  }
  template <typename T>
  void Write(const std::vector<T>& values) {
    Write(std::span(values));
  }

  // Null stands for a missing value.
  template <typename T>
  void WriteOrNull(const T& value) {
    if (value) {
      Write(*value);
    } else {
      Append("null");
    }
  }
  template <typename T>
  void Write(const std::optional<T>& value) {
    WriteOrNull(value);
  }
  void Write(const std::vector<double>* values) { WriteOrNull(values); }

  void Append(std::string_view text) {
    line_ += text;
    needsComma_ = true;
  }

  void Open(char bracket) {
    line_ += bracket;
    needsComma_ = false;
  }

  void Close(char bracket) {
    line_ += bracket;
    needsComma_ = true;
  }

  void Separate() {
    if (needsComma_) line_ += ", ";
  }

  std::string& line_;
  bool needsComma_ = false;
};

}  // namespace

void TraceWriter::WriteJob(const JobSettings& job) {
  JsonLine line(line_);
  line.Object([&] { line("job", job); });
  EndLine();
}

void TraceWriter::OnCall(const Call& call) {
  JsonLine line(line_);
  const auto write = [&line]<typename T>(const T& alternative) {
    line.Object([&] {
      line("call", T::kEntry.name);
      T::Describe(alternative, line);
    });
  };
  try {
    std::visit(write, call);
  } catch (const NotFinite&) {
    file_.Fail("a call has a number that is not finite");
  }
  EndLine();
}

void TraceWriter::EndLine() {
  line_ += '\n';
  file_.Write(line_);
  line_.clear();
}

}  // namespace hdiplot
