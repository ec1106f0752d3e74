#include "hdiplot/text/mtext_vertical.h"

#include <algorithm>
#include <vector>

#include "hdiplot/text/mtext_parser.h"
#include "hdiplot/text/text_parts.h"

namespace hdiplot {
namespace {

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

}  // namespace

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

}  // namespace hdiplot
