// Reads and writes descriptors completely.
#pragma once

#include <cstddef>
#include <string>

namespace hdi {

// Appends everything up to the end of the file or pipe to `bytes`. Returns false if reading fails.
[[nodiscard]] bool ReadToEnd(int descriptor, std::string& bytes);

// Writes `size` bytes, retrying after interruptions and short writes. Returns 0, or the error number of the
// write that failed; what preceded it has been written. Exceeding the process's file size limit returns EFBIG
// and raises no signal.
[[nodiscard]] int WriteFully(int descriptor, const void* data, size_t size);

}  // namespace hdi
