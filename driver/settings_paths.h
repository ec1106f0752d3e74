// Where the driver's settings lie.
#pragma once

#include <string>

namespace hdi {

// A path below the application's directory.
[[nodiscard]] std::u16string InApplicationDirectory(const std::u16string& name);

// A path below the user's data directory.
[[nodiscard]] std::u16string InUserDirectory(const std::u16string& name);

// The list file, with one section for each device. Its name is all lower case.
[[nodiscard]] std::u16string ListFile();

// The file that keeps the user's choices.
[[nodiscard]] std::u16string UserSettingsFile();

}  // namespace hdi
