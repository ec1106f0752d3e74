// Image XObjects (ISO 32000-1:2008, 8.9.5) from a JPEG or from pixels.
//
// Functions return the object number of the image stream, or 0 if the input makes no image. Rows have no
// padding, the upper one first. The document keeps its own copies, in the size they are saved in. Throws
// std::bad_alloc, with nothing added.
#pragma once

#include <cstdint>
#include <span>

namespace hdi::engine {

class Document;

// Adds a JPEG file unchanged (DCTDecode), with size, colour space and depth from its header; four components
// are decoded inverted, as their encoders write them. Returns 0 if the header cannot be read. `alpha` has one
// byte a pixel and becomes the soft mask; none if it is empty or too small.
[[nodiscard]] uint32_t AddJpegImage(Document& document, std::span<const uint8_t> jpeg,
                                    std::span<const uint8_t> alpha);

// Adds an RGB image of three bytes a pixel with a soft mask of one byte a pixel. Returns 0 unless both have
// exactly the size of the image, which has at least one pixel.
[[nodiscard]] uint32_t AddColorImage(Document& document, int32_t width, int32_t height,
                                     std::span<const uint8_t> rgb, std::span<const uint8_t> alpha);

// Adds an image of one bit a pixel, the highest bit first, 0 black and 1 white; each row starts at a byte.
// The bits after a row's last pixel are kept. Returns 0 unless `bits` has exactly the size of the image,
// which has at least one pixel.
[[nodiscard]] uint32_t AddBlackAndWhiteImage(Document& document, int32_t width, int32_t height,
                                             std::span<const uint8_t> bits);

// Removes an image and its soft mask from the document. Nothing may refer to it. Does nothing for 0.
void RemoveImage(Document& document, uint32_t image) noexcept;

}  // namespace hdi::engine
