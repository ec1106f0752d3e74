// Full names of fonts.
#include "platform/font_faces.h"
#include "platform/host_library.h"

namespace hdi {

bool GetFontFullName(const LOGFONTW* font, std::u16string& name) {
  const FontFace* face = font == nullptr ? nullptr : FindFace(*font);
  if (face == nullptr) return false;
  name = face->FullName();
  return true;
}

}  // namespace hdi
