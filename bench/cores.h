// The processor cores that a process may use.
#pragma once

#include <sched.h>

#include <cstddef>

namespace bench {

// So many this process may use.
[[nodiscard]] size_t CoreCount();

// Keeps this thread, and the processes that it starts, to some of its cores while it lives.
class CoreLimit {
 public:
  // To the first `count` of them, or to all when there are no more; 0: no limit. Throws std::system_error.
  explicit CoreLimit(size_t count);
  CoreLimit(const CoreLimit&) = delete;
  CoreLimit& operator=(const CoreLimit&) = delete;
  ~CoreLimit();

 private:
  cpu_set_t before_;
};

}  // namespace bench
