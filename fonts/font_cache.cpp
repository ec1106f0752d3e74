// Loads, subsets and embeds fonts on first use.
#include "fonts/font_cache.h"

#include <cstdint>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "fonts/font_data.h"
#include "fonts/font_subset.h"
#include "platform/face_name.h"
#include "platform/host_library.h"

namespace hdi {

FontCache::FontCache(const FontServices& services, CreateFontPackageFunction* (*findSubsetter)())
    : services_(services), findSubsetter_(findSubsetter) {}

const engine::Font* FontCache::GetFontHandle(engine::Document& document, const LOGFONTW* font) {
  if (font == nullptr) return nullptr;
  std::u16string name;
  if (!GetFontFullName(font, name)) return nullptr;
  const auto known = fontByName_.find(name);
  if (known != fontByName_.end() && known->second != nullptr) return known->second.get();
  if (charsByName_ == nullptr) return nullptr;
  const auto characters = charsByName_->find(name);
  if (characters == charsByName_->end()) return nullptr;
  try {
    Embed(document, *font, characters->first, characters->second);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
  // A null entry stays: a name whose subset the engine refused once never gets a font.
  const auto embedded = fontByName_.find(name);
  return embedded == fontByName_.end() ? nullptr : embedded->second.get();
}

void FontCache::Embed(engine::Document& document, const LOGFONTW& font, const std::u16string& name,
                      const CharacterSet& characters) {
  const std::vector<uint16_t> keepList = characters.Characters();
  auto source = ClassifyFontData(services_, font);
  if (!source) return;
  const std::unique_ptr<PlatformFont> platformFont = services_.CreateFontIndirect(font);
  if (platformFont == nullptr) return;
  const FontData file =
      source->isSingleFile ? ReadFontData(*platformFont, kWholeFontFile) : std::move(source->collection);
  if (file.block == nullptr) return;

  const FontData subset = SubsetFontData(findSubsetter_(), file.Bytes(), *source, keepList);
  const bool isSubset = subset.block != nullptr;
  FontsByName loaded;
  auto& handle = loaded[name];
  handle = engine::Font::Load(document, isSubset ? subset.Bytes() : file.Bytes());
  if (handle == nullptr && !isSubset) return;
  fontByName_.merge(loaded);
}

bool FontCache::NeedsSyntheticItalic(const LOGFONTW& font) {
  if (font.lfItalic == 0) return false;
  const std::u16string face(FaceName(font));
  const auto known = italicByFace_.find(face);
  if (known != italicByFace_.end()) return known->second;
  const std::unique_ptr<PlatformFont> platformFont = services_.CreateFontIndirect(font);
  const bool isUpright = platformFont != nullptr && platformFont->ItalicAngle() == 0;
  italicByFace_.emplace(face, isUpright);
  return isUpright;
}

void FontCache::Clear() {
  fontByName_.clear();
  italicByFace_.clear();
  charsByName_ = nullptr;
}

}  // namespace hdi
