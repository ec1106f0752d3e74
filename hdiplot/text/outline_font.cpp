#include "hdiplot/text/outline_font.h"

#include "platform/font_services.h"

namespace hdiplot {

namespace {

constexpr double kUsualCapHeight = 0.7;              // of an em, for faces that do not specify it
constexpr double kSyntheticItalicSkew = 0.33916232;  // the driver's
constexpr char16_t kSymbols = 0xF000;                // start of Microsoft's symbol maps

// Whether the font asks for italics and its face is upright.
bool DriverSlants(const hdi::LOGFONTW& selecting) {
  if (selecting.lfItalic == 0) return false;
  const auto font = hdi::SystemFontServices().CreateFontIndirect(selecting);
  return font != nullptr && font->ItalicAngle() == 0;
}

}  // namespace

OutlineFont::OutlineFont(const hdi::FontFace& face, const hdi::LOGFONTW& font)
    : face_(face),
      font_(hdi::SelectingFont(font, face)),
      emSize_(1 / (face.CapHeight() > 0 ? face.CapHeight() : kUsualCapHeight)) {}

const OutlineFont::Character& OutlineFont::Of(char16_t unit) const {
  return characters_.Get(unit, [this](char16_t u) { return Find(u); });
}

OutlineFont::Character OutlineFont::Find(char16_t unit) const {
  const auto symbol = static_cast<char16_t>(kSymbols + unit);
  if (face_.HasCharacter(unit)) return {&face_, unit, face_.Advance(unit) * emSize_};
  if (unit < 0x100 && face_.HasCharacter(symbol)) return {&face_, symbol, face_.Advance(symbol) * emSize_};
  const hdi::FontFace* other = hdi::FindFaceWith(unit, font_);
  return {other, unit, (other != nullptr ? *other : face_).Advance(unit) * emSize_};
}

const std::vector<hdi::GlyphContour>& OutlineFont::Outline(char16_t unit) const {
  return outlines_.Get(unit, [this](char16_t u) {
    const Character& character = Of(u);
    const hdi::FontFace& face = character.face != nullptr ? *character.face : face_;
    const double skew = IsSlanted(face) ? kSyntheticItalicSkew : 0;
    std::vector<hdi::GlyphContour> contours = face.Outline(character.drawn);
    for (hdi::GlyphContour& contour : contours) {
      for (hdi::GlyphPoint& p : contour) p = {(p.x + skew * p.y) * emSize_, p.y * emSize_};
    }
    return contours;
  });
}

bool OutlineFont::IsSlanted(const hdi::FontFace& face) const {
  const auto [known, isNew] = slanted_.try_emplace(&face, false);
  if (isNew) known->second = DriverSlants(hdi::SelectingFont(font_, face));
  return known->second;
}

}  // namespace hdiplot
