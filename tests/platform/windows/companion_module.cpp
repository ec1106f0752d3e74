// A companion module whose dialogs return at once.
#include <cstdint>

#include "platform/windows/parent_window.h"

// Copies the parent it gets to the memory passed as the driver.
extern "C" __declspec(dllexport) int32_t InvokeCustomPropertiesDlg(hdi::ParentWindow* parent, void* driver) {
  *static_cast<hdi::ParentWindow*>(driver) = *parent;
  return 1;
}

// Returns yes (1) for a hint of 0 and a parent with a window, and always increments the hint.
extern "C" __declspec(dllexport) int32_t InvokeSaveAsDlg(hdi::ParentWindow* parent, int32_t* noHint) {
  return (*noHint)++ == 0 && parent->window != nullptr ? 1 : 2;
}
