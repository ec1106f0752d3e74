// What the command prints. A reader that has gone away or a full disk behind a standard stream is no reason
// to stop a plot: nothing here throws, and whether standard output took everything is asked at the end.
#pragma once

#include <cstdio>
#include <string_view>

namespace hdiplot {

// Prints `text` as one line. Control characters, which names of files may hold, are printed as "?".
void PrintLine(std::FILE* stream, std::string_view text) noexcept;

// Prints "hdiplot: " and the message as one line to standard error.
void PrintError(std::string_view message) noexcept;

// Prints lines as they are to standard output.
void PrintText(std::string_view text) noexcept;

// Whether all that was printed to standard output has been written.
[[nodiscard]] bool FlushStandardOutput() noexcept;

}  // namespace hdiplot
