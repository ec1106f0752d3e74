// How streams are compressed.
#pragma once

#include <cstdint>

namespace hdi::engine {

// What is worth more, time or size. Compared with kNormal, a drawing's stream is about a tenth smaller at
// kSmall and takes five times as long to compress; at kFast it is about 4 % larger and takes half as long.
enum class Compression : uint8_t { kFast, kNormal, kSmall };

// Threads that can work beside the caller's: as many as the process may run at once, without that one.
[[nodiscard]] unsigned DefaultWorkers();

}  // namespace hdi::engine
