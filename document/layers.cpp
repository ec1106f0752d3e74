// Look-up of groups, and their place in the order that readers show.
#include "document/layers.h"

#include <algorithm>

#include "engine/optional_content.h"

namespace hdi {

uint32_t Layers::GetLayerGroup(uint32_t page, std::u16string_view name) {
  name = name.substr(0, name.find(u'\0'));
  if (name.empty()) return 0;
  if (page == lastPage_ && name == lastName_) return lastGroup_;

  PageLayers& layers = pageLayers_[page];
  auto entry = layers.groups.find(name);
  if (entry == layers.groups.end()) {
    entry = layers.groups
                .emplace(name, engine::AddOptionalContentGroup(document_, name, LayerOrderIndex(page, name)))
                .first;
    auto& names = layers.sortedNames;
    names.insert(std::ranges::lower_bound(names, name), entry->first);
    ++groupCount_;
  }
  lastName_ = name;
  lastPage_ = page;
  lastGroup_ = entry->second;
  return lastGroup_;
}

// The groups of pages with lower numbers, then the names of this page that sort before. Counted from the end,
// where the page of a plot stands.
size_t Layers::LayerOrderIndex(uint32_t page, std::u16string_view name) const {
  size_t index = groupCount_;
  auto layers = pageLayers_.rbegin();
  for (; layers->first != page; ++layers) index -= layers->second.sortedNames.size();
  const auto& names = layers->second.sortedNames;
  return index - static_cast<size_t>(names.end() - std::ranges::lower_bound(names, name));
}

}  // namespace hdi
