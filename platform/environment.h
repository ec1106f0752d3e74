// What the running process was given: its executable, variables, and the place of the user's data. Paths are
// the platform's, as UTF-16.
#pragma once

#include <string>

namespace hdi {

// The full path of the process's executable; empty when it can't be told.
[[nodiscard]] std::u16string ProcessFileName();

// The value of an environment variable; empty when it is not set.
[[nodiscard]] std::u16string EnvironmentVariable(const std::u16string& name);

// The directory in which applications keep the user's data, each in a folder of its own: %APPDATA% on
// Windows, elsewhere what the XDG base directory rules tell. Without a separator at its end.
[[nodiscard]] std::u16string UserDataDirectory();

}  // namespace hdi
