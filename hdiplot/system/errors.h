// Errors about files.
#pragma once

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "hdiplot/system/paths.h"

namespace hdiplot {

// An error in an input or the driver module, or in writing a file. what() is "FILE:LINE: message", or
// "FILE: message" for line 0.
class FileError : public std::runtime_error {
 public:
  FileError(const std::filesystem::path& file, size_t line, const std::string& message)
      : std::runtime_error(PathText(file) + (line == 0 ? "" : ":" + std::to_string(line)) + ": " + message) {}
};

}  // namespace hdiplot
