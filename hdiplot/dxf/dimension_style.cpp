#include "hdiplot/dxf/dimension_style.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace hdiplot {
namespace {

struct NumberField {
  int code;  // in the table, and as the code of an override
  std::string_view variable;
  double DimensionStyle::*value;
};

constexpr NumberField kNumbers[] = {
    {40, "$DIMSCALE", &DimensionStyle::scale},         {41, "$DIMASZ", &DimensionStyle::arrowSize},
    {42, "$DIMEXO", &DimensionStyle::extensionOffset}, {44, "$DIMEXE", &DimensionStyle::extensionBeyond},
    {45, "$DIMRND", &DimensionStyle::rounding},        {46, "$DIMDLE", &DimensionStyle::lineBeyond},
    {73, "$DIMTIH", &DimensionStyle::textHorizontal},  {75, "$DIMSE1", &DimensionStyle::hidesExtension1},
    {76, "$DIMSE2", &DimensionStyle::hidesExtension2}, {77, "$DIMTAD", &DimensionStyle::textAbove},
    {78, "$DIMZIN", &DimensionStyle::zeros},           {79, "$DIMAZIN", &DimensionStyle::angleZeros},
    {140, "$DIMTXT", &DimensionStyle::textHeight},     {142, "$DIMTSZ", &DimensionStyle::tickSize},
    {144, "$DIMLFAC", &DimensionStyle::lengthFactor},  {147, "$DIMGAP", &DimensionStyle::gap},
    {172, "$DIMTOFL", &DimensionStyle::hasInnerLine},  {173, "$DIMSAH", &DimensionStyle::hasTwoArrows},
    {176, "$DIMCLRD", &DimensionStyle::lineColor},     {177, "$DIMCLRE", &DimensionStyle::extensionColor},
    {178, "$DIMCLRT", &DimensionStyle::textColor},     {179, "$DIMADEC", &DimensionStyle::angleDecimals},
    {271, "$DIMDEC", &DimensionStyle::decimals},       {275, "$DIMAUNIT", &DimensionStyle::angleUnit},
    {277, "$DIMLUNIT", &DimensionStyle::lengthUnit},   {278, "$DIMDSEP", &DimensionStyle::separator},
    {281, "$DIMSD1", &DimensionStyle::hidesLine1},     {282, "$DIMSD2", &DimensionStyle::hidesLine2},
    {371, "$DIMLWD", &DimensionStyle::lineWeight},     {372, "$DIMLWE", &DimensionStyle::extensionWeight},
};

struct HandleField {
  int code;
  std::string DimensionStyle::*value;
};

constexpr HandleField kHandles[] = {
    {340, &DimensionStyle::textStyle}, {341, &DimensionStyle::leaderArrow}, {342, &DimensionStyle::arrow},
    {343, &DimensionStyle::arrow1},    {344, &DimensionStyle::arrow2},
};

constexpr int kAround = 3;
constexpr int kArrowName = 5;
constexpr double kLargest = 1e12;

// `code` is that of the table; the value's own differs in an override.
void SetValue(int code, const Group& value, const TextDecoder& decoder, DimensionStyle& style) {
  const auto number = std::ranges::find(kNumbers, code, &NumberField::code);
  if (number != std::end(kNumbers)) {
    if (std::abs(value.number) <= kLargest) style.*number->value = value.number;
    return;
  }
  const auto handle = std::ranges::find(kHandles, code, &HandleField::code);
  if (handle != std::end(kHandles)) style.*handle->value = HandleKey(value.Value());
  if (code == kArrowName) style.arrowName = decoder.Decode(value.Value());
  if (code == kAround) style.around = decoder.DecodeText(value.Raw(), Backslash::kStartsCode);
}

}  // namespace

void ReadDimensionStyle(const DxfObject& entry, const TextDecoder& decoder, DimensionStyle& style) {
  for (const Group& group : entry.groups) SetValue(group.code, group, decoder, style);
}

void ReadDimensionVariable(const DxfObject& variable, const TextDecoder& decoder, DimensionStyle& style) {
  const auto number = std::ranges::find(kNumbers, variable.type, &NumberField::variable);
  if (number != std::end(kNumbers) && !variable.groups.empty()) {
    SetValue(number->code, variable.groups.front(), decoder, style);
  }
}

// Within the extended data: the text DSTYLE, and between braces pairs of a code (1070) and its value.
void ReadOverrides(const DxfObject& dimension, const TextDecoder& decoder, DimensionStyle& style) {
  constexpr int kCode = 1070;
  const std::span<const Group> data = dimension.ExtendedOf("ACAD");
  auto group = std::ranges::find(data, "DSTYLE", &Group::Value);
  if (group == data.end() || ++group == data.end()) return;
  while (++group != data.end() && group->code == kCode) {
    const Group& code = *group;
    if (++group == data.end()) return;
    SetValue(static_cast<int>(code.Integer()), *group, decoder, style);
  }
}

}  // namespace hdiplot
