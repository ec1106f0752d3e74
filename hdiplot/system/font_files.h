// The fonts in installed files, and the folder of the stroke fonts.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace hdiplot {

// The full name, "DejaVu Sans Bold", of the first installed font in the file `name`, case-insensitive and
// without directories. Empty when there is none.
[[nodiscard]] std::string FontInFile(std::string_view name);

// The folder of the Hershey fonts: that in the environment variable HERSHEY_FONTS_DIR, or the system's.
[[nodiscard]] std::filesystem::path HersheyFontFolder();

}  // namespace hdiplot
