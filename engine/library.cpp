#include "engine/library.h"

#include "public/fpdfview.h"

namespace hdi::engine {

Library::Library() {
  FPDF_LIBRARY_CONFIG config{};
  config.version = 2;
  FPDF_InitLibraryWithConfig(&config);
}

Library::~Library() { FPDF_DestroyLibrary(); }

}  // namespace hdi::engine
