// The running process and its surroundings.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace hdiplot {

// To be called first: makes the standard streams safe to use, so that what cannot be written is an error of
// the call and not the end of the process, and has bytes reach them as they are.
void PrepareProcess();

// The words of the command line, the program's name first, as UTF-8. Takes what main() was given.
[[nodiscard]] std::vector<std::string> CommandLineWords(int argc, const char* const* argv);

// The executable; empty when it cannot be told.
[[nodiscard]] std::filesystem::path ExecutableFile();

// For this process and the modules that it loads. Before it has a second thread.
void SetEnvironmentVariable(const std::string& name, const std::string& value);

// The process's number, for the names of temporary files.
[[nodiscard]] std::string ProcessNumber();

// Whether standard error is a terminal that obeys escape sequences.
[[nodiscard]] bool StandardErrorIsTerminal();

}  // namespace hdiplot
