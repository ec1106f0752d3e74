// A font of GDI, for as long as it is read. Neither font nor device outlives the reading: a process has few
// handles of GDI, and a device dies with the thread that made it.
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

// A LOGFONTW made into a font and selected into a memory device of its own.
class SelectedFont {
 public:
  explicit SelectedFont(const ::LOGFONTW& font);
  SelectedFont(const SelectedFont&) = delete;
  SelectedFont& operator=(const SelectedFont&) = delete;
  ~SelectedFont();

  // False when GDI has no room for the font. It then has no tables.
  [[nodiscard]] bool IsMade() const { return font_ != nullptr; }
  [[nodiscard]] HDC Device() const { return device_; }

  // Empty when the font has no such table.
  [[nodiscard]] std::vector<uint8_t> Table(DWORD tag) const;
  // So many bytes of a table; fewer or none when it ends before.
  [[nodiscard]] std::vector<uint8_t> Table(DWORD tag, DWORD offset, DWORD length) const;
  // 0 when there is no such table.
  [[nodiscard]] DWORD TableSize(DWORD tag) const;

 private:
  HDC device_;
  HFONT font_;
  HGDIOBJ before_;
};

}  // namespace hdi
