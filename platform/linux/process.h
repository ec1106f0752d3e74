// Runs desktop programs, without a shell.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace hdi {

// Returns the path of the first executable file `name` in the directories of PATH, or an empty string.
[[nodiscard]] std::string FindProgram(const std::string& name);

struct ProgramResult {
  bool succeeded;      // exited with status 0
  std::string output;  // standard output
};

// Runs `arguments`, the program's path first, and waits for it. Returns nothing if it could not be started.
[[nodiscard]] std::optional<ProgramResult> RunProgram(std::vector<std::string> arguments);

// Starts `arguments` detached, in a session of its own and with its standard streams at /dev/null. It is not
// a child of this process, so nobody has to wait for it. Failures are not reported.
void StartDetached(std::vector<std::string> arguments);

}  // namespace hdi
