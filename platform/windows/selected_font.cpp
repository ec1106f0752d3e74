// Selects a font and reads its tables.
#include "platform/windows/selected_font.h"

#include <algorithm>

namespace hdi {
namespace {

// The memory device is compatible with the screen.
HDC MakeMemoryDevice() {
  const HWND desktop = GetDesktopWindow();
  const HDC screen = GetDC(desktop);
  const HDC device = CreateCompatibleDC(screen);
  ReleaseDC(desktop, screen);
  return device;
}

HFONT MakeFont(const ::LOGFONTW& font) {
  const HFONT made = CreateFontIndirectW(&font);
  return made == INVALID_HANDLE_VALUE ? nullptr : made;
}

}  // namespace

SelectedFont::SelectedFont(const ::LOGFONTW& font)
    : device_(MakeMemoryDevice()), font_(MakeFont(font)), before_(SelectObject(device_, font_)) {}

SelectedFont::~SelectedFont() {
  if (before_ != nullptr) SelectObject(device_, before_);
  DeleteObject(font_);
  DeleteDC(device_);
}

std::vector<uint8_t> SelectedFont::Table(DWORD tag) const { return Table(tag, 0, TableSize(tag)); }

std::vector<uint8_t> SelectedFont::Table(DWORD tag, DWORD offset, DWORD length) const {
  // Offsets and lengths come from the font; clamp them to the table.
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
