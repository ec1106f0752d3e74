#include "hdiplot/system/windows/error_text.h"

#include <windows.h>

#include <string_view>

#include "platform/unicode.h"
#include "platform/windows/wide.h"

namespace hdiplot {

std::string ErrorText(uint32_t error) {
  wchar_t text[512];
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, nullptr,
      error, 0, text, static_cast<DWORD>(std::size(text)), nullptr);
  std::string words = hdi::ToUtf8({hdi::Units(text), length});
  words.erase(words.find_last_not_of(" .\r\n") + 1);
  constexpr std::string_view kRoom = "%1";
  const size_t room = words.find(kRoom);
  if (room != std::string::npos) words.replace(room, kRoom.size(), "the file");
  return words.empty() ? "error " + std::to_string(error) : words;
}

}  // namespace hdiplot
