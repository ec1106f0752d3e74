#include "hdiplot/dxf/table_reader.h"

#include <array>
#include <cmath>

namespace hdiplot {
namespace {

constexpr double kSurveyFoot = 1200000.0 / 3937;

// Millimetres for each value of $INSUNITS.
constexpr std::array kMillimetresPerUnit = {
    1.0,                    // none
    25.4,                   // inches
    304.8,                  // feet
    1609344.0,              // miles
    1.0,                    // millimetres
    10.0,                   // centimetres
    1000.0,                 // metres
    1e6,                    // kilometres
    25.4e-6,                // microinches
    25.4e-3,                // mils
    914.4,                  // yards
    1e-7,                   // angstroms
    1e-6,                   // nanometres
    1e-3,                   // microns
    100.0,                  // decimetres
    1e4,                    // decametres
    1e5,                    // hectometres
    1e12,                   // gigametres
    1.495978707e14,         // astronomical units
    9.4607304725808e18,     // light years
    3.0856775814913673e19,  // parsecs
    kSurveyFoot,            // US survey feet
    kSurveyFoot / 12,       // inches
    kSurveyFoot * 3,        // yards
    kSurveyFoot * 5280,     // miles
};

// Larger scales and sizes are ignored.
constexpr double kLargestScale = 1e12;

}  // namespace

void ReadVariable(const DxfObject& variable, Drawing& drawing, TextDecoder& decoder) {
  if (variable.type == "$ACADVER") {
    decoder.SetVersion(variable.Text(1));
  } else if (variable.type == "$DWGCODEPAGE") {
    decoder.SetCodePage(variable.Text(3));
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
    const uint64_t unit = variable.Flags(70);
    if (unit < kMillimetresPerUnit.size()) drawing.millimetresPerUnit = kMillimetresPerUnit[unit];
  }
}

LineType ReadLineType(const DxfObject& entry) {
  LineType lineType;
  for (const Group& group : entry.groups) {
    if (group.code == 49) lineType.dashes.push_back(group.number);
  }
  entry.CheckCount(entry.Find(73), lineType.dashes.size());
  return lineType;
}

}  // namespace hdiplot
