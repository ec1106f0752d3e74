// Renders a page of a PDF file with the engine. A separate library, for programs that make no document
// themselves.
#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace hdi::engine {

// Three bytes a pixel: blue, green, red. Rows are `stride` bytes apart, the upper one first.
struct PagePicture {
  int32_t width = 0;
  int32_t height = 0;
  int32_t stride = 0;
  std::vector<uint8_t> pixels;
};

// The message continues a sentence that starts with the file's name.
class PreviewError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Renders the first page on white, with its default layers and without annotations. Throws PreviewError if
// the file cannot be read or has no page, or if the page has too many pixels.
[[nodiscard]] PagePicture PaintFirstPage(const std::filesystem::path& pdf, double dotsPerInch);

}  // namespace hdi::engine
