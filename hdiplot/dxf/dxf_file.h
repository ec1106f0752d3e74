// Gets a DXF file into memory, and says of other files what they are.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace hdiplot {

// The bytes of a binary DXF, or the text of one without a byte order mark. Throws FileError for a file that
// cannot be read, is empty, or is something else; strict: for text that does not start like a DXF, too.
std::string LoadDxf(const std::filesystem::path& file, bool isStrict);

// Whether what a file starts with is of a DXF.
[[nodiscard]] bool LooksLikeDxf(std::string_view start);

}  // namespace hdiplot
