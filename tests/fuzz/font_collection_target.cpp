// The parser of font collections. An input is the length of a face name in units, the name, and the
// collection.
#include <string>

#include "fonts/font_collection.h"
#include "tests/fuzz/fuzz_target.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr uint8_t kLongestFace = 31;  // as a LOGFONTW holds it
  fuzzing::ByteSource source(data, size);
  std::u16string face(source.TakeUpTo(kLongestFace), u'\0');
  for (char16_t& unit : face) unit = source.Take<char16_t>();
  const auto member = hdi::FindCollectionMember(source.Rest(), face);
  // Each member has an offset behind the head.
  const bool isThere =
      !member || (*member >= 0 && static_cast<size_t>(*member) < (source.Rest().size() - 12) / 4);
  fuzzing::Require(isThere, "no such member", std::to_string(member.value_or(0)));
  return 0;
}
