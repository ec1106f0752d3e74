// The companion module on Windows.
#include "platform/companion.h"

#include <windows.h>

#include <memory>
#include <string>
#include <type_traits>

#include "platform/files.h"
#include "platform/windows/parent_window.h"
#include "platform/windows/wide.h"

namespace hdi {
namespace {

using EditFunction = int32_t(ParentWindow* parent, HT_Driver* driver);
using SaveAsFunction = int32_t(ParentWindow* parent, int32_t* noHint);

class CompanionModule {
 public:
  CompanionModule() {
    const char16_t* directory = OrvaneGetAppFullPath();
    const std::u16string path =
        (directory == nullptr ? u"" : directory) + (kPathSeparator + std::u16string(u"PDF-UI.dll"));
    module_.reset(LoadLibraryW(Wide(path)));
  }

  // Null if the module or the function is missing.
  template <typename Function>
  [[nodiscard]] Function* Find(const char* name) const {
    if (!module_) return nullptr;
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_.get(), name)));
  }

 private:
  struct Unload {
    void operator()(HMODULE module) const { FreeLibrary(module); }
  };
  std::unique_ptr<std::remove_pointer_t<HMODULE>, Unload> module_;
};

// The host's window for the duration of one call.
class AttachedWindow {
 public:
  explicit AttachedWindow(void* window) { parent_.window = window; }
  AttachedWindow(const AttachedWindow&) = delete;
  AttachedWindow& operator=(const AttachedWindow&) = delete;
  ~AttachedWindow() { parent_.window = nullptr; }

  [[nodiscard]] ParentWindow* Get() { return &parent_; }

 private:
  ParentWindow parent_;
};

}  // namespace

void EditProperties(void* parentWindow, HT_Driver* driver) {
  const CompanionModule module;
  auto* edit = module.Find<EditFunction>("InvokeCustomPropertiesDlg");
  if (edit == nullptr) return;
  AttachedWindow parent(parentWindow);
  edit(parent.Get(), driver);
}

bool AskReplaceExisting(void* parentWindow, int32_t& noHint) {
  const CompanionModule module;
  auto* ask = module.Find<SaveAsFunction>("InvokeSaveAsDlg");
  if (ask == nullptr) return false;
  AttachedWindow parent(parentWindow == nullptr ? GetDesktopWindow() : parentWindow);
  int32_t choice = noHint;
  if (ask(parent.Get(), &choice) != 1) return false;
  noHint = choice;
  return true;
}

}  // namespace hdi
