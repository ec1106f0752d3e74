// The platform's font services: a LOGFONTW made into a font, the bytes of its file, and its slant. The driver
// embeds TrueType outlines, so a system that has others too offers only faces with those.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/records.h"

namespace hdi {

// Tables for PlatformFont::GetFontData. A tag is its four letters in file order, read as little-endian.
inline constexpr uint32_t kWholeFontFile = 0;
inline constexpr uint32_t kFontCollection = 0x66637474;  // "ttcf": the whole collection that holds the font

inline constexpr uint32_t kNoFontData = 0xFFFFFFFF;

// A LOGFONTW made into a font.
class PlatformFont {
 public:
  virtual ~PlatformFont() = default;

  // Copies at most `size` bytes of the font's data to `buffer`; the number of bytes copied. Without a buffer
  // the data's size. kNoFontData when there is none: for kFontCollection, when the font is in no collection.
  [[nodiscard]] virtual uint32_t GetFontData(uint32_t table, uint8_t* buffer, uint32_t size) const = 0;

  // The slant in tenths of a degree, counter-clockwise from the vertical: negative for a face that leans to
  // the right, 0 for an upright one. Nothing for a font without outline metrics.
  [[nodiscard]] virtual std::optional<int32_t> ItalicAngle() const = 0;
};

// The seam. Null stands for "none", and nothing throws but for want of memory.
class FontServices {
 public:
  virtual ~FontServices() = default;

  [[nodiscard]] virtual std::unique_ptr<PlatformFont> CreateFontIndirect(const LOGFONTW& font) const = 0;

  // The font of the system's own dialogs, in which text without an outline font is searched for.
  [[nodiscard]] virtual std::optional<LOGFONTW> DefaultInterfaceFont() const = 0;
};

// The system's own services. They live as long as the module.
[[nodiscard]] const FontServices& SystemFontServices();

}  // namespace hdi
