// Files within a PDF (ISO 32000-1:2008, 7.11.4; associated files: ISO 19005-3:2012, Annex E).
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <qpdf/QPDF.hh>

namespace hdiplot {

// Embeds `file` as a source of the document. Its date is that of its last change, `latestDate` at most.
// Throws FileError when it cannot be read.
void Attach(QPDF& pdf, const std::filesystem::path& file, std::optional<int64_t> latestDate);

}  // namespace hdiplot
