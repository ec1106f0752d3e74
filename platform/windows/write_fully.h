// Writes whole blocks to a file.
#pragma once

#include <windows.h>

#include <cstddef>

namespace hdi {

// Writes `size` bytes in as many parts as needed. Returns 0, or the error of the part that failed; what
// preceded it has been written. A part of which nothing fits counts as a full disk.
[[nodiscard]] DWORD WriteFully(HANDLE file, const void* data, size_t size);

}  // namespace hdi
