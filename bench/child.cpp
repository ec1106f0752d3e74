#include "bench/child.h"

#include <spawn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "bench/cores.h"

namespace bench {
namespace {

constexpr int kCannotPlot = 3;  // exit status of contestant_main.cpp

std::string ReadAll(int descriptor) {
  std::string text;
  std::array<char, 256> block;
  while (true) {
    const ssize_t size = read(descriptor, block.data(), block.size());
    if (size <= 0) return text;
    text.append(block.data(), static_cast<size_t>(size));
  }
}

// Takes memory and gives it back. A virtual machine's host may have taken free memory away, and the first
// program that touches it again then waits for the host: a fifth of a second per 100 MB, seen as noise by
// factors. In a process of its own, as the peak of this one counts for its children.
void TouchMemory() {
  constexpr size_t kBytes = size_t{512} << 20;  // more than any scene takes
  const pid_t child = fork();
  if (child == 0) {
    void* block = mmap(nullptr, kBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block != MAP_FAILED && madvise(block, kBytes, MADV_HUGEPAGE) == 0) std::memset(block, 1, kBytes);
    _exit(0);
  }
  if (child > 0) waitpid(child, nullptr, 0);
}

}  // namespace

std::optional<ProgramRun> RunProgram(std::vector<std::string> command) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (std::string& word : command) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  std::array<int, 2> pipeEnds;
  if (pipe(pipeEnds.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, pipeEnds[0]);
  posix_spawn_file_actions_addclose(&actions, pipeEnds[1]);
  pid_t child = 0;
  const int failure = posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(pipeEnds[1]);
  const std::string output = failure == 0 ? ReadAll(pipeEnds[0]) : std::string();
  close(pipeEnds[0]);
  if (failure != 0) throw std::system_error(failure, std::generic_category(), command[0]);

  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  if (WIFEXITED(status) && WEXITSTATUS(status) == kCannotPlot) return std::nullopt;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error(command[0] + " failed");
  return ProgramRun{output, static_cast<double>(usage.ru_maxrss) * 1024};
}

std::optional<RunResult> RunContestant(std::vector<std::string> command, size_t cores) {
  TouchMemory();
  const CoreLimit limit(cores);
  const auto run = RunProgram(std::move(command));
  if (!run) return std::nullopt;
  return RunResult{std::atof(run->output.c_str()), run->peakBytes};
}

}  // namespace bench
