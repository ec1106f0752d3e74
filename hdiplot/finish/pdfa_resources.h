// Which dictionaries and resources of a document are known to conform to PDF/A.
#pragma once

#include <qpdf/QPDFObjectHandle.hh>

#include "hdiplot/finish/finish.h"

namespace hdiplot {

// Each throws NoPdfA over what the driver and this pass do not write.
void CheckCatalog(QPDFObjectHandle catalog, PdfA level);
void CheckPage(QPDFObjectHandle page);  // its boxes and resources, but neither fonts nor content
void CheckAnnotation(QPDFObjectHandle annotation);

}  // namespace hdiplot
