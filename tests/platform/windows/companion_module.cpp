// A companion module whose dialogs answer at once.
#include <cstdint>

#include "platform/windows/parent_window.h"

namespace {

bool IsWhole(const hdi::ParentWindow* parent) {
  return parent->size == sizeof *parent && parent->version == hdi::kParentWindowVersion;
}

}  // namespace

// Notes the window in the place of a driver.
extern "C" __declspec(dllexport) int32_t InvokeCustomPropertiesDlg(hdi::ParentWindow* parent, void* driver) {
  if (IsWhole(parent)) *static_cast<void**>(driver) = parent->window;
  return 1;
}

// Yes to whoever is not to be asked, over a window; the hint grows by one in any case.
extern "C" __declspec(dllexport) int32_t InvokeSaveAsDlg(hdi::ParentWindow* parent, int32_t* noHint) {
  const bool agrees = IsWhole(parent) && parent->window != nullptr && *noHint == 0;
  ++*noHint;
  return agrees ? 1 : 2;
}
