#include "hdiplot/dxf/attribute_reader.h"

#include <cstdlib>
#include <string>

namespace hdiplot {
namespace {

constexpr int64_t kHeaviestLine = 10000;  // a decimetre; the weights in use end at 2.11 mm

// Transparency is a 32-bit number: the highest byte is the kind, the lowest one the alpha.
EntityAlpha AlphaFrom(int64_t word) {
  constexpr int64_t kByBlock = 1;
  constexpr int64_t kOwn = 2;
  switch (word >> 24 & 0xff) {
    case kByBlock:
      return {EntityAlpha::Kind::kByBlock};
    case kOwn:
      return {EntityAlpha::Kind::kOwn, static_cast<uint8_t>(word & 0xff)};
    default:
      return {};
  }
}

// The first text is the target; a description and places in the target follow.
std::string LinkOf(const DxfObject& entity, const TextDecoder& decoder) {
  if (entity.extended.empty()) return {};
  const Group* target = FindIn(entity.ExtendedOf("PE_URL"), 1000);
  return target != nullptr ? decoder.DecodeText(target->Value(), Backslash::kItself) : std::string();
}

// Hundredths of a millimetre, or one of the codes in drawing.h.
int LineWeight(int64_t weight, int fallback) {
  return weight >= kLineWeightDefault && weight <= kHeaviestLine ? static_cast<int>(weight) : fallback;
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

}  // namespace

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

}  // namespace hdiplot
