// The companion module on Linux, and the question asked without it.
#include "platform/companion_module.h"

#include <dlfcn.h>

#include "platform/linux/prompts.h"
#include "platform/unicode.h"

namespace hdi {

CompanionModule::CompanionModule(const std::u16string& path)
    : handle_(dlopen(ToUtf8(path).c_str(), RTLD_NOW | RTLD_LOCAL)) {}

CompanionModule::~CompanionModule() {
  if (handle_ != nullptr) dlclose(handle_);
}

void* CompanionModule::FindSymbol(const char* name) const { return dlsym(handle_, name); }

std::shared_ptr<void> MakeCompanionParent(void* window) { return {std::shared_ptr<void>(), window}; }

void* DesktopWindow() { return nullptr; }

bool AskReplaceWithoutCompanion(int32_t& noHint) {
  const ReplaceAnswer answer = AskReplace();
  if (answer == ReplaceAnswer::kNo) return false;
  noHint = answer == ReplaceAnswer::kYesAlways ? 1 : 0;
  return true;
}

}  // namespace hdi
