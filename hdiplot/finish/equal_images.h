// Images that a document holds more than once.
#pragma once

#include <qpdf/QPDF.hh>

namespace hdiplot {

// Leads all uses of equal images, soft masks included, to one of them. The others are no longer referred to.
void ShareEqualImages(QPDF& pdf);

}  // namespace hdiplot
