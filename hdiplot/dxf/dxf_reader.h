// Reading a DXF drawing.
#pragma once

#include <filesystem>

#include "hdiplot/model/drawing.h"
#include "hdiplot/system/progress.h"

namespace hdiplot {

enum class Strictness {
  kForgiving,  // what cannot be used is left out and told in Drawing::losses
  kStrict,     // it is an error
};

// Reads a text or binary DXF of any version. Throws FileError, with the line where there is one, for a file
// that is missing, empty or something else, or of which nothing can be plotted; strict, for one that is
// broken in any way: cut off, badly nested, with values that are no numbers or far out of range, with counts
// that do not match, or with a block that contains itself. Progress counts the bytes of the file.
//
// Not read are sections other than HEADER, TABLES, BLOCKS and ENTITIES, of which only the form is checked,
// but for layouts, the files of images and the links of fields in OBJECTS. Drawing::skipped counts what the
// model has no shape for, inserts and dimensions without their block, and inserts turned out of the drawing's
// plane: those of the model, and those of blocks as often as the block is inserted. Layout::skipped does so
// for a layout, with viewports that do not look down on the model.
Drawing ReadDxf(const std::filesystem::path& file, Strictness strictness, Progress& progress);

}  // namespace hdiplot
