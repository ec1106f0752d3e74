// Base64 (RFC 4648, section 4), for the pixels in plot traces.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace hdiplot {

[[nodiscard]] std::string EncodeBase64(std::span<const uint8_t> bytes);

// None when `text` is not base64: a foreign character, a length that is not a multiple of four, or padding
// before the end.
[[nodiscard]] std::optional<std::vector<uint8_t>> DecodeBase64(std::string_view text);

}  // namespace hdiplot
