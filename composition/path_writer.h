// Path geometry as path construction operators (ISO 32000-1:2008, 8.5.2), and matrices.
#pragma once

#include <cstddef>

#include "composition/byte_buffer.h"
#include "composition/page_objects.h"

namespace hdi {

// Writes the points of a path from the one at `from`, 0 for the first, without a blank before the first or
// behind the last operator: a rectangle as "re", anything else point by point. Returns where to go on, as
// long paths are written in steps; the number of points when all are written. Throws std::bad_alloc.
[[nodiscard]] size_t WritePathPoints(const PathPoints& points, size_t from, ByteBuffer& buffer);

// Writes the six numbers with a blank between two; `out` has room for 6 * kMaxNumberLength, into which the
// blanks fit. Returns the end.
char* WriteMatrix(char* out, const Matrix& matrix);

}  // namespace hdi
