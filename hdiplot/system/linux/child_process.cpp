#include "hdiplot/system/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <mutex>
#include <sstream>
#include <system_error>
#include <thread>

namespace hdiplot {
namespace {

// The reading end stays with this process; children get the other one alone.
class Pipe {
 public:
  Pipe() {
    if (pipe2(ends_.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    close(ends_[0]);
    CloseWriter();
  }

  [[nodiscard]] int Writer() const { return ends_[1]; }
  void CloseWriter() {
    if (ends_[1] >= 0) close(ends_[1]);
    ends_[1] = -1;
  }

  // All that is written until the last writer has gone.
  void ReadAll(std::string& text) const {
    std::array<char, 4096> block;
    for (;;) {
      const ssize_t size = read(ends_[0], block.data(), block.size());
      if (size < 0 && errno == EINTR) continue;
      if (size <= 0) return;
      text.append(block.data(), static_cast<size_t>(size));
    }
  }

 private:
  std::array<int, 2> ends_{};
};

class SpawnActions {
 public:
  SpawnActions(const Pipe& output, const Pipe& messages) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, output.Writer(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions_, messages.Writer(), STDERR_FILENO);
  }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;
  ~SpawnActions() { posix_spawn_file_actions_destroy(&actions_); }

  [[nodiscard]] const posix_spawn_file_actions_t* Get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

// Makes the child the first of a group, which can be ended as a whole.
class SpawnAttributes {
 public:
  explicit SpawnAttributes(bool isGroup) {
    posix_spawnattr_init(&attributes_);
    if (isGroup) posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETPGROUP);
  }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }

  [[nodiscard]] const posix_spawnattr_t* Get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_;
};

// Ends a group of processes after some time, unless it is destroyed before.
class Watchdog {
 public:
  Watchdog(pid_t group, unsigned seconds) {
    if (seconds > 0) thread_ = std::thread([this, group, seconds] { Watch(group, seconds); });
  }
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;
  ~Watchdog() { (void)Stop(); }

  // Whether it has ended the group. The group's first process must not be waited for before.
  bool Stop() {
    {
      const std::lock_guard lock(mutex_);
      isOver_ = true;
    }
    changed_.notify_all();
    if (thread_.joinable()) thread_.join();
    return hasEnded_;
  }

 private:
  void Watch(pid_t group, unsigned seconds) {
    std::unique_lock lock(mutex_);
    if (changed_.wait_for(lock, std::chrono::seconds(seconds), [this] { return isOver_; })) return;
    hasEnded_ = true;
    kill(-group, SIGKILL);
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  bool isOver_ = false;
  bool hasEnded_ = false;
  std::thread thread_;
};

}  // namespace

std::filesystem::path FindProgram(const std::string& name) {
  if (name.find('/') != std::string::npos) return access(name.c_str(), X_OK) == 0 ? name : std::string();
  const char* const path = std::getenv("PATH");
  std::istringstream directories(path != nullptr ? path : "/usr/bin:/bin");
  for (std::string directory; std::getline(directories, directory, ':');) {
    std::filesystem::path file = std::filesystem::path(directory) / name;
    if (access(file.c_str(), X_OK) == 0) return file;
  }
  return {};
}

ChildRun RunChild(const std::filesystem::path& program, const std::vector<std::string>& words,
                  const ChildLimits& limits) {
  std::vector<std::string> all{program.string()};
  all.insert(all.end(), words.begin(), words.end());
  std::vector<char*> arguments;
  arguments.reserve(all.size() + 1);
  for (std::string& word : all) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  Pipe output;
  Pipe messages;
  pid_t child = 0;
  const SpawnActions actions(output, messages);
  const SpawnAttributes attributes(limits.seconds > 0);
  const int failure =
      posix_spawn(&child, program.c_str(), actions.Get(), attributes.Get(), arguments.data(), environ);
  if (failure != 0) throw std::system_error(failure, std::generic_category(), program.string());
  Watchdog watchdog(child, limits.seconds);
  if (limits.bytes > 0) {
    const rlimit memory{limits.bytes, limits.bytes};
    prlimit(child, RLIMIT_AS, &memory, nullptr);
  }
  output.CloseWriter();
  messages.CloseWriter();

  ChildRun run;
  std::thread reader([&] { messages.ReadAll(run.messages); });
  output.ReadAll(run.output);
  reader.join();
  siginfo_t ended{};
  while (waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT) < 0 && errno == EINTR) {
  }
  run.wasTooSlow = watchdog.Stop();
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  return run;
}

}  // namespace hdiplot
