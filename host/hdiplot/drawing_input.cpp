// Reading a drawing when others may follow that can be read.
#include "host/hdiplot/drawing_input.h"

#include <exception>

#include "host/hdiplot/dxf/dxf_reader.h"
#include "host/hdiplot/errors.h"
#include "host/hdiplot/printing.h"

namespace hdiplot {

std::optional<Drawing> ReadOrReport(const std::filesystem::path& file) {
  try {
    return ReadDxf(file);
  } catch (const FileError& error) {
    PrintError(error.what());
  } catch (const std::exception& error) {
    PrintError(FileError(file, 0, error.what()).what());  // no memory, say
  }
  return std::nullopt;
}

}  // namespace hdiplot
