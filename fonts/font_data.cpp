// Reads font bytes through the platform's font services.
#include "fonts/font_data.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "fonts/font_collection.h"
#include "platform/face_name.h"

namespace hdi {

std::optional<FontDataSource> ClassifyFontData(const FontServices& services, const LOGFONTW& font) {
  const std::unique_ptr<PlatformFont> platformFont = services.CreateFontIndirect(font);
  if (platformFont == nullptr) return std::nullopt;
  if (platformFont->GetFontData(kFontCollection, nullptr, 0) == kNoFontData) {
    if (platformFont->GetFontData(kWholeFontFile, nullptr, 0) == kNoFontData) return std::nullopt;
    return FontDataSource{.isSingleFile = true, .collection = {}};
  }
  FontData collection = ReadFontData(*platformFont, kFontCollection);
  const auto member = FindCollectionMember(collection.Bytes(), FaceName(font));
  if (!member) return std::nullopt;
  return FontDataSource{.memberIndex = *member, .collection = std::move(collection)};
}

FontData ReadFontData(const PlatformFont& font, uint32_t table) {
  const uint32_t size = font.GetFontData(table, nullptr, 0);
  if (size == kNoFontData) return {};
  FontData data{.block = std::unique_ptr<uint8_t, MallocDeleter>(static_cast<uint8_t*>(std::malloc(size)))};
  if (data.block == nullptr) return {};
  const uint32_t copied = font.GetFontData(table, data.block.get(), size);
  if (copied == kNoFontData) return {};
  data.size = std::min(copied, size);
  return data;
}

}  // namespace hdi
