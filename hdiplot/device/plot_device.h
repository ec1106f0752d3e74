// The device that hdiplot plots on. Every call, from a drawing or a trace, is made here, so a listener on it
// can record a plot.
#pragma once

#include <cstdint>
#include <variant>

#include "hdiplot/device/calls.h"
#include "hdiplot/device/open_device.h"

namespace hdiplot {

// Gets each call before it is made. The start and the end of the document are not among them.
class CallListener {
 public:
  virtual void OnCall(const Call& call) = 0;

 protected:
  ~CallListener() = default;
};

class PlotDevice : private OpenDevice {
 public:
  using OpenDevice::Driver;
  using OpenDevice::EndDoc;
  using OpenDevice::OpenDevice;
  using OpenDevice::StartDoc;

  // Sends all further calls to `listener`, too, which must outlive the device.
  void SetListener(CallListener& listener) { listener_ = &listener; }

  // Calls that draw, and pages started: what the summary counts.
  [[nodiscard]] uint64_t ObjectCount() const { return objects_; }
  [[nodiscard]] uint32_t PageCount() const { return pages_; }

  // Makes a call of namespace `call` and returns the entry's result.
  template <typename T>
  auto Make(const T& call) {
    if (listener_ != nullptr) listener_->OnCall(call);
    if constexpr (T::kEntry.kind == CallKind::kObject) ++objects_;
    if constexpr (T::kEntry.kind == CallKind::kPage) ++pages_;
    return call.MakeOn(*this);
  }
  int64_t Make(const Call& call) {
    return std::visit([this](const auto& alternative) { return int64_t{Make(alternative)}; }, call);
  }

 private:
  CallListener* listener_ = nullptr;
  uint64_t objects_ = 0;
  uint32_t pages_ = 0;
};

}  // namespace hdiplot
