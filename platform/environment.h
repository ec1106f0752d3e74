// The process's executable, environment variables and user data directory. Paths are the platform's, as
// UTF-16.
#pragma once

#include <string>

namespace hdi {

// Returns the full path of the process's executable, or an empty string if it is unknown.
[[nodiscard]] std::u16string ProcessFileName();

// Returns the value of an environment variable, or an empty string if it is not set.
[[nodiscard]] std::u16string EnvironmentVariable(const std::u16string& name);

// Returns the parent directory of applications' user data, without a trailing separator: %APPDATA% on
// Windows, elsewhere as the XDG Base Directory Specification says.
[[nodiscard]] std::u16string UserDataDirectory();

}  // namespace hdi
