#include "hdiplot/text/mtext_lines.h"

#include "hdiplot/text/text_parts.h"

namespace hdiplot {
namespace {

constexpr double kUsualTab = 4;         // in heights
constexpr double kRoundingRoom = 1e-9;  // of a line's width, the tolerance for a word that just fits

bool Contains(std::u16string_view set, char16_t unit) { return set.find(unit) != std::u16string_view::npos; }

bool IsBreakBetween(char16_t before, char16_t after) {
  if (!IsIdeograph(before) && !IsIdeograph(after) && (before & 0xfc00) != 0xdc00) return false;
  const bool staysBefore = Contains(u"、。，．・：；？！）」』】〉》〕〗ー々ゝゞ,.:;?!)]}%", after);
  const bool staysBehind = Contains(u"（「『【〈《〔〖([{", before);
  return !staysBefore && !staysBehind && (after & 0xfc00) != 0xdc00;
}

class AtomMaker {
 public:
  explicit AtomMaker(FontSource& fonts) : fonts_(fonts) {}

  std::vector<TextAtom> Make(const MTextParagraph& paragraph) {
    for (const MTextSpan& span : paragraph.spans) {
      if (span.stack) {
        AddStack(span);
      } else if (span.text == u"\t") {
        Add({.span = &span, .kind = TextAtom::Kind::kTab, .high = span.look.height});
      } else {
        AddText(span);
      }
    }
    return std::move(atoms_);
  }

 private:
  void AddStack(const MTextSpan& span) {
    const StackBox box = LayOutStack(*span.stack, span.look, span.level, fonts_);
    Add({.span = &span,
         .width = box.width,
         .kind = TextAtom::Kind::kStack,
         .low = box.low,
         .high = box.high});
  }

  void AddText(const MTextSpan& span) {
    const TextFont& font = fonts_.FontFor(span.look.font);
    std::u16string_view rest = span.text;
    while (!rest.empty()) {
      const bool blank = IsBlank(rest.front());
      size_t size = 1;
      while (size < rest.size() && IsBlank(rest[size]) == blank &&
             (blank || !IsBreakBetween(rest[size - 1], rest[size]))) {
        ++size;
      }
      const std::u16string_view text = rest.substr(0, size);
      Add({.span = &span,
           .text = text,
           .width = WidthOf(text, font, span.look),
           .kind = blank ? TextAtom::Kind::kBlank : TextAtom::Kind::kText,
           .high = span.look.height});
      rest.remove_prefix(size);
    }
  }

  void Add(TextAtom atom) {
    atom.mayStartLine = atoms_.empty() || MayBreak(atoms_.back(), atom);
    atoms_.push_back(atom);
  }

  static bool MayBreak(const TextAtom& before, const TextAtom& after) {
    if (before.kind == TextAtom::Kind::kBlank || before.kind == TextAtom::Kind::kTab) return true;
    if (before.kind != TextAtom::Kind::kText || after.kind != TextAtom::Kind::kText) return false;
    return IsBreakBetween(before.text.back(), after.text.front());
  }

  FontSource& fonts_;
  std::vector<TextAtom> atoms_;
};

bool IsWordPart(const TextAtom& atom) {
  return atom.kind == TextAtom::Kind::kText || atom.kind == TextAtom::Kind::kStack;
}

// Fills one line after the other.
class LineBreaker {
 public:
  LineBreaker(const std::vector<TextAtom>& atoms, const TabRuler& tabs, double rightEdge)
      : atoms_(atoms), tabs_(tabs), rightEdge_(rightEdge) {}

  // The line from `begin` on, which starts at `x` from the left edge of the box.
  [[nodiscard]] TextLineRange Fill(size_t begin, double x) const {
    TextLineRange line{begin, begin, begin};
    while (line.next < atoms_.size()) {
      const TextAtom& atom = atoms_[line.next];
      size_t behind = line.next + 1;
      double width = atom.width;
      if (atom.kind == TextAtom::Kind::kTab) {
        width = tabs_.After(x).at - x;
      } else if (IsWordPart(atom)) {
        for (; behind < atoms_.size() && IsWordPart(atoms_[behind]) && !atoms_[behind].mayStartLine;
             ++behind) {
          width += atoms_[behind].width;
        }
      }
      const bool isBlank = atom.kind == TextAtom::Kind::kBlank;
      if (!isBlank && x + width > rightEdge_ && line.next > begin) break;
      x += width;
      line.next = behind;
      if (!isBlank) line.end = behind;
    }
    return line;
  }

 private:
  const std::vector<TextAtom>& atoms_;
  const TabRuler& tabs_;
  double rightEdge_;
};

}  // namespace

TabStop TabRuler::After(double x) const {
  const double least = x + kRoundingRoom * (std::abs(x) + height_);
  const double usual = kUsualTab * height_;
  TabStop next{(std::floor(least / usual) + 1) * usual, TabStop::Kind::kLeft};
  bool found = false;
  const auto offer = [&](double heights, TabStop::Kind kind) {
    const double at = heights * height_;
    if (at <= least || (found && at >= next.at)) return;
    next = {at, kind};
    found = true;
  };
  for (const TabStop& stop : format_.tabs) offer(stop.at, stop.kind);
  // With a hanging first line, the indent of the other lines is a stop, too.
  if (format_.first < 0) offer(format_.left, TabStop::Kind::kLeft);
  return next;
}

std::vector<TextAtom> MeasureAtoms(const MTextParagraph& paragraph, FontSource& fonts) {
  return AtomMaker(fonts).Make(paragraph);
}

std::vector<TextLineRange> BreakLines(const std::vector<TextAtom>& atoms, const ParagraphFormat& format,
                                      double height, double boxWidth) {
  const double rightEdge = boxWidth > 0 ? (boxWidth - format.right * height) + boxWidth * kRoundingRoom
                                        : std::numeric_limits<double>::infinity();
  const TabRuler tabs(format, height);
  const LineBreaker breaker(atoms, tabs, rightEdge);
  std::vector<TextLineRange> lines{breaker.Fill(0, (format.left + format.first) * height)};
  while (lines.back().next < atoms.size()) {
    lines.push_back(breaker.Fill(lines.back().next, format.left * height));
  }
  return lines;
}

}  // namespace hdiplot
