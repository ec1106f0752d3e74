// Writing whole blocks to a descriptor, for output and settings files alike.
#pragma once

#include <cstddef>

namespace hdi {

// Writes `size` bytes, over interruptions and short writes. Returns 0, or the error number of the write that
// failed; what came before it has been written. A file that would outgrow the process's limit gives EFBIG and
// no signal.
[[nodiscard]] int WriteFully(int descriptor, const void* data, size_t size);

}  // namespace hdi
