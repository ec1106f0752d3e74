#include "hdiplot/device/open_device.h"

namespace hdiplot {

OpenDevice::OpenDevice(hdi::HT_Driver& driver) {
  device_.driver = &driver;
  driver.OpenDevice(&device_);
}

OpenDevice::~OpenDevice() { Driver().CloseDevice(&device_); }

int32_t OpenDevice::StartDoc(const std::u16string& docName, const std::optional<std::u16string>& output,
                             const std::u16string& defaultOutput) {
  defaultOutput_ = defaultOutput;
  device_.defaultOutput = defaultOutput_.c_str();
  hdi::DOCINFOW document{};
  document.cbSize = sizeof document;
  document.lpszDocName = docName.c_str();
  document.lpszOutput = output ? output->c_str() : nullptr;
  return Enter(DeviceEntry<hdi::entry::StartDoc>{"DevStartDoc", hdi::Position::kStartDoc}, &document);
}

int32_t OpenDevice::EndDoc() {
  return Enter(DeviceEntry<hdi::entry::EndDoc>{"DevEndDoc", hdi::Position::kEndDoc});
}

}  // namespace hdiplot
