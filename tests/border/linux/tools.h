// Programs of the desktop and of the shell for the tests.
#pragma once

#include <string>
#include <utility>

#include "tests/border/border.h"

namespace border {

// An executable script of the given body, found before any other program of that name.
void AddTool(const Sandbox& sandbox, const std::string& name, const std::string& body);

// Runs a command of the shell and gives its status and its output, standard error included.
[[nodiscard]] std::pair<int, std::string> RunCommand(const std::string& command);

}  // namespace border
