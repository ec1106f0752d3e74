// Writes whole blocks to a file.
#include "platform/windows/write_fully.h"

#include <algorithm>

namespace hdi {

DWORD WriteFully(HANDLE file, const void* data, size_t size) {
  const char* next = static_cast<const char*>(data);
  while (size > 0) {
    constexpr size_t kLargestPart = size_t{1} << 30;
    DWORD written = 0;
    if (!WriteFile(file, next, static_cast<DWORD>(std::min(size, kLargestPart)), &written, nullptr)) {
      return GetLastError();
    }
    if (written == 0) return ERROR_DISK_FULL;
    next += written;
    size -= written;
  }
  return ERROR_SUCCESS;
}

}  // namespace hdi
