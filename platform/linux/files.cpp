// Files and directories on Linux.
#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "platform/linux/descriptor.h"
#include "platform/unicode.h"

namespace hdi {
namespace {

enum class Kind { kNothing, kFile, kInTheWay, kStream };

// What is at `path`. Links are followed; a dangling link counts as a file.
Kind KindAt(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) {
    return lstat(path.c_str(), &status) == 0 ? Kind::kFile : Kind::kNothing;
  }
  switch (status.st_mode & S_IFMT) {
    case S_IFREG:
      return Kind::kFile;
    case S_IFDIR:
    case S_IFBLK:  // a disk cannot take output
      return Kind::kInTheWay;
    default:
      return Kind::kStream;
  }
}

}  // namespace

bool FileExists(const std::u16string& path) {
  const Kind kind = KindAt(ToUtf8(path));
  return kind == Kind::kFile || kind == Kind::kInTheWay;
}

bool RemoveFile(const std::u16string& path) {
  const std::string name = ToUtf8(path);
  const Kind kind = KindAt(name);
  if (kind != Kind::kFile) return kind == Kind::kNothing;
  return unlink(name.c_str()) == 0 || errno == ENOENT;
}

std::u16string TemporaryDirectory() {
  std::error_code error;
  return ToUtf16(std::filesystem::temp_directory_path(error).string());
}

void MakeDirectory(const std::u16string& path) { mkdir(ToUtf8(path).c_str(), 0777); }

OutputFile::~OutputFile() { Close(); }

bool OutputFile::Open(const std::u16string& path) {
  Close();
  path_ = path;
  const std::string name = ToUtf8(path);
  do {
    descriptor_ = open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  } while (descriptor_ == kClosed && errno == EINTR);
  return IsOpen();
}

bool OutputFile::IsOpen() const { return descriptor_ != kClosed; }

void OutputFile::Close() {
  if (IsOpen()) close(descriptor_);
  descriptor_ = kClosed;
}

void OutputFile::Write(const void* data, size_t size) {
  const int error = WriteFully(descriptor_, data, size);
  const bool full = error == ENOSPC || error == EDQUOT || error == EFBIG;
  if (error != 0 && !full) throw std::system_error(error, std::generic_category(), ToUtf8(path_));
}

}  // namespace hdi
