// Questions and messages to the user. `parentWindow` is the host's window handle, or null for the desktop.
//
// On Linux a question is a desktop dialog (zenity) if there is a display, otherwise a prompt if standard
// input and standard error are terminals, and otherwise the answer is no.
#pragma once

#include <optional>
#include <string>

namespace hdi {

// Asks for the file to save to, offering `proposedName`. Does not ask about replacing an existing file. Adds
// ".pdf" to an answer without an extension. Returns nothing if the user cancels or cannot be asked.
[[nodiscard]] std::optional<std::u16string> AskSavePath(void* parentWindow,
                                                        const std::u16string& proposedName);

// Shows a message with an OK button, or writes it to standard error without a display.
void ShowMessage(const std::u16string& text);

// Opens `path` in the system's viewer without waiting. Failures are not reported.
void OpenInViewer(const std::u16string& path);

}  // namespace hdi
