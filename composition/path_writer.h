// Path geometry as path construction operators (ISO 32000-1:2008, 8.5.2), and matrices.
#pragma once

#include "composition/byte_buffer.h"
#include "composition/page_objects.h"

namespace hdi {

// Writes the points of a path, without a blank before the first or behind the last operator: a rectangle as
// "re", anything else point by point.
void WritePathPoints(const PathPoints& points, ByteBuffer& buffer);

// Writes the six numbers with a blank between two; `out` has room for 6 * kMaxNumberLength, into which the
// blanks fit. Returns the end.
char* WriteMatrix(char* out, const Matrix& matrix);

}  // namespace hdi
