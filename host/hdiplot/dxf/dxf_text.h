// Gets a DXF file into memory, and says of other files what they are.
#pragma once

#include <filesystem>
#include <string>

namespace hdiplot {

// The file's text, without a byte order mark, sure to start like a DXF and to hold no zero bytes.
// Throws FileError for a file that cannot be read, is empty, or is something else.
std::string LoadDxfText(const std::filesystem::path& file);

}  // namespace hdiplot
