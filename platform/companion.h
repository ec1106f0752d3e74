// The companion module PDF-UI.dll, which lies in the application's directory and holds the driver's own
// dialogs. It is loaded for one call and unloaded behind it.
#pragma once

#include <cstdint>

#include "platform/border.h"

namespace hdi {

// Lets the user edit the record behind the driver's GetDevModePointer through InvokeCustomPropertiesDlg. Does
// nothing when the module or the function is missing.
void EditProperties(void* parentWindow, HT_Driver* driver);

// Asks through InvokeSaveAsDlg whether an existing file may be replaced; `noHint` is the current choice not
// to be asked again, and the new one when the answer is yes. A module without the function answers no.
// Without the module the answer is no on Windows; elsewhere the question is asked as platform/dialogs.h
// tells.
[[nodiscard]] bool AskReplaceExisting(void* parentWindow, int32_t& noHint);

}  // namespace hdi
