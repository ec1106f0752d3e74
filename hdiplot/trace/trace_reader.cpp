// Reading the lines of a trace file.
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>
#include <limits>
#include <map>
#include <utility>

#include "hdiplot/system/errors.h"
#include "hdiplot/trace/json_reader.h"
#include "hdiplot/trace/trace.h"

namespace hdiplot {

namespace {

using CallReader = Call (*)(const Json&, ValueReader&);

template <typename T>
Call ReadCallOf(const Json& json, ValueReader& values) {
  T call;
  values.ReadObject(json, "call", call);
  return call;
}

template <typename... Calls>
std::map<std::string_view, CallReader> CallReaders(const std::variant<Calls...>*) {
  return {{Calls::kEntry.name, &ReadCallOf<Calls>}...};
}

Call ReadCall(const Json& json, ValueReader& values) {
  static const auto kReaders = CallReaders(static_cast<const Call*>(nullptr));
  const Json& name = json["call"];
  if (!name.is_string()) throw ValueError("call: must be a string");
  const auto found = kReaders.find(name.get_ref<const std::string&>());
  if (found == kReaders.end()) {
    throw ValueError("unknown call \"" + name.get_ref<const std::string&>() + "\"");
  }
  return At(found->first, [&] { return found->second(json, values); });
}

JobSettings ReadJob(const Json& json, ValueReader& values) {
  JobSettings job;
  At("job", [&] {
    if (json.size() != 1) throw ValueError("must be the line's only key");
    values.Read(json["job"], job);
  });
  return job;
}

bool IsBlank(std::string_view text) { return text.find_first_not_of(" \t\r") == std::string_view::npos; }

}  // namespace

std::string CustomPaper::Problem() const {
  const std::pair<const char*, double> lengths[] = {{"width", width}, {"height", height}, {"left", left},
                                                    {"right", right}, {"top", top},       {"bottom", bottom}};
  for (const auto& [key, length] : lengths) {
    // The driver keeps them as 32-bit integers.
    if (std::abs(length) > std::numeric_limits<int32_t>::max()) return std::string(key) + ": is out of range";
  }
  return "";
}

Trace ReadTrace(const std::filesystem::path& file) {
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored)) throw FileError(file, 0, "is a directory");
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw FileError(file, 0, std::string("cannot be opened: ") + std::strerror(errno));

  Trace trace;
  ValueReader values(trace.storage);
  std::string text;
  bool first = true;
  for (size_t line = 1; std::getline(stream, text); ++line) {
    if (IsBlank(text)) continue;
    try {
      const Json json = ParseJson(text);
      if (json.is_object() && json.contains("job")) {
        if (!first) throw ValueError("a job line must be the first");
        trace.job = ReadJob(json, values);
      } else if (json.is_object() && json.contains("call")) {
        trace.calls.push_back({line, ReadCall(json, values)});
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
