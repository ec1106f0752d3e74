// Installed fonts by fontconfig.
#include "hdiplot/system/font_files.h"

#include <fontconfig/fontconfig.h>

#include <climits>
#include <filesystem>
#include <memory>

#include "hdiplot/system/names.h"
#include "hdiplot/system/paths.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace hdiplot {

namespace {

template <auto destroy>
struct Destroy {
  template <typename T>
  void operator()(T* object) const {
    destroy(object);
  }
};
using Pattern = std::unique_ptr<FcPattern, Destroy<FcPatternDestroy>>;
using Objects = std::unique_ptr<FcObjectSet, Destroy<FcObjectSetDestroy>>;
using Fonts = std::unique_ptr<FcFontSet, Destroy<FcFontSetDestroy>>;

// Kept until the process ends.
void LoadConfiguration() {
#if defined(__SANITIZE_ADDRESS__)
  // fontconfig links its data by offsets, which a leak checker does not follow.
  const __lsan::ScopedDisabler disabler;
#endif
  FcInit();
}

std::string TextOf(const FcPattern* font, const char* object) {
  FcChar8* text = nullptr;
  if (FcPatternGetString(font, object, 0, &text) != FcResultMatch) return {};
  return reinterpret_cast<const char*>(text);
}

// Its index in the file, a variable font before its instances.
int IndexOf(const FcPattern* font) {
  int index = 0;
  FcPatternGetInteger(font, FC_INDEX, 0, &index);
  return index;
}

}  // namespace

std::string FontInFile(std::string_view name) {
  LoadConfiguration();
  const Pattern any(FcPatternCreate());
  const Objects wanted(FcObjectSetBuild(FC_FILE, FC_INDEX, FC_FULLNAME, nullptr));
  const Fonts fonts(FcFontList(nullptr, any.get(), wanted.get()));
  std::string found;
  int first = INT_MAX;
  for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i) {
    const FcPattern* font = fonts->fonts[i];
    const std::filesystem::path file = TextOf(font, FC_FILE);
    if (IndexOf(font) >= first || !IsSameName(file.filename().native(), name)) continue;
    first = IndexOf(font);
    found = TextOf(font, FC_FULLNAME);
  }
  return found;
}

std::filesystem::path HersheyFontFolder() {
  const std::filesystem::path given = PathFromEnvironment("HERSHEY_FONTS_DIR");
  return given.empty() ? "/usr/share/hershey-fonts" : given;
}

}  // namespace hdiplot
