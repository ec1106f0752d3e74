#include "platform/linux/descriptor.h"

#include <pthread.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>

namespace hdi {
namespace {

// Blocks SIGXFSZ in this thread: the kernel raises it along with EFBIG, and by default it would end the
// host's process.
class FileSizeSignalBlock {
 public:
  FileSizeSignalBlock() {
    sigset_t pending;
    sigpending(&pending);
    wasPending_ = sigismember(&pending, SIGXFSZ) == 1;
    sigemptyset(&signal_);
    sigaddset(&signal_, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &signal_, &before_);
  }
  FileSizeSignalBlock(const FileSizeSignalBlock&) = delete;
  FileSizeSignalBlock& operator=(const FileSizeSignalBlock&) = delete;
  ~FileSizeSignalBlock() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  // Discards a signal that arrived while blocked.
  void Discard() {
    constexpr timespec kNoWait = {};
    if (!wasPending_) sigtimedwait(&signal_, nullptr, &kNoWait);
  }

 private:
  sigset_t signal_;
  sigset_t before_;
  bool wasPending_ = false;
};

}  // namespace

bool ReadToEnd(int descriptor, std::string& bytes) {
  std::array<char, 16384> buffer;
  ssize_t count = 0;
  do {
    count = read(descriptor, buffer.data(), buffer.size());
    if (count > 0) bytes.append(buffer.data(), static_cast<size_t>(count));
  } while (count > 0 || (count < 0 && errno == EINTR));
  return count == 0;
}

int WriteFully(int descriptor, const void* data, size_t size) {
  FileSizeSignalBlock block;
  const char* next = static_cast<const char*>(data);
  while (size > 0) {
    const ssize_t written = write(descriptor, next, size);
    if (written < 0) {
      const int error = errno;
      if (error == EINTR) continue;
      if (error == EFBIG) block.Discard();
      return error;
    }
    next += written;
    size -= static_cast<size_t>(written);
  }
  return 0;
}

}  // namespace hdi
