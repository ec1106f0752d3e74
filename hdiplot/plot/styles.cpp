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

// Where nothing else is said.
constexpr EntityColor kForeground{EntityColor::Kind::kIndex, kForegroundIndex};

EntityColor ResolvedColor(const EntityColor& color, const EntityColor& byLayer, const EntityColor& byBlock) {
  if (color.kind == EntityColor::Kind::kByLayer) return byLayer;
  return color.kind == EntityColor::Kind::kByBlock ? byBlock : color;
}

}  // namespace

EntityColor Style::Resolved(const EntityColor& part) const {
  return ResolvedColor(part, layer->color, byBlock);
}

StyleResolver::StyleResolver(const Drawing& drawing, const PlotOptions& options,
                             const std::vector<std::string>& frozen)
    : drawing_(drawing),
      options_(options),
      plotStyles_(options.plotStyles.get()),
      ink_(options),
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
  style.byBlock = insert != nullptr ? insert->own : kForeground;
  style.own = style.Resolved(attributes.color);
  if (plotStyles_ != nullptr) ResolvePlotStyle(attributes, insert, style);
  style.color = style.ink->Of(style.own);

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

void StyleResolver::ResolvePlotStyle(const Attributes& attributes, const Style* insert, Style& style) {
  if (!plotStyles_->areNamed) {
    const bool hasIndex =
        style.own.kind == EntityColor::Kind::kIndex && style.own.value < plotStyles_->byIndex.size();
    if (hasIndex) style.plotStyle = &plotStyles_->byIndex[style.own.value];
    return;
  }
  if (attributes.plotStyle == kPlotStyleByLayer) {
    style.plotStyle = style.layer->plotStyle;
  } else if (attributes.plotStyle == kPlotStyleByBlock) {
    style.plotStyle = insert != nullptr ? insert->plotStyle : nullptr;
  } else {
    style.plotStyle = FindPlotStyle(drawing_.plotStyles[attributes.plotStyle]);
  }
  if (style.plotStyle == nullptr) return;
  auto found = namedInks_.find(style.plotStyle);
  if (found == namedInks_.end()) {
    found = namedInks_.emplace(style.plotStyle, Ink(options_, *style.plotStyle)).first;
  }
  style.ink = &found->second;
}

const PlotStyle* StyleResolver::FindPlotStyle(const std::string& name) const {
  if (plotStyles_ == nullptr || name.empty()) return nullptr;
  const auto found = plotStyles_->byName.find(name);
  return found != plotStyles_->byName.end() ? &found->second : nullptr;
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
  style.color = ResolvedColor(layer.color, kForeground, kForeground);
  style.plotStyle = FindPlotStyle(layer.plotStyle);
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
