// What hdiplot reports about files.
#pragma once

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "hdiplot/system/paths.h"

namespace hdiplot {

// Something is wrong with a file: an input, the driver module, or one that cannot be written. what() is
// "FILE:LINE: message", or "FILE: message" for line 0.
class FileError : public std::runtime_error {
 public:
  FileError(const std::filesystem::path& file, size_t line, const std::string& message)
      : std::runtime_error(PathText(file) + (line == 0 ? "" : ":" + std::to_string(line)) + ": " + message) {}
};

}  // namespace hdiplot
