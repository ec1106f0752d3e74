// The outline and the page labels of a document (ISO 32000-1:2008, 12.3.3 and 12.4.2).
#pragma once

#include <qpdf/QPDF.hh>
#include <vector>

#include "hdiplot/finish/finish.h"

namespace hdiplot {

// Replaces both. Pages of one drawing that follow each other share an entry where there are several drawings.
void SetOutline(QPDF& pdf, const std::vector<PageName>& names);

}  // namespace hdiplot
