// The names that entities share, each decoded and kept once.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "hdiplot/dxf/text_decoder.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/system/names.h"

namespace hdiplot {

class NameCache {
 public:
  // Both have to outlive the cache; the names stay in `names`.
  NameCache(const TextDecoder& decoder, std::unordered_set<std::string>& names)
      : decoder_(decoder), names_(names) {}

  [[nodiscard]] const TextDecoder& Decoder() const { return decoder_; }

  // The name in the group, as written or folded. Throws DxfFault for one that is too long.
  Name Written(const Group& group) { return Find(written_, group, false); }
  Name Folded(const Group& group) { return Find(folded_, group, true); }

  Name Hold(const std::string& name) { return Name(&*names_.insert(name).first); }

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  struct Names {
    std::unordered_map<std::string, Name, Hash, std::equal_to<>> byBytes;  // in the file
    const std::pair<const std::string, Name>* last = nullptr;              // entities come in runs of one
  };

  Name Find(Names& known, const Group& group, bool isFolded) {
    const std::string_view bytes = group.Value();
    if (known.last != nullptr && known.last->first == bytes) return known.last->second;
    auto found = known.byBytes.find(bytes);
    if (found == known.byBytes.end()) {
      const std::string name = decoder_.DecodeName(group);
      found = known.byBytes.emplace(bytes, Hold(isFolded ? FoldedName(name) : name)).first;
    }
    known.last = &*found;
    return found->second;
  }

  const TextDecoder& decoder_;
  std::unordered_set<std::string>& names_;
  Names written_;
  Names folded_;
};

}  // namespace hdiplot
