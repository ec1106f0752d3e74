// Reading a DXF drawing.
#pragma once

#include <filesystem>

#include "host/hdiplot/dxf/drawing.h"

namespace hdiplot {

// Reads a text DXF of any version. Throws FileError, with the line where there is one, for a file that is
// missing, empty, binary, something else than a DXF, or broken: cut off, badly nested, with values that are
// no numbers or far out of range, with counts that do not match, or with a block that contains itself.
//
// Not read are sections other than HEADER, TABLES, BLOCKS and ENTITIES, of which only the form is checked,
// but for layouts, the files of images and the links of fields in OBJECTS. Drawing::skipped counts what the
// model has no shape for, inserts and dimensions without their block, and inserts turned out of the drawing's
// plane: those of the model, and those of blocks as often as the block is inserted. Layout::skipped does so
// for a layout, with viewports that do not look down on the model.
Drawing ReadDxf(const std::filesystem::path& file);

}  // namespace hdiplot
