// Other programs, run to their end.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace hdiplot {

struct ChildRun {
  int status = 0;  // of its exit; negative when it was ended by a signal
  std::string output;
  std::string messages;  // from its standard error
};

// Runs `program` with `words`, which are UTF-8, behind its name and without input. Returns when it has ended.
// May be called by several threads at a time. Throws std::system_error when it cannot be started.
[[nodiscard]] ChildRun RunChild(const std::filesystem::path& program, const std::vector<std::string>& words);

}  // namespace hdiplot
