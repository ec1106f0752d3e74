// Writing a PDF in place of a file that may be its own source.
#pragma once

#include <filesystem>
#include <memory>
#include <qpdf/QPDF.hh>

#include "hdiplot/finish/finish.h"

namespace hdiplot {

// Writes `pdf`, which it closes, beside `output` and moves it there. Streams keep the bytes they have. Throws
// FileError, and has left no file behind then.
void WritePdf(std::unique_ptr<QPDF> pdf, const std::filesystem::path& output, const FinishOptions& options);

}  // namespace hdiplot
