// The string table in the module's resources. The resource lookup selects the language, following the user's
// preferences.
#include "platform/message_texts.h"

#include <windows.h>

#include "platform/windows/wide.h"

namespace hdi {

std::u16string MessageText(uint32_t id) {
  const HMODULE module = GetModuleHandleW(L"PDF.hdi");
  if (module == nullptr) return {};  // a null module would mean the host's
  // A capacity of 0 returns a pointer to the text in the module, which is unterminated.
  const wchar_t* text = nullptr;
  const int length = LoadStringW(module, id, reinterpret_cast<wchar_t*>(&text), 0);
  return length > 0 ? std::u16string(Units(text), static_cast<size_t>(length)) : std::u16string();
}

}  // namespace hdi
