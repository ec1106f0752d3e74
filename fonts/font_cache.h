// The fonts of a document: each font of a job goes through the platform and the subsetter once, at the first
// run that is replayed with it, and every later run finds it by its full name.
//
// Nothing is reported. A font that can't be had gives no handle, its runs are left out, and the next run with
// it tries again.
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

  // The characters of the whole job, which settle what each subset holds. Before the first run; must outlive
  // the last.
  void SetCharacters(const FontUsage& charsByName) { charsByName_ = &charsByName; }

  // The document's font for `font`, null if there is none. It belongs to the cache.
  [[nodiscard]] const engine::Font* GetFontHandle(engine::Document& document, const LOGFONTW* font);

  // Whether `font` asks for italics and its face has no slant of its own. The first italic font of a face
  // name settles the answer for the name.
  [[nodiscard]] bool NeedsSyntheticItalic(const LOGFONTW& font);

  // Releases all fonts, after the document has been saved and before it is closed.
  void Clear();

 private:
  using FontsByName = std::map<std::u16string, std::unique_ptr<engine::Font>>;

  // Subsets and embeds the font and enters it under its name. Throws std::bad_alloc, having entered nothing.
  void Embed(engine::Document& document, const LOGFONTW& font, const std::u16string& name,
             const CharacterSet& characters);

  const FontServices& services_;
  CreateFontPackageFunction* (*findSubsetter_)();
  FontsByName fontByName_;  // null for a subset that the engine refused
  std::map<std::u16string, bool> italicByFace_;
  const FontUsage* charsByName_ = nullptr;
};

}  // namespace hdi
