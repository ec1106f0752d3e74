// A companion module whose dialogs answer at once.
#include <cstdint>

#include "platform/windows/parent_window.h"

// Notes what it is given as a parent in the place of a driver.
extern "C" __declspec(dllexport) int32_t InvokeCustomPropertiesDlg(hdi::ParentWindow* parent, void* driver) {
  *static_cast<hdi::ParentWindow*>(driver) = *parent;
  return 1;
}

// Yes to whoever is not to be asked, over a window; the hint grows by one in any case.
extern "C" __declspec(dllexport) int32_t InvokeSaveAsDlg(hdi::ParentWindow* parent, int32_t* noHint) {
  return (*noHint)++ == 0 && parent->window != nullptr ? 1 : 2;
}
