// Group look-up, and a group's position in the order that readers show.
#include "document/layers.h"

#include <algorithm>
#include <utility>

#include "engine/optional_content.h"

namespace hdi {

uint32_t Layers::GetLayerGroup(uint32_t page, std::u16string_view name) {
  name = name.substr(0, name.find(u'\0'));
  if (name.empty()) return 0;
  if (page == lastPage_ && name == lastName_) return lastGroup_;

  std::u16string requested(name);
  PageLayers& layers = pageLayers_[page];
  auto entry = layers.groups.find(name);
  if (entry == layers.groups.end()) entry = layers.groups.emplace(name, 0).first;
  if (entry->second == 0) {
    auto& names = layers.sortedNames;
    // Reserve first: nothing may fail after the engine's step.
    if (names.size() == names.capacity()) names.reserve(2 * names.size() + 1);
    entry->second = engine::AddOptionalContentGroup(document_, name, LayerOrderIndex(page, name));
    names.insert(std::ranges::lower_bound(names, name), entry->first);
    ++groupCount_;
  }
  lastName_ = std::move(requested);
  lastPage_ = page;
  lastGroup_ = entry->second;
  return lastGroup_;
}

void Layers::RemoveLast() noexcept {
  PageLayers& layers = pageLayers_.find(lastPage_)->second;
  uint32_t& group = layers.groups.find(lastName_)->second;
  engine::RemoveOptionalContentGroup(document_, std::exchange(group, 0));
  layers.sortedNames.erase(std::ranges::lower_bound(layers.sortedNames, lastName_));
  --groupCount_;
  lastName_.clear();
}

// The position of a new group: after the groups of lower pages and after this page's smaller names. Counts
// from the end, where the page being plotted is.
size_t Layers::LayerOrderIndex(uint32_t page, std::u16string_view name) const {
  size_t index = groupCount_;
  auto layers = pageLayers_.rbegin();
  for (; layers->first != page; ++layers) index -= layers->second.sortedNames.size();
  const auto& names = layers->second.sortedNames;
  return index - static_cast<size_t>(names.end() - std::ranges::lower_bound(names, name));
}

}  // namespace hdi
