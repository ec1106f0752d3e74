#include "hdiplot/system/files.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <cerrno>
#include <system_error>

#include "hdiplot/system/windows/error_text.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

struct CloseAnyHandle {
  void operator()(void* handle) const { CloseHandle(handle); }
};

// Device names are reserved in every folder.
bool IsFile(int descriptor) {
  return GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor))) == FILE_TYPE_DISK;
}

bool IsSameName(const fs::path& a, const fs::path& b) {
  return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_EQUAL;
}

}  // namespace

FileStream OpenToRead(const fs::path& file) {
  FileStream stream(_wfopen(file.c_str(), L"rb"));
  if (!stream && errno == EINVAL) errno = ENOENT;  // not a valid file name
  return stream;
}

FileStream CreateNew(const fs::path& file) {
  const int descriptor =
      _wopen(file.c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
  if (descriptor < 0) return nullptr;
  if (IsFile(descriptor)) return FileStream(_fdopen(descriptor, "wb"));
  _close(descriptor);
  errno = EINVAL;
  return nullptr;
}

std::string MoveOver(const fs::path& from, const fs::path& to) {
  return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != 0 ? ""
                                                                               : ErrorText(GetLastError());
}

fs::path WithoutLinks(const fs::path& file) {
  const DWORD attributes = GetFileAttributesW(file.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return file;
  void* opened = CreateFileW(file.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                             OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (opened == INVALID_HANDLE_VALUE) return file;
  const std::unique_ptr<void, CloseAnyHandle> handle(opened);
  std::wstring place(GetFinalPathNameByHandleW(opened, nullptr, 0, 0), L'\0');
  place.resize(GetFinalPathNameByHandleW(opened, place.data(), static_cast<DWORD>(place.size()), 0));
  return place.empty() ? file : fs::path(place);
}

bool LeadToSameFile(const fs::path& a, const fs::path& b) {
  std::error_code error;
  if (fs::equivalent(a, b, error) && !error) return true;
  const fs::path wholeA = fs::absolute(a, error);
  const fs::path wholeB = fs::absolute(b, error);
  if (!IsSameName(wholeA.filename(), wholeB.filename())) return false;
  if (IsSameName(wholeA, wholeB)) return true;
  return fs::equivalent(wholeA.parent_path(), wholeB.parent_path(), error) && !error;
}

}  // namespace hdiplot
