// Questions on the desktop and on the terminal.
#include "platform/linux/prompts.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "platform/linux/descriptor.h"
#include "platform/linux/process.h"

namespace hdi {
namespace {

bool IsSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

ReplaceAnswer AskReplaceInDialog(const std::string& program) {
  const std::string always = "Replace, don't ask again";
  const auto result = RunProgram({program, "--question", "--no-markup", "--title=PDF",
                                  "--text=The file exists already. Replace it?", "--ok-label=Replace",
                                  "--cancel-label=Cancel", "--extra-button=" + always});
  if (!result) return ReplaceAnswer::kNo;
  // zenity reports an extra button by its text, not by the status.
  if (result->output == always + '\n') return ReplaceAnswer::kYesAlways;
  return result->succeeded ? ReplaceAnswer::kYes : ReplaceAnswer::kNo;
}

}  // namespace

std::string DialogProgram() {
  return IsSet("DISPLAY") || IsSet("WAYLAND_DISPLAY") ? FindProgram("zenity") : std::string();
}

std::optional<std::string> AskOnTerminal(const std::string& question) {
  if (isatty(STDIN_FILENO) == 0 || isatty(STDERR_FILENO) == 0) return std::nullopt;
  if (WriteFully(STDERR_FILENO, question.data(), question.size()) != 0) return std::nullopt;
  // Read byte by byte, so that the input after the line is left for the host.
  std::string line;
  for (;;) {
    char next = 0;
    const ssize_t count = read(STDIN_FILENO, &next, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return std::nullopt;
    if (next == '\n') return line;
    line.push_back(next);
  }
}

ReplaceAnswer AskReplace() {
  const std::string program = DialogProgram();
  if (!program.empty()) return AskReplaceInDialog(program);
  const std::string answer =
      AskOnTerminal("The file exists already. Replace it? [y]es, [n]o, [a]lways: ").value_or("");
  if (answer.empty()) return ReplaceAnswer::kNo;
  switch (answer.front()) {
    case 'y':
    case 'Y':
      return ReplaceAnswer::kYes;
    case 'a':
    case 'A':
      return ReplaceAnswer::kYesAlways;
    default:
      return ReplaceAnswer::kNo;
  }
}

}  // namespace hdi
