// The module's memory device.
#include "platform/windows/font_face_gdi.h"

#include <algorithm>

namespace hdi {
namespace {

class MemoryDevice {
 public:
  MemoryDevice() : handle_(CreateCompatibleDC(nullptr)) {}
  MemoryDevice(const MemoryDevice&) = delete;
  MemoryDevice& operator=(const MemoryDevice&) = delete;
  ~MemoryDevice() { DeleteDC(handle_); }

  [[nodiscard]] HDC Handle() const { return handle_; }

 private:
  HDC handle_;
};

HDC ModuleDevice() {
  static const MemoryDevice kDevice;
  return kDevice.Handle();
}

}  // namespace

SelectedFont::SelectedFont(const GdiFont& font)
    : device_(ModuleDevice()), previous_(SelectObject(device_, font.Handle())) {}

SelectedFont::~SelectedFont() {
  if (previous_ != nullptr) SelectObject(device_, previous_);
}

std::vector<uint8_t> SelectedFont::Table(DWORD tag) const { return Table(tag, 0, TableSize(tag)); }

std::vector<uint8_t> SelectedFont::Table(DWORD tag, DWORD offset, DWORD length) const {
  // Offsets and lengths come from fonts, and a table has no more bytes than it has.
  const DWORD size = TableSize(tag);
  if (offset >= size) return {};
  std::vector<uint8_t> bytes(std::min(length, size - offset));
  const DWORD count = ::GetFontData(device_, tag, offset, bytes.data(), static_cast<DWORD>(bytes.size()));
  if (count != bytes.size()) bytes.clear();
  return bytes;
}

DWORD SelectedFont::TableSize(DWORD tag) const {
  const DWORD size = ::GetFontData(device_, tag, 0, nullptr, 0);
  return size == GDI_ERROR ? 0 : size;
}

}  // namespace hdi
