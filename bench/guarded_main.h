// Reports exceptions of a benchmark's main function.
#pragma once

#include <cstdio>
#include <exception>

namespace bench {

// Returns the result of `run`, or 1 with a message on standard error if it throws.
inline int GuardedMain(int (*run)(int argc, char** argv), int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s: %s\n", argv[0], failure.what());
    return 1;
  }
}

}  // namespace bench
