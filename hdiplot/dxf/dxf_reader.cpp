#include "hdiplot/dxf/dxf_reader.h"

#include <algorithm>
#include <memory>
#include <string>

#include "hdiplot/dxf/binary_groups.h"
#include "hdiplot/dxf/drawing_builder.h"
#include "hdiplot/dxf/dxf_file.h"
#include "hdiplot/dxf/structure_reader.h"
#include "hdiplot/dxf/text_groups.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/paths.h"

namespace hdiplot {
namespace {

FileError ErrorAt(const std::filesystem::path& file, const DxfFault& fault, bool isBinary) {
  if (!isBinary) return {file, fault.place, fault.message};
  return {file, 0, "byte " + std::to_string(fault.place) + ": " + fault.message};
}

bool IsEmpty(const Drawing& drawing) {
  return drawing.entities.empty() && std::ranges::all_of(drawing.layouts, [&drawing](const Layout& layout) {
           const auto block = drawing.blocks.find(layout.block);
           return block == drawing.blocks.end() || block->second.entities.empty();
         });
}

}  // namespace

Drawing ReadDxf(const std::filesystem::path& file, Strictness strictness, Progress& progress) {
  const std::string bytes = LoadDxf(file, strictness == Strictness::kStrict);
  const bool isBinary = IsBinaryDxf(bytes);
  std::unique_ptr<GroupSource> source;
  if (isBinary) {
    source = std::make_unique<BinaryGroups>(bytes);
  } else {
    source = std::make_unique<TextGroups>(bytes);
  }
  FaultLog faults(strictness == Strictness::kStrict);
  try {
    progress.Start(bytes.size());
    DrawingBuilder builder(faults);
    StructureReader(*source, builder, faults, progress).Read();
    Drawing drawing = builder.Finish();
    if (faults.Count() > 0 && IsEmpty(drawing)) throw DxfFault(faults.First().front());
    drawing.name = PathText(file.filename());
    drawing.folder = file.parent_path();
    for (const DxfFault& fault : faults.First()) {
      drawing.losses.emplace_back(ErrorAt(file, fault, isBinary).what());
    }
    if (const size_t more = faults.Count() - faults.First().size(); more > 0) {
      drawing.losses.emplace_back(FileError(file, 0, "and " + std::to_string(more) + " more").what());
    }
    return drawing;
  } catch (const DxfFault& fault) {
    throw ErrorAt(file, fault, isBinary);
  }
}

}  // namespace hdiplot
