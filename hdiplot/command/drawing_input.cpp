#include "hdiplot/command/drawing_input.h"

#include <exception>

#include "hdiplot/command/dwg_converter.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/names.h"
#include "hdiplot/system/paths.h"

namespace hdiplot {

namespace {

Drawing ReadDwg(const std::filesystem::path& file, const CommandLine& line, Progress& progress) {
  const ConvertedDwg converted(file, line.dwgConverter);
  Drawing drawing = ReadDxf(converted.Dxf(), line.strictness, progress);
  drawing.name = PathText(file.filename());
  drawing.folder = file.parent_path();
  const std::string temporary = PathText(converted.Dxf());
  for (std::string& loss : drawing.losses) {
    if (loss.starts_with(temporary)) loss.replace(0, temporary.size(), PathText(file));
  }
  return drawing;
}

}  // namespace

std::optional<Drawing> ReadOrReport(const std::filesystem::path& file, const CommandLine& line,
                                    Progress& progress) {
  try {
    Drawing drawing = IsDwg(file) ? ReadDwg(file, line, progress) : ReadDxf(file, line.strictness, progress);
    if (!drawing.losses.empty()) progress.Finish();
    for (const std::string& loss : drawing.losses) PrintError(loss);
    return drawing;
  } catch (const FileError& error) {
    progress.Finish();
    PrintError(error.what());
  } catch (const std::exception& error) {
    progress.Finish();
    PrintError(FileError(file, 0, error.what()).what());  // no memory, say
  }
  return std::nullopt;
}

std::map<std::string, ListedLayer> LayersOf(std::span<const Drawing> drawings) {
  std::map<std::string, ListedLayer> layers;
  const std::string* last = nullptr;  // entities come in runs of one layer
  const auto addAll = [&](const Entities& entities) {
    for (const Entity& entity : entities) {
      const std::string& name = entity.attributes.layer;
      if (last == nullptr || *last != name) layers.try_emplace(FoldedName(name), ListedLayer{name, Layer()});
      last = &name;
    }
  };
  for (const Drawing& drawing : drawings) {
    for (const auto& [name, layer] : drawing.layers)
      layers.try_emplace(FoldedName(name), ListedLayer{name, layer});
    for (const auto& [name, block] : drawing.blocks) addAll(block.entities);
    addAll(drawing.entities);
  }
  return layers;
}

}  // namespace hdiplot
