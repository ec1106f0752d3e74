// The system's words for its error numbers.
#pragma once

#include <cstdint>
#include <string>

namespace hdiplot {

// As UTF-8, without a full stop or a line's end.
[[nodiscard]] std::string ErrorText(uint32_t error);

}  // namespace hdiplot
