// Reads a DXF drawing.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

#include "hdiplot/model/drawing.h"
#include "hdiplot/system/progress.h"

namespace hdiplot {

enum class Strictness : uint8_t {
  kForgiving,  // what is faulty is left out and reported in Drawing::losses
  kStrict,     // the first fault is an error
};

// Reads a text or binary DXF of any version. Throws FileError, with the line if there is one, for a file that
// is missing, empty or something else, or without anything to plot; strict: also for any fault, such as a
// file that is cut off, bad nesting, values that are not numbers or out of range, wrong counts, or a block
// that contains itself. Progress counts the bytes of the file.
//
// Other sections than HEADER, TABLES, BLOCKS and ENTITIES are only checked for their form; of OBJECTS,
// layouts, image definitions and the links of fields are read. Drawing::skipped counts entities that the
// model has no shape for, inserts and dimensions without their block, and inserts turned out of the drawing's
// plane: those of the model, and those of blocks as often as the block is inserted. Layout::skipped does so
// for a layout, and counts viewports that do not look down on the model.
[[nodiscard]] Drawing ReadDxf(const std::filesystem::path& file, Strictness strictness, Progress& progress);

// Whether a file that starts like this is a DXF.
[[nodiscard]] bool LooksLikeDxf(std::string_view start);

}  // namespace hdiplot
