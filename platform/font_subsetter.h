// The platform's font subsetter, CreateFontPackage. On Windows it is loaded from FontSub.dll; elsewhere our
// own implementation has the same contract.
#pragma once

#include <cstddef>
#include <cstdint>

namespace hdi {

// Flags of CreateFontPackage.
inline constexpr uint16_t kSubsetFlagSubset = 1;
inline constexpr uint16_t kSubsetFlagCollection = 4;  // the source is a collection
inline constexpr uint16_t kSubsetPlainFormat = 0;
inline constexpr uint16_t kSubsetAnyLanguage = 0;
inline constexpr uint16_t kSubsetMicrosoftPlatform = 3;
inline constexpr uint16_t kSubsetAnyEncoding = 0xFFFF;

using AllocateFunction = void* (*)(size_t size);
using ReallocateFunction = void* (*)(void* block, size_t size);
using FreeFunction = void (*)(void* block);

// Makes a TrueType font from the font in `source` (or its member `collectionIndex` with
// kSubsetFlagCollection) that maps the characters of `keepList` in a character map of the Microsoft platform.
// Glyphs are renumbered. Characters that the font lacks are skipped, even if none is left. `*package`
// receives a block of `*packageSize` bytes from `allocate`, of which `*written` are the font. On failure
// returns non-zero and leaves `*package` unchanged.
using CreateFontPackageFunction = uint32_t(const uint8_t* source, uint32_t sourceSize, uint8_t** package,
                                           uint32_t* packageSize, uint32_t* written, uint16_t flags,
                                           uint16_t collectionIndex, uint16_t format, uint16_t language,
                                           uint16_t platform, uint16_t encoding, const uint16_t* keepList,
                                           uint16_t keepCount, AllocateFunction allocate,
                                           ReallocateFunction reallocate, FreeFunction free, void* reserved);

// Returns the system's subsetter, or null. Libraries loaded for it stay loaded.
[[nodiscard]] CreateFontPackageFunction* FindCreateFontPackage();

}  // namespace hdi
