// The fonts of a plot. Each choice is looked up once; a font that is not installed is substituted.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "hdiplot/text/font_map.h"
#include "hdiplot/text/outline_font.h"
#include "hdiplot/text/stroke_font.h"
#include "hdiplot/text/text_block.h"

namespace hdiplot {

// Exactly one of the two is set. Owned by the book.
struct PlotFont {
  const StrokeFont* stroke = nullptr;
  const OutlineFont* outline = nullptr;
};

class FontBook final : public FontSource {
 public:
  // Called once for each missing font, with its substitute.
  using Report = std::function<void(const std::string& name, const std::string& substitute)>;

  explicit FontBook(FontMap map = {}, Report report = {});

  [[nodiscard]] const TextFont& FontFor(const FontChoice& choice) override;
  [[nodiscard]] PlotFont Find(const FontChoice& choice);

  // The font of the invisible text over stroked text. Null on a system without fonts.
  [[nodiscard]] const OutlineFont* InterfaceFont();

 private:
  using StrokeKey = std::tuple<std::string, bool, const OutlineFont*>;  // font, monospaced, big font
  using OutlineKey = std::tuple<std::string, bool, bool>;               // family, bold, italic

  [[nodiscard]] PlotFont LookUp(const FontChoice& choice);
  [[nodiscard]] MappedFont Mapped(const FontChoice& choice);
  [[nodiscard]] const OutlineFont* Outline(const MappedFont& font);
  [[nodiscard]] const StrokeFont& Strokes(const MappedFont& font, const std::string& bigFontFile);
  [[nodiscard]] std::string InstalledFamily(const std::string& family) const;
  void ReportMissing(const std::string& name, const std::string& standIn);

  FontMap map_;
  Report report_;
  std::vector<std::pair<FontChoice, PlotFont>> found_;  // a plot has few of them
  size_t last_ = 0;                                     // texts come in runs of one font
  std::map<StrokeKey, std::unique_ptr<StrokeFont>> strokes_;
  std::map<OutlineKey, std::unique_ptr<OutlineFont>> outlines_;
  std::unique_ptr<OutlineFont> interface_;
  std::set<std::string> reported_;
};

}  // namespace hdiplot
