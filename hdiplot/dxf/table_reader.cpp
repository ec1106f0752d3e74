#include "hdiplot/dxf/table_reader.h"

#include <cmath>
#include <cstdlib>
#include <iterator>
#include <string>

namespace hdiplot {
namespace {

constexpr double kSurveyFoot = 1200000.0 / 3937;

// Millimetres for each value of $INSUNITS.
constexpr double kMillimetresPerUnit[] = {
    1,                      // none
    25.4,                   // inches
    304.8,                  // feet
    1609344,                // miles
    1,                      // millimetres
    10,                     // centimetres
    1000,                   // metres
    1e6,                    // kilometres
    25.4e-6,                // microinches
    25.4e-3,                // mils
    914.4,                  // yards
    1e-7,                   // angstroms
    1e-6,                   // nanometres
    1e-3,                   // microns
    100,                    // decimetres
    1e4,                    // decametres
    1e5,                    // hectometres
    1e12,                   // gigametres
    1.495978707e14,         // astronomical units
    9.4607304725808e18,     // light years
    3.0856775814913673e19,  // parsecs
    kSurveyFoot,            // US survey feet
    kSurveyFoot / 12,       // US survey inches
    kSurveyFoot * 3,        // US survey yards
    kSurveyFoot * 5280,     // US survey miles
};

// Larger scales and sizes are ignored.
constexpr double kLargestScale = 1e12;

constexpr int64_t kHeaviestLine = 10000;  // a decimetre; the weights in use end at 2.11 mm

// Transparency is a 32-bit number: the highest byte is the kind, the lowest one the alpha.
EntityAlpha AlphaFrom(int64_t word) {
  constexpr int64_t kByBlock = 1;
  constexpr int64_t kOwn = 2;
  const int64_t kind = word >> 24 & 0xff;
  if (kind == kOwn) return {EntityAlpha::Kind::kOwn, static_cast<uint8_t>(word & 0xff)};
  return {kind == kByBlock ? EntityAlpha::Kind::kByBlock : EntityAlpha::Kind::kByLayer};
}

// The first text is the target; a description and places in the target follow.
std::string LinkOf(const DxfObject& entity, const TextDecoder& decoder) {
  if (entity.extended.empty()) return {};
  const Group* target = FindIn(entity.ExtendedOf("PE_URL"), 1000);
  return target != nullptr ? decoder.DecodeText(target->Value(), Backslash::kItself) : std::string();
}

// Group 62 is negative where the layer is off.
EntityColor LayerColor(const DxfObject& entry, EntityColor fallback) {
  if (const Group* color = entry.Find(420)) return TrueColor(*color);
  const EntityColor color = IndexedColor(std::abs(entry.Integer(62, 0)));
  return color.kind == EntityColor::Kind::kIndex ? color : fallback;
}

// A layer has its transparency in its extended data.
uint8_t LayerAlpha(const DxfObject& entry) {
  const Group* word = FindIn(entry.ExtendedOf("AcCmTransparency"), 1071);
  return word != nullptr ? AlphaFrom(word->Integer()).value : EntityAlpha().value;
}

// Groups after the dash that the sign follows.
void ReadSign(const Group& group, const TextDecoder& decoder, LineTypeSign& sign) {
  constexpr uint64_t kUpright = 1;
  switch (group.code) {
    case 9:
      sign.text = decoder.DecodeText(group.Raw(), Backslash::kItself);
      break;
    case 44:
      sign.offset.x = group.number;
      break;
    case 45:
      sign.offset.y = group.number;
      break;
    case 46:
      sign.scale = group.number;
      break;
    case 50:
      sign.rotation = Radians(group.number);
      break;
    case 74:
      sign.upright = (static_cast<uint64_t>(group.Integer()) & kUpright) != 0;
      break;
    case 75:
      sign.shape = static_cast<int>(group.Integer());
      break;
    case 340:
      sign.style = HandleKey(group.Value());
      break;
    default:
      break;
  }
}

void AddSign(LineTypeSign&& sign, LineType& lineType) {
  if (lineType.dashes.empty() || (sign.text.empty() && sign.shape == 0)) return;
  sign.element = lineType.dashes.size() - 1;
  lineType.signs.push_back(std::move(sign));
}

}  // namespace

int16_t LineWeight(int64_t weight, int16_t fallback) {
  return weight >= kLineWeightDefault && weight <= kHeaviestLine ? static_cast<int16_t>(weight) : fallback;
}

EntityColor IndexedColor(int64_t index) {
  if (index == 0) return {EntityColor::Kind::kByBlock};
  if (index >= 1 && index <= 255) return {EntityColor::Kind::kIndex, static_cast<uint32_t>(index)};
  return {};
}

EntityColor TrueColor(const Group& group) {
  return {EntityColor::Kind::kTrue, static_cast<uint32_t>(group.Integer()) & 0xFFFFFFU};
}

Attributes ReadAttributes(const DxfObject& entity, NameCache& names) {
  Attributes attributes;
  if (const Group* name = entity.Find(6); name && !name->Value().empty()) {
    attributes.lineType = names.Folded(*name);
  }
  if (const Group* name = entity.Find(8); name && !name->Value().empty()) {
    attributes.layer = names.Written(*name);
  }
  attributes.lineTypeScale = entity.Real(48, 1);
  attributes.visible = entity.Integer(60, 0) == 0;
  attributes.paperSpace = entity.Integer(67, 0) != 0;
  attributes.lineWeight = LineWeight(entity.Integer(370, kLineWeightByLayer), kLineWeightByLayer);
  if (const Group* color = entity.Find(420)) {
    attributes.color = TrueColor(*color);
  } else if (const Group* index = entity.Find(62)) {
    attributes.color = IndexedColor(index->Integer());
  }
  if (const Group* alpha = entity.Find(440)) attributes.alpha = AlphaFrom(alpha->Integer());
  const std::string link = LinkOf(entity, names.Decoder());
  if (!link.empty()) attributes.link = names.Hold(link);
  return attributes;
}

Layer ReadLayer(const DxfObject& entry, const TextDecoder& decoder) {
  constexpr uint64_t kFrozen = 1;
  Layer layer;
  layer.off = entry.Integer(62, 0) < 0;
  layer.color = LayerColor(entry, layer.color);
  layer.frozen = (entry.Flags(70) & kFrozen) != 0;
  if (const Group* lineType = entry.Find(6)) layer.lineType = decoder.DecodeFoldedName(*lineType);
  layer.lineWeight = LineWeight(entry.Integer(370, kLineWeightDefault), kLineWeightDefault);
  layer.alpha = LayerAlpha(entry);
  layer.plottable = entry.Integer(290, 1) != 0;
  return layer;
}

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
    if (unit < std::size(kMillimetresPerUnit)) drawing.millimetresPerUnit = kMillimetresPerUnit[unit];
  }
}

LineType ReadLineType(const DxfObject& entry, const TextDecoder& decoder) {
  LineType lineType;
  LineTypeSign sign;
  for (const Group& group : entry.groups) {
    if (group.code == 49) {
      AddSign(std::exchange(sign, {}), lineType);
      lineType.dashes.push_back(group.number);
    } else {
      ReadSign(group, decoder, sign);
    }
  }
  AddSign(std::move(sign), lineType);
  entry.CheckCount(entry.Find(73), lineType.dashes.size());
  return lineType;
}

}  // namespace hdiplot
