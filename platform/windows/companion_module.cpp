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

std::shared_ptr<void> MakeCompanionParent(void* window) {
  return std::make_shared<ParentWindow>(ParentWindow{.window = window});
}

void* DesktopWindow() { return GetDesktopWindow(); }

bool AskReplaceWithoutCompanion(int32_t& /*noHint*/) { return false; }

}  // namespace hdi
