// The faces of this module: those of fontconfig's current configuration that have TrueType outlines and that
// a LOGFONTW can select. The list is built on first use and never changes.
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

struct FaceNames {
  std::vector<std::u16string> families;  // name ID 1 of the OpenType "name" table, best first, truncated
  std::u16string full;
  std::u16string selecting;  // the one of `families` that selects the face
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
  [[nodiscard]] uint64_t FileSize() const { return fileSize_; }  // when the list was built
  [[nodiscard]] bool IsInCollection() const { return isInCollection_; }
  // Whether its characters come from a Microsoft symbol map.
  [[nodiscard]] bool IsSymbol() const { return isSymbol_; }

  // Whether fontconfig lists the character, so that opening the face may be worthwhile.
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
  mutable std::unique_ptr<FontGlyphs> glyphs_;  // opened on first use
};

// How a name refers to a face, best first.
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

  // In an order that depends only on the fonts.
  [[nodiscard]] const std::vector<std::unique_ptr<SystemFace>>& Faces() const { return faces_; }
  // Returns the faces of that name, ignoring case, in list order; null if there are none.
  [[nodiscard]] const std::vector<NamedFace>* Named(std::u16string_view name) const;
  // Returns all faces from the best to the worst match of a substituted pattern.
  [[nodiscard]] std::vector<const SystemFace*> Sorted(FcPattern* pattern) const;

  [[nodiscard]] FcConfig* Config() const { return config_.get(); }

 private:
  struct Release {
    void operator()(FcConfig* config) const { FcConfigDestroy(config); }
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
  };

  void AddName(std::u16string_view name, NameKind kind, const SystemFace* face);
  void AddNames(const SystemFace& face);

  std::unique_ptr<FcConfig, Release> config_;  // owns the patterns
  std::vector<std::unique_ptr<SystemFace>> faces_;
  std::unordered_map<std::u16string, std::vector<NamedFace>> byName_;
  std::unordered_map<const FcPattern*, const SystemFace*> byPattern_;
  std::unique_ptr<FcFontSet, Release> patterns_;
};

}  // namespace hdi
