// The parser of font collections. Input: length of a face name in UTF-16 units, the name, the collection.
#include <string>

#include "fonts/font_collection.h"
#include "tests/fuzz/fuzz_target.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr uint8_t kLongestFace = 31;  // as a LOGFONTW holds it
  fuzzing::ByteSource source(data, size);
  std::u16string face(source.TakeUpTo(kLongestFace), u'\0');
  for (char16_t& unit : face) unit = source.Take<char16_t>();
  const auto member = hdi::FindCollectionMember(source.Rest(), face);
  // The header has an offset for each member.
  const bool isThere =
      !member || (*member >= 0 && static_cast<size_t>(*member) < (source.Rest().size() - 12) / 4);
  fuzzing::Require(isThere, "no such member", std::to_string(member.value_or(0)));
  return 0;
}
