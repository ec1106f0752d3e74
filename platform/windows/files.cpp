// Files and directories on Windows.
#include "platform/files.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <system_error>

#include "platform/unicode.h"
#include "platform/windows/wide.h"

namespace hdi {
namespace {

// Whether a device that takes a stream, as NUL or a pipe, goes by the name.
bool IsStream(const std::u16string& path) {
  // Asking for no access at all opens a file that somebody else holds without sharing, too.
  const HANDLE handle = CreateFileW(Wide(path), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  const DWORD type = GetFileType(handle);
  CloseHandle(handle);
  return type == FILE_TYPE_CHAR || type == FILE_TYPE_PIPE;
}

// A quota that is used up shows as a full disk, too.
bool MeansFull(DWORD error) { return error == ERROR_DISK_FULL || error == ERROR_HANDLE_DISK_FULL; }

}  // namespace

bool FileExists(const std::u16string& path) {
  return GetFileAttributesW(Wide(path)) != INVALID_FILE_ATTRIBUTES && !IsStream(path);
}

bool RemoveFile(const std::u16string& path) {
  if (DeleteFileW(Wide(path))) return true;
  const DWORD error = GetLastError();
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

std::u16string TemporaryDirectory() {
  std::array<char16_t, MAX_PATH + 1> buffer = {};  // the longest that there is
  const DWORD length = GetTempPathW(static_cast<DWORD>(buffer.size()), Wide(buffer.data()));
  return {buffer.data(), length < buffer.size() ? length : 0};
}

void MakeDirectory(const std::u16string& path) { CreateDirectoryW(Wide(path), nullptr); }

OutputFile::~OutputFile() { Close(); }

bool OutputFile::Open(const std::u16string& path) {
  Close();
  path_ = path;
  // Nobody reads or writes the file while it is being made: that is the compatibility sharing of the
  // platform's application framework, which hosts know this driver's files to be opened with.
  constexpr DWORD kExclusive = 0;
  const HANDLE handle = CreateFileW(Wide(path), GENERIC_WRITE, kExclusive, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle != INVALID_HANDLE_VALUE) handle_ = handle;
  return IsOpen();
}

bool OutputFile::IsOpen() const { return handle_ != nullptr; }

void OutputFile::Close() {
  if (IsOpen()) CloseHandle(handle_);
  handle_ = nullptr;
}

void OutputFile::Write(const void* data, size_t size) {
  const char* next = static_cast<const char*>(data);
  while (size > 0) {
    constexpr size_t kLargestPart = size_t{1} << 30;
    DWORD written = 0;
    if (!WriteFile(handle_, next, static_cast<DWORD>(std::min(size, kLargestPart)), &written, nullptr)) {
      const DWORD error = GetLastError();
      if (MeansFull(error)) return;
      throw std::system_error(static_cast<int>(error), std::system_category(), ToUtf8(path_));
    }
    next += written;
    size -= written;
  }
}

}  // namespace hdi
