// Finds a face in an OpenType font collection by its family name. All reads are bounds-checked: data outside
// the collection counts as absent.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace hdi {

// Returns the index of the first member with a family name equal to `face` in any language.
[[nodiscard]] std::optional<int32_t> FindCollectionMember(std::span<const uint8_t> collection,
                                                          std::u16string_view face);

// Returns whether the name string of `byteLength` bytes at the start of `bytes` equals `face`; `bytes`
// extends to the end of the data. Platforms 0 and 3 store UTF-16; all others one byte a character, compared
// with the low bytes of the face's code units.
[[nodiscard]] bool FaceNameMatches(std::span<const uint8_t> bytes, uint32_t platformId, int32_t byteLength,
                                   std::u16string_view face);

}  // namespace hdi
