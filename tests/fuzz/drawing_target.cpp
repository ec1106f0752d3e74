// Parses a DXF drawing and plots it on a device that accepts every call but shows no text, so that texts are
// drawn as strokes and outlines, too.
#include "hdiplot/dxf/dxf_reader.h"
#include "hdiplot/plot/plot_drawing.h"
#include "hdiplot/system/errors.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/memory_file.h"
#include "tests/hdiplot/plain_driver.h"

namespace {

using namespace hdiplot;

class SmallSheetDriver final : public PlainDriver {
 public:
  SmallSheetDriver() {
    record.paperWidth = 2000;
    record.paperHeight = 3000;
    Set(
        hdi::Position::kGetCaps, +[](hdi::HostDevice*, int32_t index) -> uint32_t {
          return index == 8 ? 2000 : index == 10 ? 3000 : index == 88 || index == 90 ? 254 : 0;
        });
  }
};

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static FontBook fonts;  // looking fonts up takes longer than all the rest
  const fuzzing::MemoryFile file(data, size);
  Progress progress(ProgressDisplay::kOff);
  Drawing drawing;
  try {
    drawing = ReadDxf(file.Path(), Strictness::kForgiving, progress);
  } catch (const FileError&) {
    return 0;
  }
  drawing.imageFiles.clear();  // an input must not name files of this machine
  SmallSheetDriver driver;
  ImageBook images;
  PlotDevice device(driver);
  PlotOptions options;
  options.strokeComments = true;
  const DrawingPart part = MeasuredPart(drawing, options, fonts);
  PlotDrawing(part, options, MakeSheet(device), fonts, images, device, progress);
  return 0;
}
