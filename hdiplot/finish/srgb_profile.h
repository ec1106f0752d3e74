// The colour space of screens, as an ICC profile.
#pragma once

#include <string>

namespace hdiplot {

// sRGB (IEC 61966-2-1), the same bytes each time.
[[nodiscard]] std::string SrgbProfile();

}  // namespace hdiplot
