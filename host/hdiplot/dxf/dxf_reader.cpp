#include "host/hdiplot/dxf/dxf_reader.h"

#include <string>

#include "host/hdiplot/dxf/drawing_builder.h"
#include "host/hdiplot/dxf/dxf_text.h"
#include "host/hdiplot/dxf/structure_reader.h"
#include "host/hdiplot/errors.h"
#include "host/hdiplot/system/paths.h"

namespace hdiplot {

Drawing ReadDxf(const std::filesystem::path& file) {
  const std::string text = LoadDxfText(file);
  try {
    DrawingBuilder builder;
    StructureReader(text, builder).Read();
    Drawing drawing = builder.Finish();
    drawing.name = PathText(file.filename());
    drawing.folder = file.parent_path();
    return drawing;
  } catch (const DxfFault& fault) {
    throw FileError(file, fault.line, fault.message);
  }
}

}  // namespace hdiplot
