// The platform's font services: creates a font from a LOGFONTW and reads its file and slant. The driver
// embeds TrueType outlines, so systems with other formats offer only faces with those.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/records.h"

namespace hdi {

// Tables for PlatformFont::GetFontData. A tag is four letters in file order, read as little-endian.
inline constexpr uint32_t kWholeFontFile = 0;
inline constexpr uint32_t kFontCollection = 0x66637474;  // "ttcf": the collection that contains the font

inline constexpr uint32_t kNoFontData = 0xFFFFFFFF;

// A font created from a LOGFONTW.
class PlatformFont {
 public:
  virtual ~PlatformFont() = default;

  // Copies up to `size` bytes of the font's data to `buffer` and returns the number of bytes copied; without
  // a buffer, returns the data's size. kNoFontData if there is none, including kFontCollection for a font
  // outside a collection.
  [[nodiscard]] virtual uint32_t GetFontData(uint32_t table, uint8_t* buffer, uint32_t size) const = 0;

  // Returns the slant in tenths of a degree counter-clockwise from the vertical: negative for a face that
  // leans right, 0 for an upright one. Nothing for a font without outline metrics.
  [[nodiscard]] virtual std::optional<int32_t> ItalicAngle() const = 0;
};

// Functions return null for "none" and throw only std::bad_alloc.
class FontServices {
 public:
  virtual ~FontServices() = default;

  [[nodiscard]] virtual std::unique_ptr<PlatformFont> CreateFontIndirect(const LOGFONTW& font) const = 0;

  // Returns the font of the system's dialogs, which makes text without an outline font searchable.
  [[nodiscard]] virtual std::optional<LOGFONTW> DefaultInterfaceFont() const = 0;
};

// The system's services. They live as long as the module.
[[nodiscard]] const FontServices& SystemFontServices();

}  // namespace hdi
