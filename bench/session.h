// A job with PDF.hdi, loaded at run time.
#pragma once

#include <string>
#include <string_view>

#include "bench/scene.h"
#include "platform/border.h"

namespace bench {

// An open device with a scene's sheet; closed at the end.
class Session {
 public:
  // Throws std::runtime_error if the module or its device list is missing.
  explicit Session(const Sheet& sheet);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  // Throws std::runtime_error if the driver fails.
  void StartDocument(const std::string& path);
  void EndDocument();

  template <typename Function, typename... Arguments>
  auto Call(hdi::Position position, Arguments... arguments) {
    return device_.table->At<Function>(position)(&device_, arguments...);
  }

  [[nodiscard]] hdi::HostDevice& Device() { return device_; }

 private:
  hdi::HostDevice device_{};
};

[[nodiscard]] std::u16string Widen(std::string_view ascii);

}  // namespace bench
