// The embedded fonts of a document. A font is subset and embedded at the first replayed run that uses it;
// later runs find it by its full name.
//
// Failures are not reported. A font that cannot be loaded yields no handle, its runs are left out, and the
// next run with it tries again.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "engine/font.h"
#include "platform/character_set.h"
#include "platform/font_services.h"
#include "platform/font_subsetter.h"

namespace hdi {

class FontCache {
 public:
  // Both must outlive the cache.
  explicit FontCache(const FontServices& services = SystemFontServices(),
                     CreateFontPackageFunction* (*findSubsetter)() = FindCreateFontPackage);

  // The characters that the whole job uses in each font; they determine the subsets. Call before the first
  // run. `charsByName` must outlive the last one.
  void SetCharacters(const FontUsage& charsByName) { charsByName_ = &charsByName; }

  // Returns the document's font for `font`, owned by the cache, or null if there is none.
  [[nodiscard]] const engine::Font* GetFontHandle(engine::Document& document, const LOGFONTW* font);

  // Returns whether `font` asks for italics while its face is upright. The answer is cached by face name at
  // the first italic font of that name.
  [[nodiscard]] bool NeedsSyntheticItalic(const LOGFONTW& font);

  // Releases all fonts. Call after the document has been saved and before it is closed.
  void Clear();

 private:
  using FontsByName = std::map<std::u16string, std::unique_ptr<engine::Font>>;

  // Subsets and embeds the font and caches it under `name`. Throws std::bad_alloc, with nothing cached.
  void Embed(engine::Document& document, const LOGFONTW& font, const std::u16string& name,
             const CharacterSet& characters);

  const FontServices& services_;
  CreateFontPackageFunction* (*findSubsetter_)();
  FontsByName fontByName_;  // null if the engine refused the subset
  std::map<std::u16string, bool> italicByFace_;
  const FontUsage* charsByName_ = nullptr;
};

}  // namespace hdi
