// The string table of the driver's module. Which of its languages is taken is the resource lookup's to say:
// it goes through the user's languages in their order.
#include "platform/message_texts.h"

#include <windows.h>

#include "platform/windows/wide.h"

namespace hdi {

std::u16string MessageText(uint32_t id) {
  const HMODULE module = GetModuleHandleW(L"PDF.hdi");
  if (module == nullptr) return {};  // a null module would be the host's own
  // A capacity of 0 asks for the place of the text in the module, where it has no terminator.
  const wchar_t* text = nullptr;
  const int length = LoadStringW(module, id, reinterpret_cast<wchar_t*>(&text), 0);
  return length > 0 ? std::u16string(Units(text), static_cast<size_t>(length)) : std::u16string();
}

}  // namespace hdi
