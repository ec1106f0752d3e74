// The platform's font subsetter, CreateFontPackage. On Windows it is a function of FontSub.dll, loaded at run
// time; elsewhere one of our own keeps the same contract.
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

// Makes of the font in `source` (member `collectionIndex` of it with kSubsetFlagCollection) a TrueType font
// that maps the characters of `keepList` to their glyphs in a character map of the Microsoft platform. Glyphs
// are numbered anew. Characters that the font lacks are passed over, even if none is left. The result is in
// `*package`, a block of `*packageSize` bytes from `allocate`, of which `*written` are the font. When there
// is no such font `*package` stays as it was and the result is not 0.
using CreateFontPackageFunction = uint32_t(const uint8_t* source, uint32_t sourceSize, uint8_t** package,
                                           uint32_t* packageSize, uint32_t* written, uint16_t flags,
                                           uint16_t collectionIndex, uint16_t format, uint16_t language,
                                           uint16_t platform, uint16_t encoding, const uint16_t* keepList,
                                           uint16_t keepCount, AllocateFunction allocate,
                                           ReallocateFunction reallocate, FreeFunction free, void* reserved);

// The system's subsetter, null when it has none. What is loaded for it stays loaded.
[[nodiscard]] CreateFontPackageFunction* FindCreateFontPackage();

}  // namespace hdi
