// Running hdiplot in a directory of its own.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace command {

struct Outcome {
  int status = -1;  // -1 when it was killed
  std::string out;
  std::string err;
};

// A new directory that is the command's current one; removed at the end.
class Workplace {
 public:
  Workplace();
  Workplace(const Workplace&) = delete;
  Workplace& operator=(const Workplace&) = delete;
  ~Workplace();

  [[nodiscard]] std::filesystem::path Path(const std::string& name) const { return directory_ / name; }
  void Write(const std::string& name, const std::string& text) const;
  [[nodiscard]] std::string Read(const std::string& name) const;  // empty when there is no such file
  [[nodiscard]] bool Has(const std::string& name) const;
  [[nodiscard]] std::vector<std::string> Names() const;  // sorted

  // Runs the command with the fake module or the real one; `variables` are added to the environment.
  [[nodiscard]] Outcome RunFake(const std::vector<std::string>& arguments,
                                const std::map<std::string, std::string>& variables = {}) const;
  [[nodiscard]] Outcome RunReal(const std::vector<std::string>& arguments,
                                const std::map<std::string, std::string>& variables = {}) const;

  // What the fake module has written since the last call.
  [[nodiscard]] std::string TakeLog() const;

 private:
  [[nodiscard]] Outcome Run(const std::vector<std::string>& arguments,
                            const std::map<std::string, std::string>& variables) const;

  // Beside the directory, so that this file is none of the command's.
  [[nodiscard]] std::filesystem::path Beside(const char* ending) const {
    return directory_.string() + ending;
  }

  std::filesystem::path directory_;
};

}  // namespace command
