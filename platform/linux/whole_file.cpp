// Whole files on Linux.
#include "platform/whole_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>

#include "platform/linux/descriptor.h"
#include "platform/unicode.h"

namespace hdi {
namespace {

// Creates a new file beside `target` and stores its name in `temporary`. Returns the descriptor or -1.
int OpenBeside(const std::string& target, std::string& temporary) {
  constexpr int kAttempts = 100;  // only files left by crashes are in the way
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    temporary = target + ".tmp" + std::to_string(getpid()) + "-" + std::to_string(attempt);
    const int descriptor = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor >= 0 || errno != EEXIST) return descriptor;
  }
  return -1;
}

}  // namespace

LoadResult LoadWholeFile(const std::u16string& path, std::string& bytes) {
  const int descriptor = open(ToUtf8(path).c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) {
    return errno == ENOENT || errno == ENOTDIR ? LoadResult::kMissing : LoadResult::kUnreadable;
  }
  bytes.clear();
  const bool isComplete = ReadToEnd(descriptor, bytes);
  close(descriptor);
  return isComplete ? LoadResult::kLoaded : LoadResult::kUnreadable;
}

bool ReplaceWholeFile(const std::u16string& path, const std::string& bytes) {
  const std::filesystem::path name = ToUtf8(path);
  std::error_code error;
  // Resolve links, so that a link to a settings file stays a link.
  std::filesystem::path target = std::filesystem::weakly_canonical(name, error);
  if (error) target = name;
  std::filesystem::create_directories(target.parent_path(), error);

  std::string temporary;
  const int descriptor = OpenBeside(target.string(), temporary);
  if (descriptor < 0) return false;
  struct stat before = {};
  bool done = stat(target.c_str(), &before) != 0 || fchmod(descriptor, before.st_mode & 07777) == 0;
  done = done && WriteFully(descriptor, bytes.data(), bytes.size()) == 0;
  done = done && fsync(descriptor) == 0;
  done = close(descriptor) == 0 && done;
  done = done && rename(temporary.c_str(), target.c_str()) == 0;
  if (!done) unlink(temporary.c_str());
  return done;
}

}  // namespace hdi
