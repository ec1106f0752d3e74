// The library knows the folder of its fonts.
#include "host/hdiplot/system/stroke_font_file.h"

namespace hdiplot {

hershey_font* LoadHersheyFont(const std::string& name) { return hershey_font_load(name.c_str()); }

}  // namespace hdiplot
