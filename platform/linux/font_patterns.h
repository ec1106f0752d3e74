// Converts a LOGFONTW to a fontconfig pattern.
#pragma once

#include <fontconfig/fontconfig.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>

#include "platform/records.h"

namespace hdi {

inline constexpr uint8_t kAnsiCharSet = 0;
inline constexpr uint8_t kDefaultCharSet = 1;

// The fields of a LOGFONTW that select a face; equal requests select the same face.
struct FontRequest {
  explicit FontRequest(const LOGFONTW& font);
  bool operator==(const FontRequest&) const = default;

  [[nodiscard]] std::u16string_view Name() const { return {name.data(), nameLength}; }
  [[nodiscard]] bool AsksForSymbols() const;
  // Whether the character set was requested explicitly: ANSI is what unspecific requests have.
  [[nodiscard]] bool AsksForCharSet() const;

  // Zero-terminated and zero-padded, without the '@' that requests glyphs for vertical text.
  std::array<char16_t, 32> name = {};
  size_t nameLength = 0;
  int32_t weight;  // above 0
  bool isItalic;
  uint8_t charSet;
  uint8_t pitchAndFamily;
};

struct ReleasePattern {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using OwnedPattern = std::unique_ptr<FcPattern, ReleasePattern>;

// Returns the request as a pattern with the configuration's substitutions. Null if out of memory.
[[nodiscard]] OwnedPattern PatternFor(const FontRequest& request, FcConfig* config);

// Returns whether the face of that pattern covers the request's character set.
[[nodiscard]] bool CoversCharacterSet(FcPattern* face, const FontRequest& request);

}  // namespace hdi
