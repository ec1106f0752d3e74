// The processor cores that a process may use.
#pragma once

#include <sched.h>

#include <cstddef>

namespace bench {

// How many this process may use.
[[nodiscard]] size_t CoreCount();

// Restricts this thread and the processes that it starts to some cores, until destroyed.
class CoreLimit {
 public:
  // `count`: how many; 0, or more than there are: no limit. Throws std::system_error.
  explicit CoreLimit(size_t count);
  CoreLimit(const CoreLimit&) = delete;
  CoreLimit& operator=(const CoreLimit&) = delete;
  ~CoreLimit();

 private:
  cpu_set_t before_;
};

}  // namespace bench
