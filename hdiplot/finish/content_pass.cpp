#include "hdiplot/finish/content_pass.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

#include "hdiplot/finish/content_reader.h"
#include "hdiplot/finish/pdfa.h"
#include "hdiplot/finish/pdfa_limits.h"

namespace hdiplot {

namespace {

using Kind = ContentToken::Kind;

constexpr uint32_t Code(std::string_view name) {
  uint32_t code = 0;
  for (const char c : name) code = code << 8 | static_cast<uint8_t>(c);
  return code;
}

// Operators that need no more than this pass does (ISO 32000-1:2008, Annex A). Others show text in other
// forms, or use colour spaces, shadings, inline images or Type 3 fonts.
constexpr auto MakeOperators() {
  std::array codes = {
      Code("b"),  Code("B"),  Code("b*"), Code("B*"), Code("BDC"), Code("BMC"), Code("BT"), Code("c"),
      Code("cm"), Code("d"),  Code("Do"), Code("DP"), Code("EMC"), Code("ET"),  Code("f"),  Code("F"),
      Code("f*"), Code("g"),  Code("G"),  Code("gs"), Code("h"),   Code("i"),   Code("j"),  Code("J"),
      Code("l"),  Code("m"),  Code("M"),  Code("MP"), Code("n"),   Code("q"),   Code("Q"),  Code("re"),
      Code("rg"), Code("RG"), Code("s"),  Code("S"),  Code("T*"),  Code("Tc"),  Code("Td"), Code("TD"),
      Code("Tf"), Code("Tj"), Code("TJ"), Code("TL"), Code("Tm"),  Code("Tr"),  Code("Ts"), Code("Tw"),
      Code("Tz"), Code("v"),  Code("w"),  Code("W"),  Code("W*"),  Code("y"),
  };
  std::ranges::sort(codes);
  return codes;
}

constexpr auto kOperators = MakeOperators();
constexpr size_t kDeepestNesting = 28;
constexpr int kInvisible = 3;  // text rendering mode

struct TextState {
  std::string_view font;  // without the slash
  double size = 0;
  double characterSpace = 0;
  int renderMode = 0;
};

struct Level {
  size_t position = 0;  // of "q"
  size_t height = 0;    // of the balanced pairs within
  TextState text;       // that "Q" restores
};

struct Edit {
  size_t begin = 0;
  size_t end = 0;
  std::string replacement;
};

double NumberIn(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw NoPdfA(fmt::format("\"{}\" is no number", text));
  }
  return value;
}

class ContentPass {
 public:
  ContentPass(std::string_view content, const FontsByName& fonts) : content_(content), fonts_(fonts) {}

  ConformingContent Run() {
    ContentReader reader(content_);
    for (ContentToken token = reader.Next(); token.kind != Kind::kEnd; token = reader.Next()) {
      if (token.kind == Kind::kOperator) {
        Operator(token);
        operands_.clear();
      } else {
        Operand(token);
      }
    }
    CloseLevels();
    ConformingContent result;
    if (!edits_.empty()) result.content = Edited();
    result.glyphsLeftOut = glyphsLeftOut_;
    return result;
  }

 private:
  [[nodiscard]] std::string_view Text(const ContentToken& token) const {
    return content_.substr(token.begin, token.end - token.begin);
  }

  void Operand(const ContentToken& token) {
    if (token.kind == Kind::kNumber) Number(token);
    if (token.kind == Kind::kName) CheckNameLimit(Text(token).substr(1));
    if (token.kind == Kind::kString) CheckStringLimit(token.end - token.begin - 2);
    operands_.push_back(token);
  }

  // An integer beyond 32 bits becomes a real number.
  void Number(const ContentToken& token) {
    constexpr size_t kShort = 9;  // too short to be beyond a limit, as most are
    const std::string_view text = Text(token);
    if (text.size() <= kShort) return;
    const double value = NumberIn(text);
    const bool isInteger = text.find('.') == std::string_view::npos;
    if (isInteger && !FitsInteger(value)) edits_.push_back({token.end, token.end, "."});
    CheckRealLimit(value);
  }

  void Operator(const ContentToken& token) {
    const std::string_view name = Text(token);
    if (name == "true" || name == "false" || name == "null") return;
    const uint32_t code = name.size() <= 3 ? Code(name) : 0;
    if (!std::ranges::binary_search(kOperators, code)) {
      throw NoPdfA(fmt::format("the content has the operator \"{}\"", name));
    }
    switch (code) {
      case Code("q"):
        levels_.push_back({token.begin, 0, text_});
        break;
      case Code("Q"):
        Restore(token);
        break;
      case Code("Tc"):
        text_.characterSpace = NumberIn(Text(Argument(1)));
        break;
      case Code("Tf"):
        SetFont();
        break;
      case Code("Tr"):
        text_.renderMode = static_cast<int>(NumberIn(Text(Argument(1))));
        break;
      case Code("Tj"):
        Show(token);
        break;
      case Code("TJ"):
        ShowArray();
        break;
      default:
        break;
    }
  }

  // Counted from the operator.
  [[nodiscard]] const ContentToken& Argument(size_t number) const {
    if (operands_.size() < number) throw NoPdfA("an operator of the content lacks an operand");
    return operands_[operands_.size() - number];
  }

  void Restore(const ContentToken& token) {
    if (levels_.empty()) {
      edits_.push_back({token.begin, token.end, ""});
      return;
    }
    text_ = levels_.back().text;
    const size_t height = levels_.back().height + 1;
    levels_.pop_back();
    size_t& around = levels_.empty() ? height_ : levels_.back().height;
    around = std::max(around, height);
  }

  // Levels that nothing restores are the outermost ones. Without them, the pairs within count alone.
  void CloseLevels() {
    for (const Level& level : levels_) {
      edits_.push_back({level.position, level.position + 1, ""});
      height_ = std::max(height_, level.height);
    }
    if (height_ > kDeepestNesting) {
      throw NoPdfA(
          fmt::format("the content nests graphics states {} deep, more than {}", height_, kDeepestNesting));
    }
  }

  void SetFont() {
    text_.font = Text(Argument(2)).substr(1);
    text_.size = NumberIn(Text(Argument(1)));
  }

  void Show(const ContentToken& token) {
    if (!LeaveOutMissingGlyphs(Argument(1))) return;
    Edit& string = edits_.back();
    string.replacement = "[" + string.replacement + "]";
    edits_.push_back({token.begin, token.end, "TJ"});
  }

  void ShowArray() {
    for (const ContentToken& token : operands_) {
      if (token.kind == Kind::kString || token.kind == Kind::kHexString) LeaveOutMissingGlyphs(token);
    }
  }

  // Replaces a string with glyph 0 by its other parts and numbers, as elements of an array for TJ.
  bool LeaveOutMissingGlyphs(const ContentToken& token) {
    constexpr size_t kDigits = 4;
    constexpr std::string_view kMissing = "0000";
    std::string_view codes = Text(token);
    if (token.kind != Kind::kHexString || codes.size() % kDigits != 2) {
      throw NoPdfA("the content shows text in another form than two-byte codes in hexadecimal");
    }
    codes = codes.substr(1, codes.size() - 2);
    CheckStringLimit(codes.size() / 2);
    const FontFacts& font = Font();
    std::string parts;
    size_t missing = 0;
    for (size_t i = 0; i < codes.size(); i += kDigits) {
      const std::string_view code = codes.substr(i, kDigits);
      CheckGlyph(code, font);
      if (code == kMissing) {
        ++missing;
        parts += fmt::format(" {} ", Advance(font));
      } else if (parts.ends_with('>')) {
        parts.insert(parts.size() - 1, code);
      } else {
        parts.append("<").append(code).append(">");
      }
    }
    if (missing == 0) return false;
    if (text_.renderMode != kInvisible) glyphsLeftOut_ += missing;
    edits_.push_back({token.begin, token.end, parts});
    return true;
  }

  [[nodiscard]] const FontFacts& Font() const {
    const auto font = fonts_.find(text_.font);
    if (font == fonts_.end()) throw NoPdfA(fmt::format("the content names no font \"{}\"", text_.font));
    return font->second;
  }

  static void CheckGlyph(std::string_view code, const FontFacts& font) {
    uint32_t glyph = 0;
    const auto [end, error] = std::from_chars(code.data(), code.data() + code.size(), glyph, 16);
    if (error != std::errc() || end != code.data() + code.size()) {
      throw NoPdfA("a hexadecimal string of the content has other characters than digits");
    }
    if (glyph >= font.glyphCount)
      throw NoPdfA(fmt::format("the content shows glyph {}, which its font lacks", glyph));
  }

  // As TJ takes it: what moves right is negative, in thousandths of the font size.
  [[nodiscard]] double Advance(const FontFacts& font) const {
    const double space = text_.size == 0 ? 0 : text_.characterSpace * 1000 / text_.size;
    return -(font.missingGlyphWidth + space);
  }

  [[nodiscard]] std::string Edited() {
    std::ranges::sort(edits_, {}, &Edit::begin);
    std::string edited;
    edited.reserve(content_.size());
    size_t position = 0;
    for (const Edit& edit : edits_) {
      edited.append(content_.substr(position, edit.begin - position)).append(edit.replacement);
      position = edit.end;
    }
    return edited.append(content_.substr(position));
  }

  std::string_view content_;
  const FontsByName& fonts_;
  std::vector<ContentToken> operands_;
  std::vector<Level> levels_;
  size_t height_ = 0;  // of the balanced pairs outside of all levels
  TextState text_;
  std::vector<Edit> edits_;
  uint64_t glyphsLeftOut_ = 0;
};

}  // namespace

ConformingContent ConformContent(std::string_view content, const FontsByName& fonts) {
  return ContentPass(content, fonts).Run();
}

}  // namespace hdiplot
