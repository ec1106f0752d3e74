// The call of the subsetter with its full argument list.
#include "fonts/font_subset.h"

#include <cstdlib>

namespace hdi {

FontData SubsetFontData(CreateFontPackageFunction* createFontPackage, std::span<const uint8_t> bytes,
                        const FontDataSource& source, std::span<const uint16_t> keepList) {
  if (createFontPackage == nullptr) return {};
  uint8_t* package = nullptr;
  uint32_t packageSize = 0;
  uint32_t written = 0;
  // Success is a non-null package: a subsetter may return a warning and still make one.
  createFontPackage(bytes.data(), static_cast<uint32_t>(bytes.size()), &package, &packageSize, &written,
                    source.isSingleFile ? kSubsetFlagSubset : kSubsetFlagSubset | kSubsetFlagCollection,
                    source.isSingleFile ? uint16_t{0} : static_cast<uint16_t>(source.memberIndex),
                    kSubsetPlainFormat, kSubsetAnyLanguage, kSubsetMicrosoftPlatform, kSubsetAnyEncoding,
                    keepList.data(), static_cast<uint16_t>(keepList.size()), std::malloc, std::realloc,
                    std::free, nullptr);
  return {.block = std::unique_ptr<uint8_t, MallocDeleter>(package), .size = written};
}

}  // namespace hdi
