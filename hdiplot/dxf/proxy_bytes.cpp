#include "hdiplot/dxf/proxy_bytes.h"

namespace hdiplot {
namespace {

int DigitOf(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  const auto letter = static_cast<char>(digit | 0x20);
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : -1;
}

// False for text that is no hexadecimal bytes.
bool AppendHexadecimal(std::string_view text, std::string& bytes) {
  if (text.size() % 2 != 0) return false;
  for (size_t i = 0; i < text.size(); i += 2) {
    const int high = DigitOf(text[i]);
    const int low = DigitOf(text[i + 1]);
    if (high < 0 || low < 0) return false;
    bytes.push_back(static_cast<char>(high << 4 | low));
  }
  return true;
}

}  // namespace

std::optional<std::string> ProxyBytesOf(const DxfObject& entity) {
  if (entity.Find(310) == nullptr) return std::nullopt;
  const auto isData = [](const Group& group) { return group.code == 310; };
  for (auto at = entity.groups.begin(); at != entity.groups.end(); ++at) {
    if ((at->code != 160 && at->code != 92) || at + 1 == entity.groups.end() || !isData(at[1])) continue;
    const int64_t size = at->Integer();
    std::string bytes;
    for (++at; at != entity.groups.end() && isData(*at); ++at) {
      if (entity.isBinary) {
        bytes += at->Raw();
      } else if (!AppendHexadecimal(at->Value(), bytes)) {
        return std::nullopt;
      }
    }
    if (size < 0 || static_cast<size_t>(size) != bytes.size()) return std::nullopt;
    return bytes;
  }
  return std::nullopt;
}

}  // namespace hdiplot
