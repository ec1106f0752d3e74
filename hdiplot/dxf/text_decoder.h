// Decodes names and texts of a DXF to UTF-8, by its version, its code page and the escapes in them.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "hdiplot/dxf/group.h"
#include "hdiplot/model/drawing.h"
#include "hdiplot/system/names.h"

namespace hdiplot {

// In bytes. Real names have at most 255 characters.
inline constexpr size_t kLongestName = 1000;

// The meaning of a backslash in a text.
enum class Backslash { kItself, kStartsCode };

class TextDecoder {
 public:
  // The value of $ACADVER: files are in UTF-8 from AC1021 on.
  void SetVersion(std::string_view version) { isUtf8_ = version >= "AC1021"; }
  // The value of $DWGCODEPAGE, such as ANSI_1252. An unknown one has no effect.
  void SetCodePage(std::string_view codePage);

  [[nodiscard]] std::string Decode(std::string_view raw) const;
  // Throws DxfFault for a name of more than kLongestName bytes.
  [[nodiscard]] std::string DecodeName(const Group& group) const;
  // A name by which things are looked up, without regard to case.
  [[nodiscard]] std::string DecodeFoldedName(const Group& group) const;

  // A text of any length, without control characters; a tab becomes "^I". Where backslashes start codes, an
  // escaped character that would start one is replaced by the code for itself.
  [[nodiscard]] std::string DecodeText(std::string_view raw, Backslash backslash) const;

 private:
  [[nodiscard]] std::string ToUtf8(std::string_view raw) const;

  static constexpr const char* kUsualCodePage = "CP1252";

  std::string codePage_ = kUsualCodePage;  // as system/code_pages.h names it
  bool isUtf8_ = false;
  bool mayBeUtf8_ = true;  // what is well-formed UTF-8 counts as such
};

// The names that entities share, each decoded and kept once.
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
