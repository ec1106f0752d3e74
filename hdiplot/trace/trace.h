// A plot trace in memory: the settings of one job and its calls.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "hdiplot/device/calls.h"

namespace hdiplot {

// Lengths in tenths of a millimetre, as SetCustomPaper takes them. For Describe and Problem see calls.h.
struct CustomPaper {
  std::u16string name;
  double width = 0;
  double height = 0;
  double left = 0;
  double right = 0;
  double top = 0;
  double bottom = 0;

  static void Describe(auto& self, auto& keys) {
    keys("name", self.name)("width", self.width)("height", self.height);
    keys("left", self.left)("right", self.right)("top", self.top)("bottom", self.bottom);
  }
  [[nodiscard]] std::string Problem() const;
};

struct JobSettings {
  std::u16string device;                 // empty: the first driver of the module
  std::optional<std::u16string> output;  // lpszOutput
  std::u16string defaultOutput;          // empty: none
  std::u16string docName;
  FieldSettings devMode;
  std::optional<CustomPaper> customPaper;
  double lineScale = 1;

  static void Describe(auto& self, auto& keys) {
    keys.Optional("device", self.device).Optional("output", self.output, std::nullopt);
    keys.Optional("defaultOutput", self.defaultOutput).Optional("docName", self.docName);
    keys.Optional("devMode", self.devMode).IfGiven("customPaper", self.customPaper);
    keys.Optional("lineScale", self.lineScale, 1);
  }
};

// Owns values of any type that calls refer to.
class CallStorage {
 public:
  template <typename T, typename... Arguments>
  T& Make(Arguments&&... arguments) {
    auto kept = std::make_shared<T>(std::forward<Arguments>(arguments)...);
    kept_.push_back(kept);
    return *kept;
  }

 private:
  std::vector<std::shared_ptr<void>> kept_;
};

struct CallLine {
  size_t line = 0;  // of the file, from 1
  Call call;
};

// A trace that is played must live until the document has ended, as the driver reads its rasters there.
struct Trace {
  JobSettings job;
  std::vector<CallLine> calls;
  CallStorage storage;  // of the calls
};

// Reads and checks the whole file. Every error is a FileError with the line and what is wrong: broken JSON or
// UTF-8, a key that is unknown, missing or repeated, a value of the wrong type, size or range, an unknown
// call, a job line that is not the first.
[[nodiscard]] Trace ReadTrace(const std::filesystem::path& file);

}  // namespace hdiplot
