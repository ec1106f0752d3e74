// One JSON object a line, by the descriptions of trace.h.
#include "hdiplot/trace/trace_writer.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <iterator>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>
#include <vector>

#include "hdiplot/command/output_file.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/paths.h"
#include "hdiplot/system/process.h"
#include "hdiplot/trace/base64.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

struct NotFinite {};

class LineWriter {
 public:
  explicit LineWriter(std::string& line) : line_(line) {}

  template <typename T>
  void Required(std::string_view name, const T& value) {
    Key(name);
    Write(value);
  }

  template <typename T>
  void Optional(std::string_view name, const T& value, const T& valueWhenLeftOut) {
    if (!(value == valueWhenLeftOut)) Required(name, value);
  }

  // Element by element: GCC 14 warns of vectors' own comparison, whose memcmp gets an empty vector's null
  // pointer.
  template <typename T>
  void Optional(std::string_view name, const std::vector<T>& value, const std::vector<T>& valueWhenLeftOut) {
    const auto same = [](const T& a, const T& b) { return a == b; };
    if (!std::ranges::equal(value, valueWhenLeftOut, same)) Required(name, value);
  }

  template <typename T>
  void Optional(std::string_view name, const std::optional<T>& value) {
    if (value) Required(name, *value);
  }

  template <typename T>
  void Object(const T& described) {
    Open('{');
    T::Describe(described, *this);
    Close('}');
  }

  void Open(char bracket) {
    line_ += bracket;
    needsComma_ = false;
  }

  void Close(char bracket) {
    line_ += bracket;
    needsComma_ = true;
  }

  void Key(std::string_view name) {
    Separate();
    fmt::format_to(std::back_inserter(line_), "\"{}\": ", name);
    needsComma_ = false;
  }

  void Write(bool value) {
    line_ += value ? "true" : "false";
    needsComma_ = true;
  }

  void Write(int32_t value) { Number(value); }
  void Write(uint32_t value) { Number(value); }
  void Write(int64_t value) { Number(value); }
  void Write(uint64_t value) { Number(value); }
  void Write(uint8_t value) { Number(uint32_t{value}); }

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
    line_ += nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    needsComma_ = true;
  }

  void Write(const std::u16string& text) { Write(std::string_view(hdi::ToUtf8(text))); }
  void Write(const Rgb& color) { WriteAll(std::array{color.red, color.green, color.blue}); }
  void Write(const hdi::HT_Double_Point& point) { WriteAll(std::array{point.x, point.y}); }
  void Write(const std::vector<uint8_t>& bytes) { Write(std::string_view(EncodeBase64(bytes))); }

  void Write(const FieldSettings& settings) {
    Open('{');
    for (const FieldSetting& setting : settings) Required(setting.field->name, setting.value);
    Close('}');
  }

  void Write(const hdi::LOGFONTW& font) {
    Open('{');
    for (const RecordField& field : LogFontFields())
      Optional(field.name, ReadField(field, &font), int64_t{0});
    const std::u16string_view face(font.lfFaceName, std::size(font.lfFaceName));
    Optional("lfFaceName", std::u16string(face.substr(0, face.find(u'\0'))), std::u16string());
    Close('}');
  }

  void Write(const CustomPaper& paper) { Object(paper); }
  void Write(const ImageData& image) { Object(image); }

  template <typename T, size_t count>
  void Write(const std::array<T, count>& values) {
    WriteAll(values);
  }

  template <typename T>
  void Write(const std::vector<T>& values) {
    WriteAll(values);
  }

  template <typename T>
  void Write(const std::optional<T>& value) {
    if (value) {
      Write(*value);
    } else {
      line_ += "null";
      needsComma_ = true;
    }
  }

 private:
  template <typename T>
  void Number(T value) {
    fmt::format_to(std::back_inserter(line_), "{}", value);
    needsComma_ = true;
  }

  template <typename Range>
  void WriteAll(const Range& values) {
    Open('[');
    for (const auto& value : values) {
      Separate();
      Write(value);
    }
    Close(']');
  }

  void Separate() {
    if (needsComma_) line_ += ", ";
  }

  std::string& line_;
  bool needsComma_ = false;
};

}  // namespace

TraceWriter::TraceWriter(std::filesystem::path file) : file_(std::move(file)), place_(WithoutLinks(file_)) {
  RequireReplaceable(place_);
  temporary_ = place_;
  temporary_.replace_filename(
      PathFromUtf8("." + PathText(place_.filename()) + "." + ProcessNumber() + ".tmp"));
  stream_ = CreateNew(temporary_);
  if (stream_ == nullptr)
    throw FileError(file_, 0, std::string("cannot be written: ") + std::strerror(errno));
}

TraceWriter::~TraceWriter() {
  if (temporary_.empty()) return;
  stream_.reset();
  std::error_code ignored;
  std::filesystem::remove(temporary_, ignored);
}

void TraceWriter::WriteJob(const JobSettings& job) {
  LineWriter writer(line_);
  writer.Open('{');
  writer.Key("job");
  writer.Object(job);
  writer.Close('}');
  EndLine();
}

void TraceWriter::WriteCall(const Call& call) {
  try {
    std::visit(
        [this]<typename T>(const T& described) {
          LineWriter writer(line_);
          writer.Open('{');
          writer.Required("call", T::kName);
          T::Describe(described, writer);
          writer.Close('}');
        },
        call);
  } catch (const NotFinite&) {
    problem_ = "a call has a number that is not finite";
  }
  EndLine();
}

void TraceWriter::EndLine() {
  line_ += '\n';
  if (problem_.empty() && std::fwrite(line_.data(), 1, line_.size(), stream_.get()) != line_.size()) {
    problem_ = std::strerror(errno);
  }
  line_.clear();
}

void TraceWriter::Finish() {
  // Some file systems tell only at the end that they had no room.
  if (std::fclose(stream_.release()) != 0 && problem_.empty()) problem_ = std::strerror(errno);
  if (problem_.empty()) problem_ = MoveOver(temporary_, place_);
  if (!problem_.empty()) throw FileError(file_, 0, "cannot be written: " + problem_);
  temporary_.clear();
}

}  // namespace hdiplot
