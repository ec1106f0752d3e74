// Writes whole blocks to a descriptor.
#pragma once

#include <cstddef>

namespace hdi {

// Writes `size` bytes, retrying after interruptions and short writes. Returns 0, or the error number of the
// write that failed; what preceded it has been written. Exceeding the process's file size limit returns EFBIG
// and raises no signal.
[[nodiscard]] int WriteFully(int descriptor, const void* data, size_t size);

}  // namespace hdi
