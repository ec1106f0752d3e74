// Where the Hershey fonts are found.
#pragma once

#include <string>

extern "C" {
#include <hersheyfont.h>
}

namespace hdiplot {

// A font by its name, "rowmans", which the caller frees with hershey_font_free. Null when there is none.
[[nodiscard]] hershey_font* LoadHersheyFont(const std::string& name);

}  // namespace hdiplot
