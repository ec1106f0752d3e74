// What the driver asks and tells the user. `parentWindow` is the host's window handle or null for the
// desktop.
//
// On Linux a question is a desktop dialog (zenity) when there is a display, a question on the terminal when
// standard input and standard error are one, and otherwise the answer is no.
#pragma once

#include <optional>
#include <string>

namespace hdi {

// Asks for the file to save to, offering `proposedName`, without asking about an existing file. An answer
// without an extension gets ".pdf". Nothing when the user cancels or cannot be asked.
[[nodiscard]] std::optional<std::u16string> AskSavePath(void* parentWindow,
                                                        const std::u16string& proposedName);

// Shows one message with an OK button; on standard error where there is no display.
void ShowMessage(const std::u16string& text);

// Opens `path` in the system's viewer and does not wait for it; a failure is not reported.
void OpenInViewer(const std::u16string& path);

}  // namespace hdi
