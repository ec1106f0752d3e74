#include "hdiplot/dxf/table_reader.h"

#include <array>
#include <cmath>

#include "hdiplot/dxf/entity_attributes.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {
namespace {

constexpr uint64_t kLayerFrozen = 1;

constexpr double kSurveyFoot = 1200000.0 / 3937;

// Millimetres for each value of $INSUNITS: none, inches, feet, miles, millimetres, centimetres, metres,
// kilometres, microinches, mils, yards, angstroms, nanometres, microns, decimetres, decametres, hectometres,
// gigametres, astronomical units, light years, parsecs, and the US survey foot, inch, yard and mile.
constexpr std::array kMillimetresPerUnit = {1.0,
                                            25.4,
                                            304.8,
                                            1609344.0,
                                            1.0,
                                            10.0,
                                            1000.0,
                                            1e6,
                                            25.4e-6,
                                            25.4e-3,
                                            914.4,
                                            1e-7,
                                            1e-6,
                                            1e-3,
                                            100.0,
                                            1e4,
                                            1e5,
                                            1e12,
                                            1.495978707e14,
                                            9.4607304725808e18,
                                            3.0856775814913673e19,
                                            kSurveyFoot,
                                            kSurveyFoot / 12,
                                            kSurveyFoot * 3,
                                            kSurveyFoot * 5280};

// Scales beyond this are no scales; the drawing does without. The header holds other numbers of any size.
constexpr double kLargestScale = 1e12;

}  // namespace

void ReadVariable(const DxfObject& variable, Drawing& drawing, NameDecoder& names) {
  const auto text = [&variable](int code) {
    const Group* group = variable.Find(code);
    return group != nullptr ? group->Value() : std::string_view();
  };
  if (variable.type == "$ACADVER") {
    names.SetVersion(text(1));
  } else if (variable.type == "$DWGCODEPAGE") {
    names.SetCodePage(text(3));
  } else if (variable.type == "$LTSCALE") {
    const double scale = variable.Real(40, 0);
    if (scale > 0 && scale <= kLargestScale) drawing.lineTypeScale = scale;
  } else if (variable.type == "$PSLTSCALE") {
    drawing.paperLineTypes = variable.Integer(70, 0) != 0;
  } else if (variable.type == "$PDMODE") {
    drawing.pointMode = static_cast<int>(variable.Integer(70, 0));
  } else if (variable.type == "$PDSIZE") {
    const double size = variable.Real(40, 0);
    if (std::fabs(size) <= kLargestScale) drawing.pointSize = size;
  } else if (variable.type == "$INSUNITS") {
    const auto unit = static_cast<uint64_t>(variable.Integer(70, 0));
    if (unit < kMillimetresPerUnit.size()) drawing.millimetresPerUnit = kMillimetresPerUnit[unit];
  }
}

Layer ReadLayer(const DxfObject& entry, const NameDecoder& names) {
  Layer layer;
  layer.off = entry.Integer(62, 0) < 0;
  layer.color = LayerColorOf(entry, layer.color);
  layer.frozen = (static_cast<uint64_t>(entry.Integer(70, 0)) & kLayerFrozen) != 0;
  if (const Group* lineType = entry.Find(6)) layer.lineType = UpperCase(names.Decode(*lineType));
  layer.lineWeight = PlottedLineWeight(entry.Integer(370, kLineWeightDefault), kLineWeightDefault);
  layer.alpha = LayerAlphaOf(entry);
  layer.plottable = entry.Integer(290, 1) != 0;
  return layer;
}

LineType ReadLineType(const DxfObject& entry) {
  LineType lineType;
  for (const Group& group : entry.groups) {
    if (group.code == 49) lineType.dashes.push_back(group.number);
  }
  entry.CheckCount(entry.Find(73), lineType.dashes.size());
  return lineType;
}

std::string NameOf(const DxfObject& object, const NameDecoder& names) {
  constexpr int kName[] = {2};
  object.Require(kName);
  return names.Decode(*object.Find(2));
}

}  // namespace hdiplot
