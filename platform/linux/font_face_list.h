// The faces that this module offers: those of fontconfig's current configuration whose outlines are TrueType
// and which a LOGFONTW can select. The list is made at the first question and stays as it is.
#pragma once

#include <fontconfig/fontconfig.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/font_faces.h"
#include "platform/linux/font_glyphs.h"

namespace hdi {

// A LOGFONTW has room for so many units of a family's name. Longer names are known by their beginning.
inline constexpr size_t kMaxFamilyUnits = 31;

struct FaceNames {
  std::vector<std::u16string> families;  // name 1 of the OpenType table "name", best one first, cut to fit
  std::u16string full;
  std::u16string selecting;  // the one of `families` by which the face is found
};

class SystemFace final : public FontFace {
 public:
  // `pattern` must outlive the face.
  SystemFace(FcPattern* pattern, FaceNames names, bool isInCollection, bool isSymbol, uint64_t fileSize);

  [[nodiscard]] const std::u16string& FullName() const override { return names_.full; }
  [[nodiscard]] const std::u16string& Family() const override { return names_.selecting; }
  [[nodiscard]] int32_t Weight() const override { return weight_; }
  [[nodiscard]] bool IsItalic() const override { return isItalic_; }
  [[nodiscard]] bool HasCharacter(char16_t unit) const override { return Glyphs().GlyphOf(unit) != 0; }
  [[nodiscard]] double Advance(char16_t unit) const override;
  [[nodiscard]] double CapHeight() const override { return Glyphs().CapHeight(); }
  [[nodiscard]] double Ascent() const override { return Glyphs().Ascent(); }
  [[nodiscard]] double Descent() const override { return Glyphs().Descent(); }
  [[nodiscard]] std::vector<GlyphContour> Outline(char16_t unit) const override;

  [[nodiscard]] FcPattern* Pattern() const { return pattern_; }
  [[nodiscard]] const FaceNames& Names() const { return names_; }
  [[nodiscard]] std::string Path() const;
  [[nodiscard]] uint32_t MemberIndex() const;
  [[nodiscard]] uint64_t FileSize() const { return fileSize_; }  // when the list was made
  [[nodiscard]] bool IsInCollection() const { return isInCollection_; }
  // Whether its characters are those of a Microsoft symbol map.
  [[nodiscard]] bool IsSymbol() const { return isSymbol_; }

  // Whether it may be worth the opening for that character.
  [[nodiscard]] bool SeemsToHave(char16_t unit) const;

 private:
  [[nodiscard]] const FontGlyphs& Glyphs() const;

  FcPattern* pattern_;
  FaceNames names_;
  int32_t weight_;
  bool isItalic_;
  bool isInCollection_;
  bool isSymbol_;
  uint64_t fileSize_;
  mutable std::unique_ptr<FontGlyphs> glyphs_;  // opened at the first question
};

// How a face goes by a name; nearer kinds count more.
enum class NameKind { kFamily, kOtherFamily, kFullName };

struct NamedFace {
  NameKind kind;
  const SystemFace* face;
};

class FaceList {
 public:
  [[nodiscard]] static const FaceList& Get();

  FaceList();
  FaceList(const FaceList&) = delete;
  FaceList& operator=(const FaceList&) = delete;
  ~FaceList() = default;

  // In an order that depends on nothing but the fonts.
  [[nodiscard]] const std::vector<std::unique_ptr<SystemFace>>& Faces() const { return faces_; }
  // The faces of that name, without regard to case, in the list's order; null when there are none.
  [[nodiscard]] const std::vector<NamedFace>* Named(std::u16string_view name) const;
  // All faces from the best to the worst match of a pattern that has been substituted.
  [[nodiscard]] std::vector<const SystemFace*> Sorted(FcPattern* pattern) const;

  [[nodiscard]] FcConfig* Config() const { return config_.get(); }

 private:
  struct Release {
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
  };

  void AddName(std::u16string_view name, NameKind kind, const SystemFace* face);
  void AddNames(const SystemFace& face);

  std::unique_ptr<FcConfig, Release> config_;  // keeps the patterns
  std::vector<std::unique_ptr<SystemFace>> faces_;
  std::unordered_map<std::u16string, std::vector<NamedFace>> byName_;
  std::unordered_map<const FcPattern*, const SystemFace*> byPattern_;
  std::unique_ptr<FcFontSet, Release> patterns_;
};

}  // namespace hdi
