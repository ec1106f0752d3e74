// Whole files on Windows.
#include "platform/whole_file.h"

#include <windows.h>

#include <array>
#include <filesystem>
#include <memory>

#include "platform/windows/wide.h"
#include "platform/windows/write_fully.h"

namespace hdi {
namespace {

struct CloseFile {
  void operator()(HANDLE file) const { CloseHandle(file); }
};
using File = std::unique_ptr<void, CloseFile>;

// Null if the file cannot be opened; see GetLastError.
File OpenFileAt(const std::u16string& path, DWORD access, DWORD share, DWORD disposition) {
  const HANDLE handle =
      CreateFileW(Wide(path), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
  return File(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

bool MeansMissing(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
    case ERROR_INVALID_NAME:  // a second drive letter within the path, as when an absolute path is appended
                              // to another
      return true;
    default:
      return false;
  }
}

// Creates a new file beside `target` and stores its name in `temporary`.
File OpenBeside(const std::u16string& target, std::u16string& temporary) {
  constexpr int kAttempts = 100;  // only files left by crashes are in the way
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const std::wstring suffix =
        L".tmp" + std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(attempt);
    temporary = target + Units(suffix.c_str());
    File file = OpenFileAt(temporary, GENERIC_WRITE, 0, CREATE_NEW);
    if (file || GetLastError() != ERROR_FILE_EXISTS) return file;
  }
  return nullptr;
}

bool IsDirectory(const std::u16string& path) {
  const DWORD attributes = GetFileAttributesW(Wide(path));
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

LoadResult LoadWholeFile(const std::u16string& path, std::string& bytes) {
  // Do not prevent others from replacing the file meanwhile.
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const File file = OpenFileAt(path, GENERIC_READ, kShareAll, OPEN_EXISTING);
  if (!file) return MeansMissing(GetLastError()) ? LoadResult::kMissing : LoadResult::kUnreadable;
  bytes.clear();
  std::array<char, 16384> buffer;
  DWORD count = 0;
  do {
    if (!ReadFile(file.get(), buffer.data(), buffer.size(), &count, nullptr)) return LoadResult::kUnreadable;
    bytes.append(buffer.data(), count);
  } while (count > 0);
  return LoadResult::kLoaded;
}

bool ReplaceWholeFile(const std::u16string& path, const std::string& bytes) {
  if (IsDirectory(path)) return false;
  std::error_code error;
  std::filesystem::create_directories(std::filesystem::path(Wide(path)).parent_path(), error);

  std::u16string temporary;
  File file = OpenBeside(path, temporary);
  if (!file) return false;
  bool done = WriteFully(file.get(), bytes.data(), bytes.size()) == ERROR_SUCCESS &&
              FlushFileBuffers(file.get()) != 0;
  file.reset();
  // ReplaceFileW keeps the old file's attributes and permissions, but requires one.
  done = done &&
         (ReplaceFileW(Wide(path), Wide(temporary), nullptr, 0, nullptr, nullptr) != 0 ||
          MoveFileExW(Wide(temporary), Wide(path), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0);
  if (!done) DeleteFileW(Wide(temporary));
  return done;
}

}  // namespace hdi
