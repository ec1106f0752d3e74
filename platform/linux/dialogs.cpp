// Dialogs and the viewer on Linux. The desktop's programs cannot use the host's window handle, so dialogs
// have no parent.
#include "platform/dialogs.h"

#include <unistd.h>

#include <filesystem>

#include "platform/linux/descriptor.h"
#include "platform/linux/process.h"
#include "platform/linux/prompts.h"
#include "platform/unicode.h"

namespace hdi {
namespace {

std::optional<std::string> AskPathInDialog(const std::string& program, const std::string& proposedName) {
  auto result =
      RunProgram({program, "--file-selection", "--save", "--title=Save PDF", "--filename=" + proposedName,
                  "--file-filter=PDF | *.pdf *.PDF", "--file-filter=All files | *"});
  if (!result || !result->succeeded) return std::nullopt;
  if (result->output.ends_with('\n')) result->output.pop_back();
  return result->output;
}

std::optional<std::string> AskPathOnTerminal(const std::string& proposedName) {
  const std::optional<std::string> answer = AskOnTerminal("Save as [" + proposedName + "]: ");
  return answer && answer->empty() ? proposedName : answer;
}

}  // namespace

std::optional<std::u16string> AskSavePath(void* /*parentWindow*/, const std::u16string& proposedName) {
  const std::string proposed = ToUtf8(proposedName);
  const std::string program = DialogProgram();
  std::optional<std::string> answer =
      program.empty() ? AskPathOnTerminal(proposed) : AskPathInDialog(program, proposed);
  if (!answer || answer->empty()) return std::nullopt;
  if (answer->ends_with('/')) *answer += proposed;  // a directory: append the proposed name
  if (!std::filesystem::path(*answer).has_extension()) *answer += ".pdf";
  return ToUtf16(*answer);
}

void ShowMessage(const std::u16string& text) {
  const std::string message = ToUtf8(text);
  const std::string program = DialogProgram();
  if (!program.empty()) {
    const auto shown = RunProgram({program, "--error", "--no-markup", "--title=PDF", "--text=" + message});
    if (shown && shown->succeeded) return;  // otherwise there may be no display
  }
  const std::string line = message + '\n';
  // A failure to write is ignored: there is nowhere else to report it.
  static_cast<void>(WriteFully(STDERR_FILENO, line.data(), line.size()));
}

void OpenInViewer(const std::u16string& path) {
  const std::string program = FindProgram("xdg-open");
  if (program.empty()) return;
  std::string name = ToUtf8(path);
  // A file name that would be taken for an option or a URI.
  const bool misread = name.starts_with('-') || name.find(':') != name.npos;
  if (misread && !name.starts_with('/')) name.insert(0, "./");
  StartDetached({program, name});
}

}  // namespace hdi
