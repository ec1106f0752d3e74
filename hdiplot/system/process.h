// The running process and its surroundings.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace hdiplot {

// To be called first: makes a failed write to a standard stream an error of the call instead of a signal, and
// makes the streams binary.
void PrepareProcess();

// The words of the command line, the program's name first, as UTF-8. Takes the arguments of main().
[[nodiscard]] std::vector<std::string> CommandLineWords(int argc, const char* const* argv);

// The executable; empty when unknown.
[[nodiscard]] std::filesystem::path ExecutableFile();

// For this process and the modules that it loads. To be called before a second thread starts.
void SetEnvironmentVariable(const std::string& name, const std::string& value);

// The process's number, for the names of temporary files.
[[nodiscard]] std::string ProcessNumber();

// Asks on the terminal, without echo. None without a terminal.
[[nodiscard]] std::optional<std::string> AskForPassword(const std::string& prompt);

// Whether standard error is a terminal with escape sequences.
[[nodiscard]] bool StandardErrorIsTerminal();

}  // namespace hdiplot
