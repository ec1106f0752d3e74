// The values of a DIMSTYLE that dimensions without a block of their own are drawn by. The variables of the
// header are the values of a style that is not there, and a dimension can override any of them.
#pragma once

#include <string>
#include <string_view>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/text_decoder.h"

namespace hdiplot {

// Lengths are in drawing units before `scale`, and colours are indexes. Numbers of the file that are flags,
// counts or indexes are kept as they are.
struct DimensionStyle {
  double scale = 1;
  double arrowSize = 0.18;
  double extensionOffset = 0.0625;
  double extensionBeyond = 0.18;
  double rounding = 0;
  double lineBeyond = 0;  // behind ticks
  double textHeight = 0.18;
  double tickSize = 0;  // above 0: ticks instead of arrowheads
  double lengthFactor = 1;
  double gap = 0.09;  // around the text; below 0: with a frame
  double textAbove = 0;
  double textHorizontal = 1;
  double hasInnerLine = 0;  // a radius, even if its text is outside
  double hidesExtension1 = 0;
  double hidesExtension2 = 0;
  double hidesLine1 = 0;
  double hidesLine2 = 0;
  double zeros = 0;
  double angleZeros = 0;
  double lineColor = 0;
  double extensionColor = 0;
  double textColor = 0;
  double lineWeight = -2;
  double extensionWeight = -2;
  double decimals = 4;
  double angleDecimals = 0;  // below 0: `decimals`
  double angleUnit = 0;
  double lengthUnit = 2;
  double separator = '.';
  double hasTwoArrows = 0;  // `arrow1` and `arrow2` instead of `arrow`
  std::string around;       // "<>" stands for the value
  std::string textStyle;    // HandleKey
  std::string arrow;        // HandleKey of a block's record, like the next two; empty: a filled arrowhead
  std::string arrow1, arrow2;
  std::string leaderArrow;  // HandleKey
  std::string arrowName;    // of a block, in files without such handles
};

// Sets the values of an entry of the table.
void ReadDimensionStyle(const DxfObject& entry, const TextDecoder& decoder, DimensionStyle& style);

// Sets the value of a header variable; others are ignored.
void ReadDimensionVariable(const DxfObject& variable, const TextDecoder& decoder, DimensionStyle& style);

// Sets the values that a dimension overrides.
void ReadOverrides(const DxfObject& dimension, const TextDecoder& decoder, DimensionStyle& style);

}  // namespace hdiplot
