// A GDI font, open only while it is read: GDI handles are scarce in a process, and a device dies with the
// thread that created it.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace hdi {

// A tag for GetFontData: four letters in file order, read as little-endian.
[[nodiscard]] constexpr DWORD TableTag(const char (&letters)[5]) {
  DWORD tag = 0;
  for (int i = 3; i >= 0; --i) tag = tag << 8 | static_cast<uint8_t>(letters[i]);
  return tag;
}

// A LOGFONTW made into a font and selected into its own memory device.
class SelectedFont {
 public:
  explicit SelectedFont(const ::LOGFONTW& font);
  SelectedFont(const SelectedFont&) = delete;
  SelectedFont& operator=(const SelectedFont&) = delete;
  ~SelectedFont();

  // False if GDI could not create the font, which then has no tables.
  [[nodiscard]] bool IsMade() const { return font_ != nullptr; }
  [[nodiscard]] HDC Device() const { return device_; }

  // Empty if the font has no such table.
  [[nodiscard]] std::vector<uint8_t> Table(DWORD tag) const;
  // Part of a table; shorter or empty if the table ends before.
  [[nodiscard]] std::vector<uint8_t> Table(DWORD tag, DWORD offset, DWORD length) const;
  // 0 if there is no such table.
  [[nodiscard]] DWORD TableSize(DWORD tag) const;

 private:
  HDC device_;
  HFONT font_;
  HGDIOBJ before_;
};

}  // namespace hdi
