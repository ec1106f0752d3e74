#include "bench/cores.h"

#include <cerrno>
#include <system_error>

namespace bench {
namespace {

cpu_set_t CurrentCores() {
  cpu_set_t cores;
  CPU_ZERO(&cores);
  if (sched_getaffinity(0, sizeof cores, &cores) != 0) {
    throw std::system_error(errno, std::generic_category(), "sched_getaffinity");
  }
  return cores;
}

}  // namespace

size_t CoreCount() {
  const cpu_set_t cores = CurrentCores();
  return static_cast<size_t>(CPU_COUNT(&cores));
}

CoreLimit::CoreLimit(size_t count) : before_(CurrentCores()) {
  if (count == 0) return;
  cpu_set_t chosen;
  CPU_ZERO(&chosen);
  for (size_t core = 0; core < CPU_SETSIZE && count > 0; ++core) {
    if (!CPU_ISSET(core, &before_)) continue;
    CPU_SET(core, &chosen);
    --count;
  }
  if (sched_setaffinity(0, sizeof chosen, &chosen) != 0) {
    throw std::system_error(errno, std::generic_category(), "sched_setaffinity");
  }
}

CoreLimit::~CoreLimit() { sched_setaffinity(0, sizeof before_, &before_); }

}  // namespace bench
