#include "hdiplot/trace/base64.h"

#include <algorithm>
#include <array>

namespace hdiplot {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr uint8_t kForeign = 0xFF;

constexpr std::array<uint8_t, 256> kValues = [] {
  std::array<uint8_t, 256> values{};
  values.fill(kForeign);
  for (size_t i = 0; i < kAlphabet.size(); ++i) {
    values[static_cast<uint8_t>(kAlphabet[i])] = static_cast<uint8_t>(i);
  }
  return values;
}();

}  // namespace

std::string EncodeBase64(std::span<const uint8_t> bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t count = std::min<size_t>(3, bytes.size() - i);
    uint32_t group = static_cast<uint32_t>(bytes[i]) << 16;
    if (count > 1) group |= static_cast<uint32_t>(bytes[i + 1]) << 8;
    if (count > 2) group |= bytes[i + 2];
    text += kAlphabet[group >> 18];
    text += kAlphabet[(group >> 12) & 63];
    text += count > 1 ? kAlphabet[(group >> 6) & 63] : '=';
    text += count > 2 ? kAlphabet[group & 63] : '=';
  }
  return text;
}

std::optional<std::vector<uint8_t>> DecodeBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  size_t padding = 0;
  while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=') ++padding;
  const size_t length = text.size() / 4 * 3 - padding;
  text.remove_suffix(padding);

  std::vector<uint8_t> bytes;
  bytes.reserve(length);
  uint32_t group = 0;
  int bits = 0;
  for (const char character : text) {
    const uint8_t value = kValues[static_cast<uint8_t>(character)];
    if (value == kForeign) return std::nullopt;
    group = (group << 6) | value;
    bits += 6;
    if (bits >= 8) {
      bits -= 8;
      bytes.push_back(static_cast<uint8_t>(group >> bits));
    }
  }
  return bytes;
}

}  // namespace hdiplot
