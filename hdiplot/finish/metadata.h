// The information dictionary and the XMP packet (ISO 32000-1:2008, 14.3), which agree entry by entry.
#pragma once

#include <qpdf/QPDF.hh>

#include "hdiplot/finish/finish.h"

namespace hdiplot {

// Enters the properties and the dates into the information dictionary, and writes the packet anew where the
// options or the file itself ask for one. For PDF/A it names the part and the level.
void SetMetadata(QPDF& pdf, const FinishOptions& options);

}  // namespace hdiplot
