// Other programs, run to their end.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace hdiplot {

struct ChildRun {
  int status = 0;  // of its exit; negative when it was ended by a signal
  std::string output;
  std::string messages;     // from its standard error
  bool wasTooSlow = false;  // and has been ended
};

// Of a program and of those that it starts; 0: no limit.
struct ChildLimits {
  unsigned seconds = 0;
  uint64_t bytes = 0;  // of memory, for each process
};

// The program of that name in the directories that the system searches, or the file itself if the name has
// directories. Empty when there is none.
[[nodiscard]] std::filesystem::path FindProgram(const std::string& name);

// Runs `program` with `words`, which are UTF-8, behind its name and without input. Returns when it has ended.
// May be called by several threads at a time. Throws std::system_error when it cannot be started.
[[nodiscard]] ChildRun RunChild(const std::filesystem::path& program, const std::vector<std::string>& words,
                                const ChildLimits& limits = {});

}  // namespace hdiplot
