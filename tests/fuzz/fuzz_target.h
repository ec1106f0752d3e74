// What every fuzz target defines, and how it says that an answer is wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

// libFuzzer's name for the function that takes an input. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace fuzzing {

// Stops the process, which keeps the input, unless `holds`. `what` was wrong about `about`.
inline void Require(bool holds, const char* what, std::string_view about) {
  if (holds) return;
  std::fprintf(stderr, "%s: %.*s\n", what, static_cast<int>(about.size()), about.data());
  std::abort();
}

}  // namespace fuzzing
