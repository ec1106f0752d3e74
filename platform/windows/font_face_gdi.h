// GDI's fonts for the list of faces: made, selected into a memory device, and read as tables. No display and
// no printer is asked for any of this.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace hdi {

// A tag as GetFontData takes it: the letters in file order, read as little-endian.
[[nodiscard]] constexpr DWORD TableTag(const char (&letters)[5]) {
  DWORD tag = 0;
  for (int i = 3; i >= 0; --i) tag = tag << 8 | static_cast<uint8_t>(letters[i]);
  return tag;
}

class GdiFont {
 public:
  explicit GdiFont(const ::LOGFONTW& font) : handle_(CreateFontIndirectW(&font)) {}
  GdiFont(const GdiFont&) = delete;
  GdiFont& operator=(const GdiFont&) = delete;
  ~GdiFont() { DeleteObject(handle_); }

  [[nodiscard]] HFONT Handle() const { return handle_; }

 private:
  HFONT handle_;  // null when there is no room for it
};

// A font in the module's memory device for as long as this lives; one at a time.
class SelectedFont {
 public:
  explicit SelectedFont(const GdiFont& font);
  SelectedFont(const SelectedFont&) = delete;
  SelectedFont& operator=(const SelectedFont&) = delete;
  ~SelectedFont();

  [[nodiscard]] HDC Device() const { return device_; }
  // Empty when the font has no such table.
  [[nodiscard]] std::vector<uint8_t> Table(DWORD tag) const;
  // So many bytes of a table; fewer or none when it ends before.
  [[nodiscard]] std::vector<uint8_t> Table(DWORD tag, DWORD offset, DWORD length) const;
  // 0 when there is no such table.
  [[nodiscard]] DWORD TableSize(DWORD tag) const;

 private:
  HDC device_;
  HGDIOBJ previous_;
};

}  // namespace hdi
