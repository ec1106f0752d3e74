// Which font is in a file that a drawing names, and where the stroke fonts lie.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace hdiplot {

// The full name, "DejaVu Sans Bold", of the installed font in the file `name`, which is without directories
// and in any case; of several fonts in the file that of the first. Empty when none is in a file of that name.
[[nodiscard]] std::string FontInFile(std::string_view name);

// The folder of the Hershey fonts: what the environment variable HERSHEY_FONTS_DIR names, or the system's.
[[nodiscard]] std::filesystem::path HersheyFontFolder();

}  // namespace hdiplot
