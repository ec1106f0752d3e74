#include "hdiplot/dxf/draw_order.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>

namespace hdiplot {

uint64_t HandleNumber(std::string_view handle) {
  uint64_t number = 0;
  std::from_chars(handle.data(), handle.data() + handle.size(), number, 16);
  return number;
}

// The table itself, after its subclass marker: the owner, then pairs of an entity (331) and its key (5).
std::optional<DrawOrder> ReadDrawOrder(const DxfObject& object) {
  DrawOrder order;
  uint64_t entity = 0;
  bool isWithin = false;
  for (const Group& group : object.groups) {
    if (group.code == 100) isWithin = group.Value() == "AcDbSortentsTable";
    if (!isWithin) continue;
    if (group.code == 330) order.owner = HandleKey(group.Value());
    if (group.code == 331) entity = HandleNumber(group.Value());
    if (group.code == 5) order.sortKeys[entity] = HandleNumber(group.Value());
  }
  if (order.owner.empty() || order.sortKeys.empty()) return std::nullopt;
  return order;
}

void SortEntities(Entities& entities, const std::vector<uint64_t>& handles, const std::vector<size_t>& places,
                  const DrawOrder& order) {
  struct Place {
    uint64_t key;
    size_t index;
  };
  std::vector<Place> sorted;
  sorted.reserve(places.size());
  for (const size_t index : places) {
    const auto entry = order.sortKeys.find(handles[index]);
    const uint64_t key = entry == order.sortKeys.end() ? handles[index] : entry->second;
    sorted.push_back({key == 0 ? std::numeric_limits<uint64_t>::max() : key, index});
  }
  std::ranges::stable_sort(sorted, {}, &Place::key);
  std::vector<Entity> moved;
  moved.reserve(sorted.size());
  for (const Place& place : sorted) moved.push_back(std::move(entities[place.index]));
  for (size_t i = 0; i < places.size(); ++i) entities[places[i]] = std::move(moved[i]);
}

}  // namespace hdiplot
