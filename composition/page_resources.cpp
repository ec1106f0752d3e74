// Passes the generator's requests on to the engine's page.
#include "composition/page_resources.h"

namespace hdi {
namespace {

// Names of blend modes (ISO 32000-1:2008, 11.3.5).
std::string_view BlendModeName(BlendMode mode) { return mode == BlendMode::kDarken ? "Darken" : "Normal"; }

}  // namespace

std::string PageResources::AddExtGState(const ExtGStateEntries& entries) {
  engine::GraphicsState state{
      .fillAlpha = entries.fillAlpha, .strokeAlpha = entries.strokeAlpha, .blendMode = {}};
  if (entries.blendMode) state.blendMode = BlendModeName(*entries.blendMode);
  return page_.AddGraphicsState(state);
}

std::string PageResources::FontName(uint32_t objectNumber) {
  if (objectNumber == 0) return page_.StandardFontName("Helvetica");
  return page_.ResourceName(engine::ResourceCategory::kFont, objectNumber);
}

std::string PageResources::XObjectName(uint32_t objectNumber) {
  return page_.ResourceName(engine::ResourceCategory::kXObject, objectNumber);
}

std::string PageResources::PropertiesName(uint32_t objectNumber) {
  return page_.ResourceName(engine::ResourceCategory::kProperties, objectNumber);
}

}  // namespace hdi
