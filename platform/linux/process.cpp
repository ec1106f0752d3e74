// Runs desktop programs.
#include "platform/linux/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "platform/linux/descriptor.h"

namespace hdi {
namespace {

// The argument vector for exec, pointing into `arguments`.
std::vector<char*> ArgumentVector(std::vector<std::string>& arguments) {
  std::vector<char*> vector(arguments.size() + 1, nullptr);
  std::transform(arguments.begin(), arguments.end(), vector.begin(),
                 [](std::string& argument) { return argument.data(); });
  return vector;
}

bool IsProgram(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && access(path.c_str(), X_OK) == 0;
}

// Signals that the host may ignore but that programs expect at their defaults.
constexpr std::array kSignalsToReset = {SIGPIPE, SIGCHLD, SIGINT, SIGQUIT, SIGHUP, SIGXFSZ};

// Starts the program with its standard output redirected to `output`. Returns its process id or -1.
pid_t Spawn(std::vector<std::string>& arguments, int output) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  // The host's blocked signals must not be inherited.
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  sigset_t none;
  sigemptyset(&none);
  posix_spawnattr_setsigmask(&attributes, &none);
  sigset_t defaults;
  sigemptyset(&defaults);
  for (const int number : kSignalsToReset) sigaddset(&defaults, number);
  posix_spawnattr_setsigdefault(&attributes, &defaults);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

  pid_t child = -1;
  const int error = posix_spawn(&child, arguments.front().c_str(), &actions, &attributes,
                                ArgumentVector(arguments).data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? child : -1;
}

// Returns the status from waitpid, or nothing if it was reaped elsewhere: by a host that ignores SIGCHLD or
// waits for all children.
std::optional<int> WaitFor(pid_t child) {
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return std::nullopt;
  }
  return status;
}

// Runs in the detached program between fork and exec: must not allocate or lock.
[[noreturn]] void BecomeDetached(char* const* arguments) {
  setsid();
  const int nothing = open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, stream);
  close_range(STDERR_FILENO + 1, ~0U, 0);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  for (const int number : kSignalsToReset) signal(number, SIG_DFL);
  execve(arguments[0], arguments, environ);
  _exit(127);
}

}  // namespace

std::string FindProgram(const std::string& name) {
  const char* variable = std::getenv("PATH");
  std::string_view path = variable == nullptr ? "" : variable;
  while (!path.empty()) {
    const std::string_view directory = path.substr(0, path.find(':'));
    path.remove_prefix(std::min(directory.size() + 1, path.size()));
    if (directory.empty()) continue;
    std::string candidate = std::string(directory) + '/' + name;
    if (IsProgram(candidate)) return candidate;
  }
  return {};
}

std::optional<ProgramResult> RunProgram(std::vector<std::string> arguments) {
  std::array<int, 2> ends;
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
  const pid_t child = Spawn(arguments, ends[1]);
  close(ends[1]);
  std::string output;
  if (child >= 0) static_cast<void>(ReadToEnd(ends[0], output));  // what has been read counts
  close(ends[0]);
  if (child < 0) return std::nullopt;
  const std::optional<int> status = WaitFor(child);
  return ProgramResult{status && WIFEXITED(*status) && WEXITSTATUS(*status) == 0, std::move(output)};
}

void StartDetached(std::vector<std::string> arguments) {
  const std::vector<char*> vector = ArgumentVector(arguments);
  const pid_t child = fork();
  if (child == 0) {
    // The grandchild is adopted by init, and the child exits at once. Uses _Fork because the host's fork
    // handlers have already run and must not run here.
    if (_Fork() == 0) BecomeDetached(vector.data());
    _exit(0);
  }
  if (child > 0) WaitFor(child);
}

}  // namespace hdi
