// The companion module PDF-UI.dll in the application's directory, which holds the driver's own dialogs.
// Loaded for one call at a time.
#pragma once

#include <cstdint>

#include "platform/border.h"

namespace hdi {

// Lets the user edit the record at the driver's GetDevModePointer through InvokeCustomPropertiesDlg. Does
// nothing if the module or the function is missing.
void EditProperties(void* parentWindow, HT_Driver* driver);

// Asks through InvokeSaveAsDlg whether an existing file may be replaced. `noHint` is the "do not ask again"
// choice, updated only if the answer is yes. The answer is no if the module lacks the function. Without the
// module, the answer is no on Windows; elsewhere the question is asked as described in platform/dialogs.h.
[[nodiscard]] bool AskReplaceExisting(void* parentWindow, int32_t& noHint);

}  // namespace hdi
