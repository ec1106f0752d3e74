// GDI's faces with TrueType outlines. A face is added when GDI's mapper first selects it, or when all are
// listed.
#pragma once

#include <windows.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/font_faces.h"
#include "platform/windows/font_face_facts.h"

namespace hdi {

class SystemFace final : public FontFace {
 public:
  // `own` selects the font exactly as its file has it.
  SystemFace(FontFacts facts, std::u16string fullName, std::u16string selectingName, const ::LOGFONTW& own);

  [[nodiscard]] const std::u16string& FullName() const override { return fullName_; }
  [[nodiscard]] const std::u16string& Family() const override { return facts_.names.families.front(); }
  [[nodiscard]] int32_t Weight() const override { return facts_.weight; }
  [[nodiscard]] bool IsItalic() const override { return facts_.isItalic; }
  // Control characters are never visible, even if the font has glyphs for them.
  [[nodiscard]] bool HasCharacter(char16_t unit) const override {
    const bool isControl = unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
    return !isControl && GlyphOf(unit) != 0;
  }
  [[nodiscard]] double Advance(char16_t unit) const override;
  [[nodiscard]] double CapHeight() const override { return Measured().capHeight; }
  [[nodiscard]] double Ascent() const override { return Measured().ascent; }
  [[nodiscard]] double Descent() const override { return Measured().descent; }
  [[nodiscard]] std::vector<GlyphContour> Outline(char16_t unit) const override;

  [[nodiscard]] const FontFacts& Facts() const { return facts_; }
  // The face name by which GDI selects the face: its family's, or its full name if GDI only knows that.
  [[nodiscard]] const std::u16string& SelectingName() const { return selectingName_; }
  // As in TEXTMETRICW.
  [[nodiscard]] uint8_t PitchAndFamily() const { return pitchAndFamily_; }
  // Whether its characters come from a Microsoft symbol map.
  [[nodiscard]] bool IsSymbol() const { return facts_.isSymbol; }
  // Whether it has that family or full name in any language, ignoring case.
  [[nodiscard]] bool IsNamed(std::u16string_view name) const;

 private:
  static constexpr size_t kPageSize = 0x100;
  using GlyphPage = std::array<uint16_t, kPageSize>;

  // In ems.
  struct Heights {
    double capHeight;
    double ascent;
    double descent;
  };

  // Returns 0, the missing-character glyph, if there is none. In a symbol face, characters below 0x100 also
  // stand for those from 0xF000.
  [[nodiscard]] uint16_t GlyphOf(char16_t unit) const;
  [[nodiscard]] GlyphPage ReadGlyphs(size_t page) const;
  [[nodiscard]] std::vector<uint16_t> ReadAdvances() const;
  [[nodiscard]] const Heights& Measured() const;
  [[nodiscard]] Heights Measure() const;
  [[nodiscard]] double CapHeightOfTable() const;

  FontFacts facts_;
  std::u16string fullName_;
  std::u16string selectingName_;
  ::LOGFONTW own_;
  uint8_t pitchAndFamily_;

  // Read on first use.
  mutable std::array<std::unique_ptr<GlyphPage>, 0x10000 / kPageSize> glyphs_;
  mutable std::optional<std::vector<uint16_t>>
      advances_;  // in font units; the last one applies to all later glyphs
  mutable std::optional<Heights> heights_;
};

class FaceList {
 public:
  [[nodiscard]] static FaceList& Get();

  FaceList() = default;
  FaceList(const FaceList&) = delete;
  FaceList& operator=(const FaceList&) = delete;
  ~FaceList() = default;

  // Returns the face that GDI's mapper selects; null if it has no TrueType outlines.
  [[nodiscard]] const SystemFace* Mapped(const ::LOGFONTW& font);

  // Returns all faces that GDI lists, normal width before narrow, then by name.
  [[nodiscard]] const std::vector<const SystemFace*>& All();

 private:
  struct Known {
    FontNaming names;
    std::unique_ptr<SystemFace> face;  // null for a font that cannot be offered
  };

  [[nodiscard]] std::unique_ptr<SystemFace> MakeFace(FontFacts facts);
  [[nodiscard]] std::u16string FreeFullName(const FontNaming& names) const;

  std::vector<Known> known_;
  std::set<std::u16string> fullNames_;
  std::optional<std::vector<const SystemFace*>> all_;
};

}  // namespace hdi
