// The picture of a plot's first page.
#pragma once

#include <filesystem>

namespace hdiplot {

// Paints the first page of `pdf` and writes it as a PNG to `file`, which is replaced only by a whole one.
// Throws FileError when there is no such page, or it is too large, or the PNG cannot be written.
void WritePreview(const std::filesystem::path& pdf, const std::filesystem::path& file, int dotsPerInch);

}  // namespace hdiplot
