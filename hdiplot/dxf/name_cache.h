// The names that entities share, each decoded and kept once.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "hdiplot/dxf/name_decoder.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {

class NameCache {
 public:
  // Both have to outlive the cache, and the names as long as they are used.
  NameCache(const NameDecoder& decoder, std::unordered_set<std::string>& names)
      : decoder_(decoder), names_(names) {}

  [[nodiscard]] const NameDecoder& Decoder() const { return decoder_; }

  // The name in the group, as it is written or in capitals. Throws DxfFault for one that is too long.
  Name Of(const Group& group) { return Find(written_, group, false); }
  Name UpperCaseOf(const Group& group) { return Find(capitals_, group, true); }

  Name Hold(const std::string& name) { return Name(&*names_.insert(name).first); }

 private:
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  struct Names {
    std::unordered_map<std::string, Name, Hash, std::equal_to<>> byWritten;  // by what stands in the file
    const std::pair<const std::string, Name>* last = nullptr;                // entities come in runs of one
  };

  Name Find(Names& known, const Group& group, bool inCapitals) {
    const std::string_view written = group.Value();
    if (known.last != nullptr && known.last->first == written) return known.last->second;
    auto found = known.byWritten.find(written);
    if (found == known.byWritten.end()) {
      const std::string name = decoder_.Decode(group);
      found = known.byWritten.emplace(written, Hold(inCapitals ? UpperCase(name) : name)).first;
    }
    known.last = &*found;
    return found->second;
  }

  const NameDecoder& decoder_;
  std::unordered_set<std::string>& names_;
  Names written_;
  Names capitals_;
};

}  // namespace hdiplot
