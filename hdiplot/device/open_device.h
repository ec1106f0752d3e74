// One device of the driver while it is open: its table of entries and its document.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/border.h"

namespace hdiplot {

// What a call adds to the summary.
enum class CallKind : uint8_t { kSetting, kObject, kPage };

// An entry of the device table, of type Function.
template <typename Function>
struct DeviceEntry {
  std::string_view name;  // in traces
  hdi::Position position;
  CallKind kind = CallKind::kSetting;
};

class OpenDevice {
 public:
  // The driver must outlive the device.
  explicit OpenDevice(hdi::HT_Driver& driver);
  OpenDevice(const OpenDevice&) = delete;
  OpenDevice& operator=(const OpenDevice&) = delete;
  ~OpenDevice();  // closes the device

  [[nodiscard]] hdi::HT_Driver& Driver() const { return *device_.driver; }

  // Without `output` the file is `defaultOutput`, which must not be empty then. Both return the entry's
  // result.
  int32_t StartDoc(const std::u16string& docName, const std::optional<std::u16string>& output,
                   const std::u16string& defaultOutput);
  int32_t EndDoc();

  // Calls the entry and returns its result, or 0 where the table has a null position.
  template <typename Function, typename... Arguments>
  auto Enter(const DeviceEntry<Function>& entry, Arguments... arguments) {
    auto* function = device_.table->At<Function>(entry.position);
    using Result = decltype(function(&device_, arguments...));
    return function == nullptr ? Result{} : function(&device_, arguments...);
  }

  // Keeps an image record until the device is closed: the driver reads it when the document ends.
  const hdi::HostImageRecord* Keep(const hdi::HostImageRecord& image) { return &images_.emplace_back(image); }

  // Buffers of calls, kept for their memory.
  struct Buffers {
    std::vector<uint32_t> words;
    std::vector<hdi::HT_Double_Point> points;
  };
  [[nodiscard]] Buffers& CallBuffers() { return buffers_; }

 private:
  hdi::HostDevice device_{};
  std::u16string defaultOutput_;
  std::deque<hdi::HostImageRecord> images_;  // addresses stay
  Buffers buffers_;
};

}  // namespace hdiplot
