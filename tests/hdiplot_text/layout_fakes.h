// Fonts of one width, and layouts as words that a test can name.
#pragma once

#include <fmt/format.h>

#include "host/hdiplot/text/text_block.h"
#include "platform/unicode.h"

namespace hdiplot {

class EvenFont final : public TextFont {
 public:
  explicit EvenFont(double advance) : advance_(advance) {}
  [[nodiscard]] double Advance(char16_t /*unit*/) const override { return advance_; }
  [[nodiscard]] double Ascent() const override { return 1.25; }
  [[nodiscard]] double Descent() const override { return -0.25; }

 private:
  double advance_;
};

// Characters are as wide as capitals are high; in the family "Wide" twice that.
class EvenFonts final : public FontSource {
 public:
  const TextFont& FontFor(const FontChoice& choice) override {
    return choice.family == "Wide" ? wide_ : usual_;
  }

 private:
  EvenFont usual_{1};
  EvenFont wide_{2};
};

// Without the noise of the last digits, and without a sign before 0.
inline std::string Number(double value) {
  const double rounded = std::round(value * 1000) / 1000;
  return fmt::format("{}", rounded == 0 ? 0 : rounded);
}

inline std::string Place(Vec2 at) { return Number(at.x) + "," + Number(at.y); }

// "text@x,y" of each piece.
inline std::string PiecesOf(const TextBlock& block) {
  std::string words;
  for (const TextPiece& piece : block.pieces) {
    words += (words.empty() ? "" : " | ") + hdi::ToUtf8(piece.text) + "@" + Place(piece.at);
  }
  return words;
}

inline std::string RulesOf(const TextBlock& block) {
  std::string words;
  for (const TextRule& rule : block.rules) {
    words += (words.empty() ? "" : " | ") + Place(rule.from) + " to " + Place(rule.to);
  }
  return words;
}

}  // namespace hdiplot
