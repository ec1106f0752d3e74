#include "host/hdiplot/dxf/entity_attributes.h"

#include <algorithm>
#include <cstdlib>
#include <span>

#include "host/hdiplot/ascii_case.h"

namespace hdiplot {
namespace {

constexpr int64_t kHeaviestLine = 10000;  // a decimetre; the weights in use end at 2.11 mm

EntityColor IndexedColor(int64_t index, EntityColor fallback, ColorSign sign) {
  if (sign == ColorSign::kMeansOff) index = std::abs(index);
  if (sign == ColorSign::kInvalid && index == 0) return {EntityColor::Kind::kByBlock, fallback.value};
  if (index >= 1 && index <= 255) return {EntityColor::Kind::kIndex, static_cast<uint32_t>(index)};
  return fallback;
}

// Transparency is a number of 32 bits: the highest byte tells its kind, the lowest is the alpha.
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

const Group* FindIn(std::span<const Group> groups, int code) {
  const auto found = std::ranges::find(groups, code, &Group::code);
  return found == groups.end() ? nullptr : &*found;
}

// The first text is the target; what follows are words about it and places in it.
std::string LinkOf(const DxfObject& entity, const NameDecoder& names) {
  if (entity.extended.empty()) return {};
  const Group* target = FindIn(entity.ExtendedOf("PE_URL"), 1000);
  return target != nullptr ? names.DecodeText(target->value, Backslash::kItself) : std::string();
}

}  // namespace

EntityColor ColorOf(const DxfObject& object, EntityColor fallback, ColorSign sign) {
  if (const Group* color = object.Find(420)) {
    return {EntityColor::Kind::kTrue, static_cast<uint32_t>(color->integer & 0xffffff)};
  }
  const Group* index = object.Find(62);
  return index ? IndexedColor(index->integer, fallback, sign) : fallback;
}

int LineWeightOf(const DxfObject& object, int fallback) {
  const int64_t weight = object.Integer(370, fallback);
  return weight >= kLineWeightDefault && weight <= kHeaviestLine ? static_cast<int>(weight) : fallback;
}

uint8_t LayerAlphaOf(const DxfObject& entry) {
  const Group* word = FindIn(entry.ExtendedOf("AcCmTransparency"), 1071);
  return word != nullptr ? AlphaFrom(word->integer).value : EntityAlpha().value;
}

Attributes AttributesOf(const DxfObject& entity, const NameDecoder& names) {
  Attributes attributes;
  if (const Group* layer = entity.Find(8); layer && !layer->value.empty()) {
    attributes.layer = names.Decode(*layer);
  }
  if (const Group* lineType = entity.Find(6); lineType && !lineType->value.empty()) {
    attributes.lineType = UpperCase(names.Decode(*lineType));
  }
  attributes.color = ColorOf(entity, {}, ColorSign::kInvalid);
  attributes.lineTypeScale = entity.Real(48, 1);
  attributes.lineWeight = LineWeightOf(entity, kLineWeightByLayer);
  attributes.alpha = AlphaFrom(entity.Integer(440, 0));
  attributes.link = LinkOf(entity, names);
  attributes.visible = entity.Integer(60, 0) == 0;
  attributes.paperSpace = entity.Integer(67, 0) != 0;
  return attributes;
}

}  // namespace hdiplot
