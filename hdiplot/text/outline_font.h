// A font with outlines, and its metrics.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "hdiplot/text/text_block.h"
#include "platform/font_faces.h"

namespace hdiplot {

// A value for each UTF-16 unit, made when first asked for. References stay valid.
template <typename Value>
class UnitTable {
 public:
  // The value of `unit`; `make(unit)` gives it the first time.
  template <typename Make>
  const Value& Get(char16_t unit, const Make& make) {
    auto& page = pages_[unit / kPageSize];
    if (page == nullptr) page = std::make_unique<Page>();
    std::optional<Value>& value = (*page)[unit % kPageSize];
    if (!value) value = make(unit);
    return *value;
  }

 private:
  static constexpr size_t kPageSize = 256;
  using Page = std::array<std::optional<Value>, kPageSize>;
  std::array<std::unique_ptr<Page>, 0x10000 / kPageSize> pages_;
};

// A face, and the faces that the driver substitutes for characters that it lacks, at the same size. Not
// thread-safe.
class OutlineFont final : public TextFont {
 public:
  // The face that `font` selects.
  OutlineFont(const hdi::FontFace& face, const hdi::LOGFONTW& font);

  [[nodiscard]] double Advance(char16_t unit) const override { return Of(unit).advance; }
  [[nodiscard]] double Ascent() const override { return face_.Ascent() * emSize_; }
  [[nodiscard]] double Descent() const override { return face_.Descent() * emSize_; }

  [[nodiscard]] const hdi::FontFace& Face() const { return face_; }
  // Selects the face, without size and direction.
  [[nodiscard]] const hdi::LOGFONTW& Selection() const { return font_; }
  // An em in heights of capitals.
  [[nodiscard]] double EmSize() const { return emSize_; }
  // The face that draws `unit`; null when no installed face has it.
  [[nodiscard]] const hdi::FontFace* FaceOf(char16_t unit) const { return Of(unit).face; }
  // The unit to draw for `unit`: symbol fonts use a private range.
  [[nodiscard]] char16_t Drawn(char16_t unit) const { return Of(unit).drawn; }

  // The outline as the driver draws it, including its synthetic slant. In heights of capitals.
  [[nodiscard]] const std::vector<hdi::GlyphContour>& Outline(char16_t unit) const;

 private:
  struct Character {
    const hdi::FontFace* face;
    char16_t drawn;
    double advance;
  };
  [[nodiscard]] const Character& Of(char16_t unit) const;
  [[nodiscard]] Character Find(char16_t unit) const;
  // Whether the driver slants the face.
  [[nodiscard]] bool IsSlanted(const hdi::FontFace& face) const;

  const hdi::FontFace& face_;
  hdi::LOGFONTW font_;
  double emSize_;
  mutable std::map<const hdi::FontFace*, bool> slanted_;
  mutable UnitTable<Character> characters_;
  mutable UnitTable<std::vector<hdi::GlyphContour>> outlines_;
};

}  // namespace hdiplot
