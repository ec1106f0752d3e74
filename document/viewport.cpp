#include "document/viewport.h"

namespace hdi {

void SetPageViewport(engine::Page& page, float scale) { page.SetMeasureViewport(scale); }

}  // namespace hdi
