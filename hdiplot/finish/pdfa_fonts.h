// Fonts as PDF/A wants them (ISO 19005-2:2011, 6.2.11).
#pragma once

#include <map>
#include <qpdf/QPDFObjectHandle.hh>

#include "hdiplot/finish/content_pass.h"

namespace hdiplot {

// The fonts of one document; each is looked at once.
class PdfAFonts {
 public:
  // Makes the fonts of a page's resources conform, and tells what the page's content needs of them. Only
  // embedded composite fonts whose codes are glyph numbers are known; NoPdfA for any other.
  [[nodiscard]] FontsByName Conform(const QPDFObjectHandle& resources);

 private:
  std::map<QPDFObjGen, FontFacts> known_;
};

}  // namespace hdiplot
