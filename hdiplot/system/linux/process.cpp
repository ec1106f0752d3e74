#include "hdiplot/system/process.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>

namespace hdiplot {

namespace {

// A file that is opened while a standard descriptor is closed would get its number, and the output meant for
// it.
void OpenClosedStandardDescriptors() {
  for (int opened = 0; opened >= 0 && opened <= STDERR_FILENO;) {
    opened = open("/dev/null", O_RDWR);
    if (opened > STDERR_FILENO) close(opened);
  }
}

}  // namespace

void PrepareProcess() {
  OpenClosedStandardDescriptors();
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

std::vector<std::string> CommandLineWords(int argc, const char* const* argv) { return {argv, argv + argc}; }

std::filesystem::path ExecutableFile() {
  std::error_code error;  // leaves the path empty
  return std::filesystem::read_symlink("/proc/self/exe", error);
}

void SetEnvironmentVariable(const std::string& name, const std::string& value) {
  setenv(name.c_str(), value.c_str(), 1);
}

std::string ProcessNumber() { return std::to_string(getpid()); }

std::optional<std::string> AskForPassword(const std::string& prompt) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> terminal(std::fopen("/dev/tty", "r"), &std::fclose);
  termios before{};
  if (terminal == nullptr) return std::nullopt;
  const int descriptor = fileno(terminal.get());
  if (tcgetattr(descriptor, &before) != 0) return std::nullopt;
  termios silent = before;
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  tcsetattr(descriptor, TCSAFLUSH, &silent);
  std::fputs(prompt.c_str(), stderr);
  std::string password;
  for (int c = std::fgetc(terminal.get()); c != EOF && c != '\n'; c = std::fgetc(terminal.get())) {
    password += static_cast<char>(c);
  }
  tcsetattr(descriptor, TCSAFLUSH, &before);
  std::fputc('\n', stderr);
  return password;
}

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) != 0; }

}  // namespace hdiplot
