// Images of the engine's document: image XObjects (ISO 32000-1:2008, 8.9.5) made from a JPEG or from pixels.
//
// Each function returns the object number of the image's stream, or 0 when no image can be made of what it
// was given. Rows stand without gaps, the picture's upper one first. The document keeps copies of its own, as
// small as they are saved: what was passed in may go. Throws std::bad_alloc when there is no memory for them,
// and has made nothing then.
#pragma once

#include <cstdint>
#include <span>

namespace hdi::engine {

class Document;

// The bytes of a JPEG file as they stand (DCTDecode), with size, colour space and depth from its header; the
// colours of one with four components are inverted, as their writers do. 0 when the header can't be read.
// `alpha` is the picture's opacity, a byte a pixel, and becomes its soft mask; one that is empty or too small
// for the picture makes none.
[[nodiscard]] uint32_t AddJpegImage(Document& document, std::span<const uint8_t> jpeg,
                                    std::span<const uint8_t> alpha);

// Three bytes a pixel, red, green and blue, with a soft mask of a byte a pixel. 0 unless both have exactly
// the size of the picture, which has at least one pixel.
[[nodiscard]] uint32_t AddColorImage(Document& document, int32_t width, int32_t height,
                                     std::span<const uint8_t> rgb, std::span<const uint8_t> alpha);

// A bit a pixel, the highest one first, 0 black and 1 white; each row starts at a byte. The bits behind a
// row's last pixel are kept. 0 unless `bits` has exactly the size of the picture, which has at least one
// pixel.
[[nodiscard]] uint32_t AddBlackAndWhiteImage(Document& document, int32_t width, int32_t height,
                                             std::span<const uint8_t> bits);

// Takes an image that nothing refers to out of the document, with its soft mask. Nothing for number 0.
void RemoveImage(Document& document, uint32_t image) noexcept;

}  // namespace hdi::engine
