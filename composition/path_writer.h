// Writes paths as path construction operators (ISO 32000-1:2008, 8.5.2), and matrices.
#pragma once

#include <cstddef>

#include "composition/byte_buffer.h"
#include "composition/page_objects.h"

namespace hdi {

// Writes the points of a path from index `from`, without a leading or trailing blank: a rectangle as "re",
// anything else point by point. Long paths are written in steps: returns the index to continue at, or the
// number of points once all are written. Throws std::bad_alloc.
[[nodiscard]] size_t WritePathPoints(const PathPoints& points, size_t from, ByteBuffer& buffer);

// Writes the six numbers separated by blanks and returns the end. `out` has room for 6 * kMaxNumberLength,
// blanks included.
char* WriteMatrix(char* out, const Matrix& matrix);

}  // namespace hdi
