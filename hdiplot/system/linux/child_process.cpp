#include "hdiplot/system/child_process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
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

}  // namespace

ChildRun RunChild(const std::filesystem::path& program, const std::vector<std::string>& words) {
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
  const int failure = posix_spawn(&child, program.c_str(), actions.Get(), nullptr, arguments.data(), environ);
  if (failure != 0) throw std::system_error(failure, std::generic_category(), program.string());
  output.CloseWriter();
  messages.CloseWriter();

  ChildRun run;
  std::thread reader([&] { messages.ReadAll(run.messages); });
  output.ReadAll(run.output);
  reader.join();
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  return run;
}

}  // namespace hdiplot
