// Names of files as text. Text is UTF-8 everywhere in hdiplot; a system with other names converts them here.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace hdiplot {

// For messages and for what the driver takes. Bytes or units that are no characters do not make it fail.
[[nodiscard]] std::string PathText(const std::filesystem::path& path);

[[nodiscard]] std::filesystem::path PathFromUtf8(std::string_view text);

// The path in the environment variable `name`, which is ASCII; empty when it is not set.
[[nodiscard]] std::filesystem::path PathFromEnvironment(const char* name);

// Whether opening a file of this name opens a device of the system instead.
[[nodiscard]] bool NamesDevice(const std::filesystem::path& path);

// The files that one argument of the command line names: itself, or, where the shell leaves wildcards to the
// programs, what they match, in alphabetical order. Itself when they match nothing, too.
[[nodiscard]] std::vector<std::filesystem::path> FilesNamed(std::string_view argument);

}  // namespace hdiplot
