// How streams are compressed.
#pragma once

#include <cstdint>

namespace hdi::engine {

// What is worth more, time or size. The same drawing at kSmall takes about a tenth less than at kNormal and
// five times as long, at kFast about 4 % more and half as long.
enum class Compression : uint8_t { kFast, kNormal, kSmall };

// Threads that can work beside the caller's: as many as the process may run at once, without that one.
[[nodiscard]] unsigned DefaultWorkers();

}  // namespace hdi::engine
