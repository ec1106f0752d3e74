// Paths of the driver's settings.
#pragma once

#include <string>

namespace hdi {

// Returns a path below the application's directory.
[[nodiscard]] std::u16string InApplicationDirectory(const std::u16string& name);

// Returns a path below the user's data directory.
[[nodiscard]] std::u16string InUserDirectory(const std::u16string& name);

// The device list, with one section a device. The file name is in lower case.
[[nodiscard]] std::u16string ListFile();

// The file with the user's choices.
[[nodiscard]] std::u16string UserSettingsFile();

}  // namespace hdi
