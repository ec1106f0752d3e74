// Limits on what single objects hold (ISO 19005-2:2011, 6.1.13).
#pragma once

#include <cstddef>
#include <qpdf/QPDF.hh>
#include <string_view>

namespace hdiplot {

[[nodiscard]] bool FitsInteger(double value);

// Each throws NoPdfA, with the value, when it is beyond a limit.
void CheckRealLimit(double value);
void CheckStringLimit(size_t bytes);
void CheckNameLimit(std::string_view name);  // without the slash

// The limits of all objects, the number of objects, and the filters and places of streams (6.1.7).
void CheckObjects(QPDF& pdf);

}  // namespace hdiplot
