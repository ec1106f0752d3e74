// Reading a drawing when others may follow that can be read.
#include "hdiplot/command/drawing_input.h"

#include <exception>

#include "hdiplot/command/printing.h"
#include "hdiplot/system/errors.h"

namespace hdiplot {

std::optional<Drawing> ReadOrReport(const std::filesystem::path& file, Strictness strictness,
                                    Progress& progress) {
  try {
    Drawing drawing = ReadDxf(file, strictness, progress);
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

}  // namespace hdiplot
