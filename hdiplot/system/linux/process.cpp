#include "hdiplot/system/process.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
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

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) != 0; }

}  // namespace hdiplot
