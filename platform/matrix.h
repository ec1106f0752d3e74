// The transformation matrix of text, images and pages.
#pragma once

#include <array>

namespace hdi {

// a b c d e f of ISO 32000-1:2008, 8.3.3.
using Matrix = std::array<float, 6>;

}  // namespace hdi
