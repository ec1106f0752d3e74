// The system's error messages.
#pragma once

#include <cstdint>
#include <string>

namespace hdiplot {

// UTF-8, without a full stop or line end. A placeholder for a file name is replaced by "the file".
[[nodiscard]] std::string ErrorText(uint32_t error);

}  // namespace hdiplot
