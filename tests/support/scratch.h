// A temporary directory, and environment variables that are restored after a test. Names and paths are UTF-8.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <random>
#include <string>

#include "platform/files.h"
#include "platform/unicode.h"

namespace scratch {

// Null removes the variable.
#if defined(_WIN32)
inline void SetVariable(const char* name, const char* value) {
  _putenv_s(name, value == nullptr ? "" : value);
}
#else
inline void SetVariable(const char* name, const char* value) {
  value == nullptr ? unsetenv(name) : setenv(name, value, 1);
}
#endif

struct Fixed {
  Fixed() = default;
  Fixed(const Fixed&) = delete;
  Fixed& operator=(const Fixed&) = delete;
};

class Directory : Fixed {
 public:
  Directory() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("hdi-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ~Directory() { std::filesystem::remove_all(path_); }

  [[nodiscard]] std::u16string Path16(const std::string& name = "") const {
    return path_.u16string() + hdi::kPathSeparator + hdi::ToUtf16(name);
  }
  [[nodiscard]] std::string Path(const std::string& name = "") const { return hdi::ToUtf8(Path16(name)); }

  std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(std::filesystem::path(Path16(name)), std::ios::binary) << bytes;
    return Path(name);
  }

  [[nodiscard]] std::string Read(const std::string& name) const {
    std::ifstream file(std::filesystem::path(Path16(name)), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::filesystem::path path_;
};

class Variable : Fixed {
 public:
  Variable(const char* name, const std::optional<std::string>& value) : name_(name) {
    if (const char* old = std::getenv(name)) before_ = old;
    SetVariable(name_, value ? value->c_str() : nullptr);
  }
  ~Variable() { SetVariable(name_, before_ ? before_->c_str() : nullptr); }

 private:
  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace scratch
