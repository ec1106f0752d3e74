// The companion module on Windows.
#include "platform/companion_module.h"

#include <windows.h>

#include "platform/windows/parent_window.h"
#include "platform/windows/wide.h"

namespace hdi {

CompanionModule::CompanionModule(const std::u16string& path) : handle_(LoadLibraryW(Wide(path))) {}

CompanionModule::~CompanionModule() {
  if (handle_ != nullptr) FreeLibrary(static_cast<HMODULE>(handle_));
}

void* CompanionModule::FindSymbol(const char* name) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

CompanionParent::CompanionParent(void* window) : parent_(new ParentWindow{.window = window}) {}

CompanionParent::~CompanionParent() { delete static_cast<ParentWindow*>(parent_); }

void* DesktopWindow() { return GetDesktopWindow(); }

bool AskReplaceWithoutCompanion(int32_t& /*noHint*/) { return false; }

}  // namespace hdi
