// SORTENTSTABLE: the order in which the entities of a layout or a block are drawn.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// The number of a handle; 0 if it is none.
[[nodiscard]] uint64_t HandleNumber(std::string_view handle);

struct DrawOrder {
  std::string owner;                                // HandleKey of the block's record
  std::unordered_map<uint64_t, uint64_t> sortKeys;  // by handle
};

// None for a table that does not name its block, or without entries.
[[nodiscard]] std::optional<DrawOrder> ReadDrawOrder(const DxfObject& object);

// Sorts the entities at `places` by their keys; the first ones are drawn below the others. An entity without
// a key has its handle as key, and 0 is above all others. `handles` are those of all entities.
void SortEntities(Entities& entities, const std::vector<uint64_t>& handles, const std::vector<size_t>& places,
                  const DrawOrder& order);

}  // namespace hdiplot
