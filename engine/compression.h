// Compression levels and worker threads.
#pragma once

#include <cstdint>

namespace hdi::engine {

// Trades time for size. Compared with kNormal, a drawing's stream is about a tenth smaller at kSmall and
// takes five times as long to compress; at kFast it is about 4 % larger and takes half as long.
enum class Compression : uint8_t { kFast, kNormal, kSmall };

// The number of threads the process can run at once, less the caller's.
[[nodiscard]] unsigned DefaultWorkers();

}  // namespace hdi::engine
