// The companion module on Linux, and the question asked without it.
#include "platform/companion.h"

#include <dlfcn.h>

#include <memory>
#include <string>

#include "platform/files.h"
#include "platform/linux/prompts.h"
#include "platform/unicode.h"

namespace hdi {
namespace {

using EditFunction = int32_t(void* parentWindow, HT_Driver* driver);
using SaveAsFunction = int32_t(void* parentWindow, int32_t* noHint);

class CompanionModule {
 public:
  CompanionModule() {
    const char16_t* directory = OrvaneGetAppFullPath();
    const std::u16string path =
        (directory == nullptr ? u"" : directory) + (kPathSeparator + std::u16string(u"PDF-UI.dll"));
    handle_.reset(dlopen(ToUtf8(path).c_str(), RTLD_NOW | RTLD_LOCAL));
  }

  [[nodiscard]] bool IsLoaded() const { return handle_ != nullptr; }

  // Null if the module or the function is missing.
  template <typename Function>
  [[nodiscard]] Function* Find(const char* name) const {
    return handle_ ? reinterpret_cast<Function*>(dlsym(handle_.get(), name)) : nullptr;
  }

 private:
  struct Unload {
    void operator()(void* handle) const { dlclose(handle); }
  };
  std::unique_ptr<void, Unload> handle_;
};

}  // namespace

void EditProperties(void* parentWindow, HT_Driver* driver) {
  const CompanionModule module;
  if (auto* edit = module.Find<EditFunction>("InvokeCustomPropertiesDlg")) edit(parentWindow, driver);
}

bool AskReplaceExisting(void* parentWindow, int32_t& noHint) {
  const CompanionModule module;
  if (!module.IsLoaded()) {
    const ReplaceAnswer answer = AskReplace();
    if (answer != ReplaceAnswer::kNo) noHint = answer == ReplaceAnswer::kYesAlways ? 1 : 0;
    return answer != ReplaceAnswer::kNo;
  }
  auto* ask = module.Find<SaveAsFunction>("InvokeSaveAsDlg");
  int32_t choice = noHint;
  if (ask == nullptr || ask(parentWindow, &choice) != 1) return false;
  noHint = choice;
  return true;
}

}  // namespace hdi
