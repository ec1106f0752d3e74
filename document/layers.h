// A drawing's layers as optional content groups, which a reader can switch (ISO 32000-1:2008, 8.11).
//
// A group belongs to one page and one name, so that a reader lists a layer once for each page that it occurs
// on, in the order of the pages and on each page by name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/document.h"

namespace hdi {

// The layers of one document, which must outlive them.
class Layers {
 public:
  explicit Layers(engine::Document& document) : document_(document) {}
  Layers(const Layers&) = delete;
  Layers& operator=(const Layers&) = delete;
  ~Layers() = default;

  // The object number of the group for a layer of the page whose dictionary has the object number `page`;
  // made and listed in the document when it is new. The name ends at its first zero unit; 0 for an empty one.
  // The cost does not depend on the number of layers, and is least for the layer asked for last.
  // Throws std::bad_alloc, having made nothing.
  [[nodiscard]] uint32_t GetLayerGroup(uint32_t page, std::u16string_view name);

  // Takes the group that GetLayerGroup has just made, and which nothing refers to, out of the document again.
  void RemoveLast() noexcept;
  // Of all groups.
  [[nodiscard]] size_t Count() const { return groupCount_; }

 private:
  struct Hash {
    using is_transparent = void;
    size_t operator()(std::u16string_view name) const { return std::hash<std::u16string_view>{}(name); }
  };
  struct PageLayers {
    std::unordered_map<std::u16string, uint32_t, Hash, std::equal_to<>> groups;  // 0: not in the document
    std::vector<std::u16string_view> sortedNames;  // of the groups in the document, by 16-bit unit
  };

  [[nodiscard]] size_t LayerOrderIndex(uint32_t page, std::u16string_view name) const;

  engine::Document& document_;
  std::map<uint32_t, PageLayers> pageLayers_;
  size_t groupCount_ = 0;

  // What was asked for last.
  uint32_t lastPage_ = 0;
  std::u16string lastName_;  // empty: nothing yet
  uint32_t lastGroup_ = 0;
};

}  // namespace hdi
