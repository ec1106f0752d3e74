// The system's words for its error numbers.
#pragma once

#include <cstdint>
#include <string>

namespace hdiplot {

// As UTF-8, without a full stop or a line's end. A text that leaves room for a file's name has "the file"
// there.
[[nodiscard]] std::string ErrorText(uint32_t error);

}  // namespace hdiplot
