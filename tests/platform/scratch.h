// What the tests of the seams need of their surroundings: a directory, variables and standard streams that
// are put back behind each test.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "platform/unicode.h"

namespace scratch {

struct Fixed {
  Fixed() = default;
  Fixed(const Fixed&) = delete;
  Fixed& operator=(const Fixed&) = delete;
};

class Directory : Fixed {
 public:
  Directory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "hdi-test-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~Directory() { std::filesystem::remove_all(path_); }

  [[nodiscard]] std::string Path(const std::string& name = "") const { return path_ + '/' + name; }
  [[nodiscard]] std::u16string Path16(const std::string& name = "") const { return hdi::ToUtf16(Path(name)); }

  std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return Path(name);
  }

  // An executable shell script.
  void WriteScript(const std::string& name, const std::string& body) const {
    chmod(Write(name, "#!/bin/sh\n" + body).c_str(), 0755);
  }

  [[nodiscard]] std::string Read(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  std::string path_;
};

class Variable : Fixed {
 public:
  Variable(const char* name, const std::optional<std::string>& value) : name_(name) {
    if (const char* old = getenv(name)) before_ = old;
    Set(value);
  }
  ~Variable() { Set(before_); }

 private:
  void Set(const std::optional<std::string>& value) const {
    if (value) {
      setenv(name_, value->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }

  const char* name_;
  std::optional<std::string> before_;
};

// Puts another descriptor in a standard stream's place.
class Stream : Fixed {
 public:
  Stream(int stream, int replacement) : stream_(stream), before_(dup(stream)) { dup2(replacement, stream); }
  ~Stream() {
    dup2(before_, stream_);
    close(before_);
  }

 private:
  int stream_;
  int before_;
};

}  // namespace scratch
