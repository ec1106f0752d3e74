// Questions to the user in a desktop dialog or on the terminal.
#pragma once

#include <optional>
#include <string>

namespace hdi {

// Returns the path of zenity if there is a display to show it on, otherwise an empty string.
[[nodiscard]] std::string DialogProgram();

// Writes `question` to the terminal and returns the line typed in reply. Returns nothing if standard input or
// standard error is not a terminal, or at the end of input.
[[nodiscard]] std::optional<std::string> AskOnTerminal(const std::string& question);

enum class ReplaceAnswer { kNo, kYes, kYesAlways };

// Asks whether an existing file may be replaced, and whether to ask again.
[[nodiscard]] ReplaceAnswer AskReplace();

}  // namespace hdi
