// A page of a PDF file as a picture, painted by the engine. A library of its own, for programs that make no
// document themselves.
#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace hdi::engine {

// Three bytes a pixel, blue, green and red; the upper row first, each `stride` bytes behind the one before.
struct PagePicture {
  int32_t width = 0;
  int32_t height = 0;
  int32_t stride = 0;
  std::vector<uint8_t> pixels;
};

// Why there is no picture, as words behind a file's name.
class PreviewError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The first page on white, with its layers as a reader shows them first and without its annotations. Throws
// PreviewError when the file cannot be read or has no page, and when the page has too many pixels.
[[nodiscard]] PagePicture PaintFirstPage(const std::filesystem::path& pdf, double dotsPerInch);

}  // namespace hdi::engine
