// Where a question can be put to the user: a desktop dialog, the terminal, or nowhere.
#pragma once

#include <optional>
#include <string>

namespace hdi {

// The path of zenity when there is a display to show it on; empty otherwise.
[[nodiscard]] std::string DialogProgram();

// Puts `question` on the terminal and gives the line that is typed, without its end. Nothing when standard
// input or standard error is no terminal, and at the end of input.
[[nodiscard]] std::optional<std::string> AskOnTerminal(const std::string& question);

enum class ReplaceAnswer { kNo, kYes, kYesAlways };

// Asks whether an existing file may be replaced, and whether to ask again.
[[nodiscard]] ReplaceAnswer AskReplace();

}  // namespace hdi
