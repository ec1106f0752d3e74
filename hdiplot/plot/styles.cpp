#include "hdiplot/plot/styles.h"

#include <algorithm>

#include "hdiplot/system/names.h"
#include "hdiplot/system/wildcard.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

constexpr int kDefaultLineWeight = 25;

std::vector<std::string> FoldedPatterns(const std::vector<std::string>& patterns) {
  std::vector<std::string> folded;
  folded.reserve(patterns.size());
  for (const std::string& pattern : patterns) folded.push_back(FoldedName(pattern));
  return folded;
}

bool MatchesAny(const std::vector<std::string>& patterns, std::string_view name) {
  return std::any_of(patterns.begin(), patterns.end(),
                     [&](const std::string& pattern) { return MatchesWildcard(pattern, name); });
}

Rgb PlottedColor(const Ink& ink, const EntityColor& color, Rgb byLayer, Rgb byBlock) {
  switch (color.kind) {
    case EntityColor::Kind::kByLayer:
      return byLayer;
    case EntityColor::Kind::kByBlock:
      return byBlock;
    case EntityColor::Kind::kIndex:
      return ink.OfIndex(color.value);
    case EntityColor::Kind::kTrue:
      return ink.OfTrueColor(color.value);
  }
  return byLayer;
}

}  // namespace

Rgb Style::Plotted(const EntityColor& own) const { return PlottedColor(*ink, own, layer->color, byBlock); }

StyleResolver::StyleResolver(const Drawing& drawing, const PlotOptions& options,
                             const std::vector<std::string>& frozen)
    : drawing_(drawing),
      ink_(options.background, options.monochrome),
      wanted_(FoldedPatterns(options.layers)),
      unwanted_(FoldedPatterns(options.skipLayers)) {
  for (const std::string& name : frozen) frozen_.insert(FoldedName(name));
  for (const auto& [name, layer] : drawing.layers) {
    layersByFoldedName_.emplace(FoldedName(name), NamedLayer{name, &layer});
  }
}

Style StyleResolver::Resolve(const Attributes& attributes, const Style* insert) {
  Style style;
  style.layer = &FindLayer(attributes.layer);
  if (insert != nullptr && style.layer->isZero) style.layer = insert->layer;

  style.ink = &ink_;
  style.byBlock = insert != nullptr ? insert->color : ink_.Foreground();
  style.color = style.Plotted(attributes.color);

  switch (attributes.lineWeight) {
    case kLineWeightByLayer:
      style.lineWeight = style.layer->lineWeight;
      break;
    case kLineWeightByBlock:
      style.lineWeight = insert != nullptr ? insert->lineWeight : kDefaultLineWeight;
      break;
    default:
      style.lineWeight = attributes.lineWeight < 0 ? kDefaultLineWeight : attributes.lineWeight;
  }

  switch (attributes.alpha.kind) {
    case EntityAlpha::Kind::kByLayer:
      style.alpha = style.layer->alpha;
      break;
    case EntityAlpha::Kind::kByBlock:
      if (insert != nullptr) style.alpha = insert->alpha;
      break;
    case EntityAlpha::Kind::kOwn:
      style.alpha = attributes.alpha.value;
  }

  style.lineTypeScale = attributes.lineTypeScale;
  if (attributes.lineType == kByLayer) {
    style.lineType = style.layer->lineType;
  } else if (attributes.lineType == kByBlock) {
    style.lineType = insert != nullptr ? insert->lineType : nullptr;
  } else {
    style.lineType = FindLineType(attributes.lineType);
  }
  return style;
}

const LayerStyle& StyleResolver::FindLayer(const std::string& name) {
  if (lastLayer_ == nullptr || lastLayer_->first != name) {
    auto found = layers_.find(name);
    if (found == layers_.end()) found = layers_.emplace(name, MakeLayer(name)).first;
    lastLayer_ = &*found;
  }
  return lastLayer_->second;
}

LayerStyle StyleResolver::MakeLayer(const std::string& name) {
  static const Layer kMissing;
  const std::string folded = FoldedName(name);
  const auto found = layersByFoldedName_.try_emplace(folded, NamedLayer{name, &kMissing}).first;
  const Layer& layer = *found->second.layer;
  LayerStyle style;
  style.name = hdi::ToUtf16(found->second.name);
  const Rgb foreground = ink_.Foreground();
  style.color = PlottedColor(ink_, layer.color, foreground, foreground);
  style.lineWeight = layer.lineWeight < 0 ? kDefaultLineWeight : layer.lineWeight;
  style.lineType = FindLineType(layer.lineType);
  style.alpha = layer.alpha;
  style.frozen = layer.frozen || frozen_.contains(folded);
  // The layer of dimensions' definition points is never plotted.
  const bool onPaper = layer.plottable && folded != "defpoints";
  style.plotted = onPaper && !layer.off && !style.frozen && IsAskedFor(folded);
  style.isZero = name == "0";
  return style;
}

bool StyleResolver::IsAskedFor(std::string_view foldedName) const {
  return (wanted_.empty() || MatchesAny(wanted_, foldedName)) && !MatchesAny(unwanted_, foldedName);
}

const LineType* StyleResolver::FindLineType(const std::string& name) const {
  const auto found = drawing_.lineTypes.find(name);
  return found != drawing_.lineTypes.end() && !found->second.dashes.empty() ? &found->second : nullptr;
}

}  // namespace hdiplot
