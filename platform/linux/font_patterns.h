// What a LOGFONTW asks for, in fontconfig's terms.
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

// What of a LOGFONTW decides on the face; equal ones select the same.
struct FontRequest {
  explicit FontRequest(const LOGFONTW& font);
  bool operator==(const FontRequest&) const = default;

  [[nodiscard]] std::u16string_view Name() const { return {name.data(), nameLength}; }
  [[nodiscard]] bool AsksForSymbols() const;
  // Whether the character set is asked for on purpose: ANSI is what a request has that says nothing.
  [[nodiscard]] bool AsksForCharSet() const;

  // Ended and filled up by zeros, without the '@' that asks for glyphs turned for vertical lines.
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

// The request as a pattern with the configuration's substitutions. Null when there is no memory for it.
[[nodiscard]] OwnedPattern PatternFor(const FontRequest& request, FcConfig* config);

// Whether the face of that pattern covers the request's character set.
[[nodiscard]] bool CoversCharacterSet(FcPattern* face, const FontRequest& request);

}  // namespace hdi
