// The image decoders. A decoded image must have the size in its header, with pixels that the raster can show.
#include "hdiplot/image/image_file.h"
#include "hdiplot/system/errors.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/fuzz/memory_file.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace hdiplot;
  const fuzzing::MemoryFile file(data, size);
  constexpr uint64_t kMostPixels = 1U << 22;  // larger images only take longer
  const auto decoder = OpenImage(file.Path());
  const auto header = decoder ? decoder->Size() : std::nullopt;
  if (header && header->width * header->height > kMostPixels) return 0;
  try {
    const ImageData image = ReadImageFile(file.Path()).image;
    const bool isShown = image.bitCount == 1 || image.bitCount == 8 || image.bitCount == 32;
    const bool hasAllRows =
        image.width > 0 && image.height > 0 &&
        image.pixels.size() == RowBytes(image.width, image.bitCount) * static_cast<size_t>(image.height);
    const size_t mostColors = image.bitCount == 32 ? 0 : size_t{1} << image.bitCount;
    fuzzing::Require(isShown && hasAllRows && image.palette.size() <= mostColors, "no image", "");
  } catch (const FileError&) {
    return 0;
  }
  return 0;
}
