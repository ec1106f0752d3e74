// Lays out paragraphs: aligns lines in the box, places them around the insertion point, and writes them as
// few pieces as the looks allow.
#include <algorithm>
#include <deque>

#include "hdiplot/text/mtext_lines.h"
#include "hdiplot/text/text_parts.h"

namespace hdiplot {
namespace {

constexpr double kLineDistance = 5.0 / 3;  // of base lines, in heights of capitals
constexpr double kLeastGap = 0.2;          // between the ink of two lines, in heights
constexpr double kRoundingRoom = 1e-9;

// A line of a paragraph. X coordinates count from the left edge of the box until PlaceAcross.
struct Line {
  const MTextParagraph* paragraph = nullptr;
  const std::vector<TextAtom>* atoms = nullptr;
  TextLineRange range;
  bool isLast = false;
  double indent = 0;
  std::vector<double> xs{};  // where the atoms begin, and the end of the last
  double stretch = 1;        // factor on the letter spacing
  double tallest = 0;        // heights of capitals
  double ascent = 0;         // of all atoms, above the base line
  double depth = 0;          // below it
  double y = 0;              // of the base line

  [[nodiscard]] const TextAtom& AtomAt(size_t i) const { return (*atoms)[range.begin + i]; }
  [[nodiscard]] size_t AtomCount() const { return range.end - range.begin; }

  // Of the span's base line above that of the line.
  [[nodiscard]] double RiseOf(const MTextSpan& span) const {
    return (tallest - span.look.height) * static_cast<double>(span.level) / 2;
  }
};

// The part of a tabbed text that precedes its stop.
double PartBeforeStop(TabStop::Kind kind) { return static_cast<double>(kind) / 2; }

// Writes lines as pieces and rules. A new one starts only where the look or the place changes.
class PieceWriter {
 public:
  PieceWriter(TextBlock& block, FontSource& fonts) : block_(block), fonts_(fonts) {}

  void Write(const Line& line) {
    piece_.reset();
    for (size_t i = 0; i < line.AtomCount(); ++i) WriteAtom(line, i);
    EndPiece();
    EndRules();
  }

 private:
  void WriteAtom(const Line& line, size_t i) {
    const TextAtom& atom = line.AtomAt(i);
    const Vec2 at{line.xs[i], line.y + line.RiseOf(*atom.span)};
    Mark(*atom.span, at, line.xs[i + 1]);
    if (atom.kind == TextAtom::Kind::kTab) {
      EndPiece();
    } else if (atom.kind == TextAtom::Kind::kStack) {
      EndPiece();
      WriteStack(*atom.span, at);
    } else {
      WriteText(atom, at, line.stretch);
    }
  }

  void WriteText(const TextAtom& atom, Vec2 at, double stretch) {
    TextLook look = atom.span->look;
    look.tracking *= stretch;
    if (!piece_ || !Continues(at, look)) {
      EndPiece();
      piece_ = TextPiece{{}, at, 0, std::move(look)};
    }
    piece_->text += atom.text;
    piece_->width += atom.width * stretch;
  }

  [[nodiscard]] bool Continues(Vec2 at, const TextLook& look) const {
    const double end = piece_->at.x + piece_->width;
    const double room = kRoundingRoom * (std::abs(end) + look.height);
    return at.y == piece_->at.y && std::abs(at.x - end) <= room && look == piece_->look;
  }

  void EndPiece() {
    if (piece_) block_.pieces.push_back(std::move(*piece_));
    piece_.reset();
  }

  void WriteStack(const MTextSpan& span, Vec2 at) {
    StackBox box = LayOutStack(*span.stack, span.look, span.level, fonts_);
    AddPart(std::move(box.pieces), std::move(box.rules), at, block_);
  }

  void Mark(const MTextSpan& span, Vec2 at, double toX) {
    const bool continues = marked_ != nullptr && markedFrom_.y == at.y && marked_->marks == span.marks &&
                           marked_->look.font == span.look.font && marked_->look.height == span.look.height &&
                           marked_->look.color == span.look.color;
    if (!continues) {
      EndRules();
      marked_ = &span;
      markedFrom_ = at;
    }
    markedTo_ = toX;
  }

  void EndRules() {
    if (marked_ != nullptr) AddRules(marked_->marks, markedFrom_, markedTo_, marked_->look, block_.rules);
    marked_ = nullptr;
  }

  TextBlock& block_;
  FontSource& fonts_;
  std::optional<TextPiece> piece_;     // still open
  const MTextSpan* marked_ = nullptr;  // the first span under the pending rules
  Vec2 markedFrom_;
  double markedTo_ = 0;
};

class MTextLayout {
 public:
  MTextLayout(const MTextEntity& entity, const TextStyle& style, FontSource& fonts)
      : entity_(entity),
        fonts_(fonts),
        start_(StartLook(style, entity.height, style.widthFactor, style.oblique)),
        height_(start_.height),
        boxWidth_(std::isfinite(entity.wrapWidth) ? std::max(entity.wrapWidth, 0.0) : 0),
        column_((std::clamp(entity.attachment, 1, 9) - 1) % 3),
        row_((std::clamp(entity.attachment, 1, 9) - 1) / 3) {}

  TextBlock Build() {
    paragraphs_ = ParseMText(entity_.text, start_);
    for (const MTextParagraph& paragraph : paragraphs_) AddLines(paragraph);
    SettleBoxWidth();
    for (Line& line : lines_) PlaceAcross(line);
    PlaceDown();
    TextBlock block;
    block.frame = Affine::OfAxes(entity_.right, entity_.up, entity_.place);
    PieceWriter writer(block, fonts_);
    for (const Line& line : lines_) writer.Write(line);
    return block;
  }

 private:
  void AddLines(const MTextParagraph& paragraph) {
    const std::vector<TextAtom>& atoms = atoms_.emplace_back(MeasureAtoms(paragraph, fonts_));
    const ParagraphFormat& format = paragraph.format;
    double indent = (format.left + format.first) * height_;
    for (const TextLineRange& range : BreakLines(atoms, format, height_, boxWidth_)) {
      Line line{.paragraph = &paragraph, .atoms = &atoms, .range = range, .indent = indent};
      line.isLast = range.next == atoms.size();
      MeasureAcross(line);
      MeasureDown(line);
      lines_.push_back(std::move(line));
      indent = format.left * height_;
    }
  }

  void MeasureAcross(Line& line) const {
    const TabRuler tabs(line.paragraph->format, height_);
    double x = line.indent;
    line.xs.push_back(x);
    for (size_t i = 0; i < line.AtomCount(); ++i) {
      const TextAtom& atom = line.AtomAt(i);
      if (atom.kind == TextAtom::Kind::kTab) {
        const TabStop stop = tabs.After(x);
        x = std::max(x, stop.at - PartBeforeStop(stop.kind) * WidthUpToTab(line, i + 1));
      } else {
        x += atom.width;
      }
      line.xs.push_back(x);
    }
  }

  static bool HasTabs(const Line& line) {
    for (size_t i = 0; i < line.AtomCount(); ++i) {
      if (line.AtomAt(i).kind == TextAtom::Kind::kTab) return true;
    }
    return false;
  }

  static double WidthUpToTab(const Line& line, size_t first) {
    double width = 0;
    for (size_t i = first; i < line.AtomCount() && line.AtomAt(i).kind != TextAtom::Kind::kTab; ++i) {
      width += line.AtomAt(i).width;
    }
    return width;
  }

  // Includes trailing blanks: a line of blanks is as high as they are.
  static void MeasureDown(Line& line) {
    const size_t count = line.range.next - line.range.begin;
    for (size_t i = 0; i < count; ++i)
      line.tallest = std::max(line.tallest, line.AtomAt(i).span->look.height);
    if (count == 0) line.tallest = line.paragraph->endHeight;
    line.ascent = line.tallest;
    for (size_t i = 0; i < line.AtomCount(); ++i) {
      const TextAtom& atom = line.AtomAt(i);
      const double rise = line.RiseOf(*atom.span);
      line.ascent = std::max(line.ascent, rise + atom.high);
      line.depth = std::max(line.depth, -rise - atom.low);
    }
  }

  // Without a wrap width the box is as wide as the widest line.
  void SettleBoxWidth() {
    if (boxWidth_ > 0) return;
    for (const Line& line : lines_) {
      boxWidth_ = std::max(boxWidth_, line.xs.back() + line.paragraph->format.right * height_);
    }
  }

  [[nodiscard]] ParagraphAlign AlignOf(const Line& line) const {
    constexpr ParagraphAlign kByColumn[] = {ParagraphAlign::kLeft, ParagraphAlign::kCenter,
                                            ParagraphAlign::kRight};
    const ParagraphAlign own = line.paragraph->format.align;
    return own == ParagraphAlign::kByAttachment ? kByColumn[column_] : own;
  }

  void PlaceAcross(Line& line) const {
    const double rightEdge = boxWidth_ - line.paragraph->format.right * height_;
    const double room = rightEdge - line.xs.back();
    double shift = -boxWidth_ * column_ / 2;
    switch (AlignOf(line)) {
      case ParagraphAlign::kCenter:
        shift += room / 2;
        break;
      case ParagraphAlign::kRight:
        shift += room;
        break;
      case ParagraphAlign::kJustified:
        if (room > 0 && !line.isLast) WidenBlanks(line, room);
        break;
      case ParagraphAlign::kDistributed:
        if (room > 0) WidenLetters(line, room);
        break;
      default:
        break;
    }
    for (double& x : line.xs) x += shift;
  }

  // Text at tab stops keeps its place: only what follows the last tab is widened, without leading blanks.
  static size_t FirstToWiden(const Line& line) {
    size_t first = line.AtomCount();
    while (first > 0 && line.AtomAt(first - 1).kind != TextAtom::Kind::kTab) --first;
    while (first < line.AtomCount() && line.AtomAt(first).kind == TextAtom::Kind::kBlank) ++first;
    return first;
  }

  static void WidenBlanks(Line& line, double room) {
    const size_t first = FirstToWiden(line);
    int blanks = 0;
    for (size_t i = first; i < line.AtomCount(); ++i) {
      if (line.AtomAt(i).kind == TextAtom::Kind::kBlank) ++blanks;
    }
    int passed = 0;
    for (size_t i = first; i < line.AtomCount(); ++i) {
      if (line.AtomAt(i).kind == TextAtom::Kind::kBlank) ++passed;
      if (blanks > 0) line.xs[i + 1] += room * passed / blanks;
    }
  }

  static void WidenLetters(Line& line, double room) {
    const double width = line.xs.back() - line.indent;
    if (!(width > 0) || HasTabs(line)) return;
    line.stretch = 1 + room / width;
    for (double& x : line.xs) x = line.indent + (x - line.indent) * line.stretch;
  }

  [[nodiscard]] double Distance(const Line& above, const Line& below) const {
    const double usual = kLineDistance * (entity_.lineSpacing > 0 ? UsableFactor(entity_.lineSpacing) : 1);
    if (entity_.exactSpacing) return usual * height_;
    return std::max(usual * std::max(height_, below.tallest),
                    above.depth + below.ascent + kLeastGap * height_);
  }

  // The depth of a line's letters and stacks below its base line.
  [[nodiscard]] double FootOf(const Line& line) const {
    if (line.range.next == line.range.begin) {
      return -fonts_.FontFor(start_.font).Descent() * line.tallest;
    }
    double foot = line.depth;
    for (size_t i = 0; i < line.AtomCount(); ++i) {
      const MTextSpan& span = *line.AtomAt(i).span;
      const double descent = fonts_.FontFor(span.look.font).Descent() * span.look.height;
      foot = std::max(foot, -line.RiseOf(span) - descent);
    }
    return foot;
  }

  // The text reaches from the capitals of the first line to the descenders of the last.
  void PlaceDown() {
    double y = -lines_.front().ascent;
    lines_.front().y = y;
    for (size_t i = 1; i < lines_.size(); ++i) {
      y -= Distance(lines_[i - 1], lines_[i]);
      lines_[i].y = y;
    }
    const double shift = (FootOf(lines_.back()) - y) * row_ / 2;
    for (Line& line : lines_) line.y += shift;
  }

  const MTextEntity& entity_;
  FontSource& fonts_;
  TextLook start_;
  double height_;    // of the whole text's capitals
  double boxWidth_;  // 0: not known yet
  int column_;
  int row_;
  std::vector<MTextParagraph> paragraphs_;
  std::deque<std::vector<TextAtom>> atoms_;  // by paragraph; lines point into it
  std::vector<Line> lines_;
};

// In heights of the text's capitals: the distance from foot to head of horizontal lines.
constexpr double kColumnGap = 2.0 / 3;
// The side bearing of a letter, in heights. Columns are aligned by their ink.
constexpr double kWhite = 1.0 / 7;

TextColumn ColumnOf(const MTextParagraph& paragraph, FontSource& fonts) {
  TextColumn column;
  for (const MTextSpan& span : paragraph.spans) {
    if (span.stack) {
      column.Add(LayOutStack(*span.stack, span.look, span.level, fonts), span.look);
    } else {
      const bool isTab = span.text == u"\t";
      column.Add(isTab ? u" " : std::u16string_view(span.text), fonts.FontFor(span.look.font), span.look);
    }
  }
  return column;
}

// Each paragraph is a column, whatever the entity's width; the first is the leftmost. Lines along the text,
// indents, tab stops and alignment do not apply.
TextBlock LayOutVerticalMText(const MTextEntity& entity, const TextStyle& style, FontSource& fonts) {
  const TextLook start = StartLook(style, entity.height, style.widthFactor, style.oblique);
  std::vector<TextColumn> columns;
  double widest = 0;
  double longest = 0;
  for (const MTextParagraph& paragraph : ParseMText(entity.text, start)) {
    const TextColumn& column = columns.emplace_back(ColumnOf(paragraph, fonts));
    widest = std::max(widest, column.Width());
    longest = std::max(longest, column.Length());
  }
  widest = std::max(widest - 2 * kWhite * start.height, 0.0);
  const double gap = kColumnGap * start.height;
  const double distance = (widest + gap) * (entity.lineSpacing > 0 ? UsableFactor(entity.lineSpacing) : 1);
  const auto count = static_cast<double>(columns.size());
  // Every column is as wide as the distance, the last one too, less the default gap.
  const double boxWidth = std::max(count * distance - gap, (count - 1) * distance + widest);

  const int place = std::clamp(entity.attachment, 1, 9) - 1;
  TextBlock block;
  block.frame = Affine::OfAxes(entity.right, entity.up, entity.place);
  const int row = place / 3;
  Vec2 top{widest / 2 - boxWidth * (place % 3) / 2, longest * row / 2};
  for (const TextColumn& column : columns) {
    column.WriteTo(block, top);
    top.x += distance;
  }
  return block;
}

}  // namespace

TextBlock LayOutMText(const MTextEntity& entity, const TextStyle& style, FontSource& fonts) {
  if (entity.vertical || style.vertical) return LayOutVerticalMText(entity, style, fonts);
  return MTextLayout(entity, style, fonts).Build();
}

}  // namespace hdiplot
