// Makes a PDF of the driver one of PDF/A, level B (ISO 19005-2:2011, ISO 19005-3:2012). The driver's
// vocabulary is all that is known here: anything else is refused, so that no file claims more than it keeps.
#pragma once

#include <qpdf/QPDF.hh>
#include <stdexcept>
#include <string>
#include <vector>

#include "hdiplot/finish/finish.h"

namespace hdiplot {

// Why a file cannot conform.
class NoPdfA : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// All but the metadata. Adds to `losses` what the pages no longer show. Throws NoPdfA.
void MakePdfA(QPDF& pdf, PdfA level, std::vector<std::string>& losses);

}  // namespace hdiplot
