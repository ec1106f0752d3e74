#include "hdiplot/dxf/entity_attributes.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <span>

#include "hdiplot/system/ascii_case.h"

namespace hdiplot {
namespace {

constexpr int64_t kHeaviestLine = 10000;  // a decimetre; the weights in use end at 2.11 mm

// 0 for by block, 256 for by layer.
EntityColor IndexedColor(int64_t index) {
  if (index == 0) return {EntityColor::Kind::kByBlock};
  if (index >= 1 && index <= 255) return {EntityColor::Kind::kIndex, static_cast<uint32_t>(index)};
  return {};
}

EntityColor TrueColor(const Group& group) {
  return {EntityColor::Kind::kTrue, static_cast<uint32_t>(group.Integer() & 0xffffff)};
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
  return target != nullptr ? names.DecodeText(target->Value(), Backslash::kItself) : std::string();
}

}  // namespace

int PlottedLineWeight(int64_t weight, int fallback) {
  return weight >= kLineWeightDefault && weight <= kHeaviestLine ? static_cast<int>(weight) : fallback;
}

EntityColor LayerColorOf(const DxfObject& entry, EntityColor fallback) {
  if (const Group* color = entry.Find(420)) return TrueColor(*color);
  const EntityColor color = IndexedColor(std::abs(entry.Integer(62, 0)));
  return color.kind == EntityColor::Kind::kIndex ? color : fallback;
}

uint8_t LayerAlphaOf(const DxfObject& entry) {
  const Group* word = FindIn(entry.ExtendedOf("AcCmTransparency"), 1071);
  return word != nullptr ? AlphaFrom(word->Integer()).value : EntityAlpha().value;
}

// Of groups that there are twice the first counts.
Attributes AttributesOf(const DxfObject& entity, NameCache& names) {
  Attributes attributes;
  std::optional<EntityColor> trueColor;
  for (size_t i = entity.groups.size(); i-- > 0;) {
    const Group& group = entity.groups[i];
    switch (group.code) {
      case 6:
        if (!group.Value().empty()) attributes.lineType = names.UpperCaseOf(group);
        break;
      case 8:
        if (!group.Value().empty()) attributes.layer = names.Of(group);
        break;
      case 48:
        attributes.lineTypeScale = group.number;
        break;
      case 60:
        attributes.visible = group.number == 0;
        break;
      case 62:
        attributes.color = IndexedColor(group.Integer());
        break;
      case 67:
        attributes.paperSpace = group.number != 0;
        break;
      case 370:
        attributes.lineWeight = PlottedLineWeight(group.Integer(), kLineWeightByLayer);
        break;
      case 420:
        trueColor = TrueColor(group);
        break;
      case 440:
        attributes.alpha = AlphaFrom(group.Integer());
        break;
      default:
        break;
    }
  }
  attributes.color = trueColor.value_or(attributes.color);
  const std::string link = LinkOf(entity, names.Decoder());
  if (!link.empty()) attributes.link = names.Hold(link);
  return attributes;
}

}  // namespace hdiplot
