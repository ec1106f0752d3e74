// Puts functions of the test in the place of what a loaded module imports.
#pragma once

#include <windows.h>

namespace border {

// Makes `module` call `replacement` for a function that it imports by name; ends the test program when there
// is no such import, as the module would then open real windows.
void ReplaceImport(HMODULE module, const char* library, const char* function, void* replacement);

}  // namespace border
