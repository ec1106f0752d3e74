// Lays out paragraphs: aligns lines in the box, places them around the insertion point, and writes them as
// few pieces as the looks allow.
#include <algorithm>
#include <deque>

#include "hdiplot/text/font_map.h"
#include "hdiplot/text/mtext_columns.h"
#include "hdiplot/text/mtext_lines.h"
#include "hdiplot/text/mtext_vertical.h"
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
  bool startsColumn = false;  // by a break in the text
  size_t column = 0;          // that it is in
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
        flow_(entity.extras && entity.extras->columns ? &*entity.extras->columns : nullptr),
        boxWidth_(BoxWidthOf(entity)),
        column_((std::clamp(entity.attachment, 1, 9) - 1) % 3),
        row_((std::clamp(entity.attachment, 1, 9) - 1) / 3) {}

  TextBlock Build() {
    paragraphs_ = ParseMText(entity_.text, start_);
    for (const MTextParagraph& paragraph : paragraphs_) AddLines(paragraph);
    SettleBoxWidth();
    TextBlock block;
    block.frame = Affine::OfAxes(entity_.right, entity_.up, entity_.place);
    Box area = PlaceDown();
    for (Line& line : lines_) {
      PlaceAcross(line);
      area.Add({line.xs.front(), line.y});
      area.Add({line.xs.back(), line.y});
    }
    if (entity_.extras && (entity_.extras->panel.masked || entity_.extras->panel.framed)) {
      block.panel = PanelAround(area);
    }
    PieceWriter writer(block, fonts_);
    for (const Line& line : lines_) writer.Write(line);
    return block;
  }

 private:
  static double BoxWidthOf(const MTextEntity& entity) {
    const bool hasColumns = entity.extras && entity.extras->columns;
    const double width = hasColumns ? entity.extras->columns->width : entity.wrapWidth;
    return std::isfinite(width) ? std::max(width, 0.0) : 0;
  }

  void AddLines(const MTextParagraph& paragraph) {
    const std::vector<TextAtom>& atoms = atoms_.emplace_back(MeasureAtoms(paragraph, fonts_));
    const ParagraphFormat& format = paragraph.format;
    double indent = (format.left + format.first) * height_;
    for (const TextLineRange& range : BreakLines(atoms, format, height_, boxWidth_)) {
      Line line{.paragraph = &paragraph, .atoms = &atoms, .range = range, .indent = indent};
      line.isLast = range.next == atoms.size();
      line.startsColumn = paragraph.startsColumn && range.begin == 0;
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
    double shift = LeftEdge() + flow_.LeftOf(line.column, boxWidth_);
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

  [[nodiscard]] double LeftEdge() const { return -flow_.Width(boxWidth_) * column_ / 2; }

  // The text reaches from the capitals of the first line to the descenders of the last, or of the lowest one
  // in columns. Returns the area of its box.
  Box PlaceDown() {
    double y = 0;
    double depth = 0;
    for (size_t i = 0; i < lines_.size(); ++i) {
      Line& line = lines_[i];
      y = i == 0 ? -line.ascent : y - Distance(lines_[i - 1], line);
      if (i > 0 && flow_.IsEnded(-y, line.startsColumn)) {
        flow_.Next();
        y = -line.ascent;
      }
      line.y = y;
      line.column = flow_.Index();
      depth = std::max(depth, FootOf(line) - y);
    }
    const double shift = depth * row_ / 2;
    for (Line& line : lines_) line.y += shift;
    const double left = LeftEdge();
    return {{left, shift - depth}, {left + flow_.Width(boxWidth_), shift}};
  }

  [[nodiscard]] TextPanel PanelAround(const Box& area) const {
    const MTextPanel& look = entity_.extras->panel;
    const Vec2 margin = Vec2{1, 1} * (look.margin * height_);
    return {{area.low - margin, area.high + margin}, look};
  }

  const MTextEntity& entity_;
  FontSource& fonts_;
  TextLook start_;
  double height_;  // of the whole text's capitals
  ColumnFlow flow_;
  double boxWidth_;  // of a column; 0: not known yet
  int column_;
  int row_;
  std::vector<MTextParagraph> paragraphs_;
  std::deque<std::vector<TextAtom>> atoms_;  // by paragraph; lines point into it
  std::vector<Line> lines_;
};

}  // namespace

TextBlock LayOutMText(const MTextEntity& entity, const TextStyle& style, FontSource& fonts) {
  const bool isStrokeFont = style.family.empty() && !IsOutlineFontFile(style.fontFile);
  const bool isVertical = style.vertical && isStrokeFont && !entity.horizontal;
  if (isVertical) return LayOutVerticalMText(entity, style, fonts);
  return MTextLayout(entity, style, fonts).Build();
}

}  // namespace hdiplot
