// Writing whole blocks to a file, for output and settings files alike.
#pragma once

#include <windows.h>

#include <cstddef>

namespace hdi {

// Writes `size` bytes in as many parts as that takes. Returns 0, or the error of the part that failed; what
// came before it has been written. A part of which nothing fits counts as a full disk.
[[nodiscard]] DWORD WriteFully(HANDLE file, const void* data, size_t size);

}  // namespace hdi
