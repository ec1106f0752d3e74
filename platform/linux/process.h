// Running the desktop's programs, without a shell.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace hdi {

// The first executable file `name` in the directories of PATH; empty when there is none.
[[nodiscard]] std::string FindProgram(const std::string& name);

struct ProgramResult {
  bool succeeded;      // ended by itself with status 0
  std::string output;  // its standard output
};

// Runs `arguments`, the program's path first, and waits for its end. Nothing when it could not be started.
[[nodiscard]] std::optional<ProgramResult> RunProgram(std::vector<std::string> arguments);

// Starts `arguments` in a session of its own, with nothing on its standard streams, and forgets it: it is no
// child of this process, so nobody needs to wait for it. A failure is not reported.
void StartDetached(std::vector<std::string> arguments);

}  // namespace hdi
