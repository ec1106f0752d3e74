// Rectangles, points and curves as path construction operators.
#include "composition/path_writer.h"

#include <algorithm>

#include "composition/number_writer.h"

namespace hdi {
namespace {

// The longest point with its operator: two numbers, blanks and " h".
constexpr size_t kMaxPointLength = 2 * kMaxNumberLength + 8;
// Room is reserved for this many segments at once; a segment has at most three points.
constexpr size_t kSegmentsAtOnce = 32;

bool SamePoint(const PathPoint& a, const PathPoint& b) { return a.x == b.x && a.y == b.y; }

bool ShareCoordinate(const PathPoint& a, const PathPoint& b) { return a.x == b.x || a.y == b.y; }

// Whether the points are four sides along the axes, drawn as lines and closed by a fifth point or the
// fourth's close flag.
bool IsRectangle(const PathPoints& points) {
  const bool closedByPoint = points.size() == 5 && SamePoint(points[4], points[0]);
  const bool closedByFlag = points.size() == 4 && points[3].close;
  if (!closedByPoint && !closedByFlag) return false;
  if (SamePoint(points[0], points[2]) || SamePoint(points[1], points[3])) return false;
  if (!ShareCoordinate(points[0], points[3])) return false;
  for (size_t i = 1; i < 4; ++i) {
    if (points[i].type != PointType::kLine || !ShareCoordinate(points[i], points[i - 1])) return false;
  }
  return true;
}

char* WritePoint(char* out, float x, float y) {
  out = WriteReal(out, x, kPointPrecision);
  *out++ = ' ';
  return WriteReal(out, y, kPointPrecision);
}

char* WriteOperator(char* out, char op) {
  *out++ = ' ';
  *out++ = op;
  return out;
}

void WriteRectangle(const PathPoints& points, ByteBuffer& buffer) {
  char* out = buffer.Reserve(2 * kMaxPointLength);
  out = WritePoint(out, points[0].x, points[0].y);
  *out++ = ' ';
  out = WritePoint(out, points[2].x - points[0].x, points[2].y - points[0].y);
  out = WriteOperator(out, 'r');
  *out++ = 'e';
  buffer.Commit(out);
}

// Whether the curve whose first control point is points[at] has all three points, and only its last one may
// close.
bool IsWholeCurve(const PathPoints& points, size_t at) {
  return at + 2 < points.size() && points[at + 1].type == PointType::kBezier &&
         points[at + 2].type == PointType::kBezier && !points[at].close && !points[at + 1].close;
}

}  // namespace

size_t WritePathPoints(const PathPoints& points, size_t from, ByteBuffer& buffer) {
  if (from == 0 && IsRectangle(points)) {
    WriteRectangle(points, buffer);
    return points.size();
  }
  char* out = buffer.Reserve(kSegmentsAtOnce * 3 * kMaxPointLength);
  const size_t stop = std::min(points.size(), from + kSegmentsAtOnce);
  size_t i = from;
  for (; i < stop; ++i) {
    if (i > 0) *out++ = ' ';
    out = WritePoint(out, points[i].x, points[i].y);
    switch (points[i].type) {
      case PointType::kMove:
        out = WriteOperator(out, 'm');  // a move ends no segment, so it closes nothing
        continue;
      case PointType::kLine:
        out = WriteOperator(out, 'l');
        break;
      case PointType::kBezier:
        if (!IsWholeCurve(points, i)) {
          buffer.Commit(WriteOperator(out, 'h'));
          return points.size();
        }
        *out++ = ' ';
        out = WritePoint(out, points[i + 1].x, points[i + 1].y);
        *out++ = ' ';
        out = WritePoint(out, points[i + 2].x, points[i + 2].y);
        out = WriteOperator(out, 'c');
        i += 2;
        break;
    }
    if (points[i].close) out = WriteOperator(out, 'h');
  }
  buffer.Commit(out);
  return i;
}

char* WriteMatrix(char* out, const Matrix& matrix) {
  for (size_t i = 0; i < matrix.size(); ++i) {
    if (i > 0) *out++ = ' ';
    out = WriteReal(out, matrix[i], kPointPrecision);
  }
  return out;
}

}  // namespace hdi
