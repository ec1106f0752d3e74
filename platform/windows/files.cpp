// Files and directories on Windows.
#include "platform/files.h"

#include <windows.h>

#include <array>
#include <system_error>

#include "platform/unicode.h"
#include "platform/windows/wide.h"
#include "platform/windows/write_fully.h"

namespace hdi {
namespace {

// Whether the name refers to a stream device such as NUL or a pipe.
bool IsStream(const std::u16string& path) {
  // Without any access rights, this also opens files that another process holds without sharing.
  const HANDLE handle = CreateFileW(Wide(path), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  const DWORD type = GetFileType(handle);
  CloseHandle(handle);
  return type == FILE_TYPE_CHAR || type == FILE_TYPE_PIPE;
}

// An exhausted quota is also reported as a full disk.
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
  std::array<char16_t, MAX_PATH> buffer = {};
  const DWORD length = GetTempPathW(static_cast<DWORD>(buffer.size()), Wide(buffer.data()));
  return {buffer.data(), length < buffer.size() ? length : 0};
}

void MakeDirectory(const std::u16string& path) { CreateDirectoryW(Wide(path), nullptr); }

OutputFile::~OutputFile() { Close(); }

bool OutputFile::Open(const std::u16string& path) {
  Close();
  path_ = path;
  constexpr DWORD kExclusive = 0;  // no other process may access the file while it is written
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
  const DWORD error = WriteFully(handle_, data, size);
  if (error != ERROR_SUCCESS && !MeansFull(error)) {
    throw std::system_error(static_cast<int>(error), std::system_category(), ToUtf8(path_));
  }
}

}  // namespace hdi
