// File names as text, which is UTF-8 everywhere in hdiplot.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace hdiplot {

// For messages and for the driver. Never fails: invalid bytes or units are replaced.
[[nodiscard]] std::string PathText(const std::filesystem::path& path);

[[nodiscard]] std::filesystem::path PathFromUtf8(std::string_view text);

// The path in the environment variable `name` (ASCII); empty when it is not set.
[[nodiscard]] std::filesystem::path PathFromEnvironment(const char* name);

// Whether this name opens a device of the system.
[[nodiscard]] bool NamesDevice(const std::filesystem::path& path);

// The files that an argument of the command line names. If the shell does not expand wildcards, these are the
// matches in alphabetical order; the argument itself if there are none.
[[nodiscard]] std::vector<std::filesystem::path> FilesNamed(std::string_view argument);

}  // namespace hdiplot
