// The lines of a trace file, one after the other, and the rules that go beyond single values.
#include "hdiplot/trace/trace_reader.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <map>
#include <utility>

#include "hdiplot/system/errors.h"
#include "hdiplot/trace/json_values.h"

namespace hdiplot {

namespace {

// Text that ends at its first zero cannot reach the driver whole if it has one inside.
void RequireTerminated(std::string_view key, const std::u16string& text) {
  if (text.find(u'\0') != std::u16string::npos) {
    throw ValueError(std::string(key) + ": holds a zero character");
  }
}

void Check(const CustomPaper& paper) {
  RequireTerminated("customPaper: name", paper.name);
  const std::pair<const char*, double> lengths[] = {{"width", paper.width}, {"height", paper.height},
                                                    {"left", paper.left},   {"right", paper.right},
                                                    {"top", paper.top},     {"bottom", paper.bottom}};
  for (const auto& [name, length] : lengths) {
    // The driver keeps whole 32-bit numbers of these.
    if (std::abs(length) > std::numeric_limits<int32_t>::max()) {
      throw ValueError(std::string("customPaper: ") + name + ": is out of range");
    }
  }
}

void Check(const JobSettings& job) {
  RequireTerminated("device", job.device);
  RequireTerminated("output", job.output.value_or(u""));
  RequireTerminated("defaultOutput", job.defaultOutput);
  RequireTerminated("docName", job.docName);
  if (job.customPaper) Check(*job.customPaper);
}

void Check(const call::BeginLink& link) { RequireTerminated("target", link.target); }

void Check(const call::SetLayer& layer) {
  RequireTerminated("name", layer.name);
  // The driver copies the name to a buffer of 1024 units and stops the process when it does not fit.
  if (layer.name.size() >= 1024) throw ValueError("name: has more than 1023 units");
}

void Check(const call::Text& text) {
  if (text.advances && text.advances->size() != text.text.size()) {
    throw ValueError("advances: has " + std::to_string(text.advances->size()) + " numbers, but text has " +
                     std::to_string(text.text.size()) + " units");
  }
}

void Check(const call::Bitmap& bitmap) {
  const ImageData& image = bitmap.image;
  if (image.bitCount != 1 && image.bitCount != 8 && image.bitCount != 24 && image.bitCount != 32) {
    throw ValueError("image: bitCount: must be 1, 8, 24 or 32");
  }
  if (image.width < 0) throw ValueError("image: width: must not be negative");
  if (image.height == std::numeric_limits<int32_t>::min()) throw ValueError("image: height: is out of range");
  const size_t colors = image.bitCount == 1 ? 2 : 256;
  if (image.palette.size() > colors) {
    throw ValueError("image: palette: has more than " + std::to_string(colors) + " entries");
  }
  const uint64_t needed =
      RowBytes(image.width, image.bitCount) * static_cast<uint64_t>(std::abs(image.height));
  if (image.pixels.size() < needed) {
    throw ValueError("image: pixels: has " + std::to_string(image.pixels.size()) +
                     " bytes, but the rows take " + std::to_string(needed));
  }
}

void Check(const call::ShxComment& comment) { RequireTerminated("text", comment.text); }

// Calls whose keys cannot contradict each other.
template <typename T>
void Check(const T&) {}

template <typename T>
Call ReadCallOf(const Json& json) {
  T call;
  ObjectReader reader(json, "call");
  T::Describe(call, reader);
  reader.Finish();
  Check(call);
  return call;
}

using CallReader = Call (*)(const Json&);

template <typename... Calls>
std::map<std::string_view, CallReader> CallReaders(const std::variant<Calls...>*) {
  return {{Calls::kName, &ReadCallOf<Calls>}...};
}

Call ReadCall(const Json& json) {
  static const std::map<std::string_view, CallReader> kReaders =
      CallReaders(static_cast<const Call*>(nullptr));
  const Json& name = json["call"];
  if (!name.is_string()) throw ValueError("call: must be a string");
  const auto found = kReaders.find(name.get_ref<const std::string&>());
  if (found == kReaders.end()) {
    throw ValueError("unknown call \"" + name.get_ref<const std::string&>() + "\"");
  }
  try {
    return found->second(json);
  } catch (const ValueError& error) {
    ThrowAt(std::string(found->first), error);
  }
}

JobSettings ReadJob(const Json& json) {
  JobSettings job;
  try {
    if (json.size() != 1) throw ValueError("must be the line's only key");
    ReadValue(json["job"], job);
    Check(job);
  } catch (const ValueError& error) {
    ThrowAt("job", error);
  }
  return job;
}

bool IsBlank(std::string_view text) { return text.find_first_not_of(" \t\r") == std::string_view::npos; }

}  // namespace

Trace ReadTrace(const std::filesystem::path& file) {
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored)) throw FileError(file, 0, "is a directory");
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw FileError(file, 0, std::string("cannot be opened: ") + std::strerror(errno));

  Trace trace;
  std::string text;
  bool first = true;
  for (size_t line = 1; std::getline(stream, text); ++line) {
    if (IsBlank(text)) continue;
    try {
      const Json json = ParseJson(text);
      if (json.is_object() && json.contains("job")) {
        if (!first) throw ValueError("a job line must be the first");
        trace.job = ReadJob(json);
      } else if (json.is_object() && json.contains("call")) {
        trace.calls.push_back({line, ReadCall(json)});
      } else {
        throw ValueError("must be an object with the key \"call\" or, in the first line, \"job\"");
      }
    } catch (const ValueError& error) {
      throw FileError(file, line, error.what());
    }
    first = false;
  }
  if (stream.bad()) throw FileError(file, 0, std::string("cannot be read: ") + std::strerror(errno));
  if (first) throw FileError(file, 0, "is empty");
  return trace;
}

}  // namespace hdiplot
