// Finds a face in an OpenType font collection by its family name. Bounds are tested throughout: what lies
// outside of the collection is no member, no table and no name.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace hdi {

// The first member with a family name equal to `face` in any language.
[[nodiscard]] std::optional<int32_t> FindCollectionMember(std::span<const uint8_t> collection,
                                                          std::u16string_view face);

// Whether the string of `byteLength` bytes at the start of `bytes`, which reach to the end of the data, is
// `face`. Platforms 0 and 3 hold it in UTF-16, all others as one byte a character, compared with the low
// bytes of the face's units.
[[nodiscard]] bool FaceNameMatches(std::span<const uint8_t> bytes, uint32_t platformId, int32_t byteLength,
                                   std::u16string_view face);

}  // namespace hdi
