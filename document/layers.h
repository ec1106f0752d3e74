// A drawing's layers as optional content groups, which a reader can switch (ISO 32000-1:2008, 8.11).
//
// A group belongs to one page and one name. A reader therefore lists a layer once for each page that it
// occurs on, in page order and by name within a page.
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

// The layers of one document, which must outlive this object.
class Layers {
 public:
  explicit Layers(engine::Document& document) : document_(document) {}
  Layers(const Layers&) = delete;
  Layers& operator=(const Layers&) = delete;
  ~Layers() = default;

  // Returns the object number of the group for layer `name` on the page with object number `page`, adding the
  // group to the document if it is new. The name ends at its first NUL; an empty name gives 0. The cost does
  // not depend on the number of layers; repeating the last layer is cheapest. Throws std::bad_alloc with the
  // document unchanged.
  [[nodiscard]] uint32_t GetLayerGroup(uint32_t page, std::u16string_view name);

  // Removes the group that GetLayerGroup has just added from the document. Nothing may refer to it.
  void RemoveLast() noexcept;
  // The number of groups on all pages.
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

  // The last call's arguments and result.
  uint32_t lastPage_ = 0;
  std::u16string lastName_;  // empty: no call yet
  uint32_t lastGroup_ = 0;
};

}  // namespace hdi
