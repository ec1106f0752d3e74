// Lays out the rows of boxes of a geometric tolerance. A box is as wide as its text; empty ones are left out.
#include <algorithm>
#include <string_view>
#include <vector>

#include "hdiplot/text/mtext_parser.h"
#include "hdiplot/text/text_block.h"
#include "hdiplot/text/text_parts.h"

namespace hdiplot {
namespace {

class ToleranceLayout {
 public:
  ToleranceLayout(const ToleranceEntity& entity, const TextStyle& style, FontSource& fonts)
      : entity_(entity),
        fonts_(fonts),
        look_(StartLook(style, entity.height, style.widthFactor, style.oblique)),
        gap_(std::clamp(entity.gap, 0.0, look_.height)) {
    block_.frame = Affine::OfAxes(entity.right, entity.up, entity.place);
  }

  TextBlock Build() {
    std::string_view rest = entity_.text;
    for (double middle = 0; !rest.empty(); middle -= RowHeight()) {
      AddRow(TakeUpTo(rest, {"^J", "\\P", "\n"}), middle);
    }
    return std::move(block_);
  }

 private:
  [[nodiscard]] double RowHeight() const { return look_.height + 2 * gap_; }

  // Removes what precedes the first separator, and the separator.
  static std::string_view TakeUpTo(std::string_view& text,
                                   std::initializer_list<std::string_view> separators) {
    size_t end = text.size();
    size_t length = 0;
    for (const std::string_view separator : separators) {
      const size_t at = text.find(separator);
      if (at >= end) continue;
      end = at;
      length = separator.size();
    }
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + length, text.size()));
    return part;
  }

  void AddRow(std::string_view row, double middle) {
    double x = 0;
    while (!row.empty()) {
      const std::string_view cell = TakeUpTo(row, {"%%v", "%%V"});
      const double width = AddText(cell, {x + gap_, middle - look_.height / 2});
      if (!(width > 0)) continue;
      const double right = x + std::max(width, look_.height) + 2 * gap_;
      AddBox({{x, middle - RowHeight() / 2}, {right, middle + RowHeight() / 2}});
      x = right;
    }
  }

  // Returns the width.
  double AddText(std::string_view text, Vec2 at) {
    double width = 0;
    const std::vector<MTextParagraph> paragraphs = ParseMText(text, look_);
    for (const MTextSpan& span : paragraphs.front().spans) {
      const double own = WidthOf(span.text, fonts_.FontFor(span.look.font), span.look);
      if (!HasOnlyBlanks(span.text)) {
        block_.pieces.push_back({span.text, at + Vec2{width, 0}, own, span.look});
      }
      width += own;
    }
    return width;
  }

  void AddBox(const Box& box) {
    const auto add = [&](Vec2 from, Vec2 to) {
      block_.rules.push_back({from, to, look_.color, look_.font, look_.height});
    };
    add(box.low, {box.high.x, box.low.y});
    add({box.high.x, box.low.y}, box.high);
    add(box.high, {box.low.x, box.high.y});
    add({box.low.x, box.high.y}, box.low);
  }

  const ToleranceEntity& entity_;
  FontSource& fonts_;
  TextLook look_;
  double gap_;
  TextBlock block_;
};

}  // namespace

TextBlock LayOutTolerance(const ToleranceEntity& entity, const TextStyle& style, FontSource& fonts) {
  return ToleranceLayout(entity, style, fonts).Build();
}

}  // namespace hdiplot
