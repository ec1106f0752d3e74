#include "hdiplot/plot/pens.h"

#include <algorithm>
#include <cmath>

namespace hdiplot {

namespace {

bool IsGap(double element) { return element < 0; }

bool HasBothKinds(const std::vector<double>& dashes) {
  return std::ranges::any_of(dashes, IsGap) && !std::ranges::all_of(dashes, IsGap);
}

// The pattern rotated to a dash that follows a gap, adjacent elements of one kind added up. `dashes` must
// hold both kinds.
std::vector<double> Alternating(const std::vector<double>& dashes) {
  const size_t count = dashes.size();
  const size_t start = FirstDash(dashes);
  std::vector<double> lengths;
  for (size_t i = 0; i < count; ++i) {
    const double element = dashes[(start + i) % count];
    const bool continues = i > 0 && IsGap(element) == (lengths.size() % 2 == 0);
    if (continues) {
      lengths.back() += std::abs(element);
    } else {
      lengths.push_back(std::abs(element));
    }
  }
  return lengths;
}

}  // namespace

size_t FirstDash(const std::vector<double>& dashes) {
  if (!HasBothKinds(dashes)) return 0;
  const size_t count = dashes.size();
  size_t start = 0;
  while (IsGap(dashes[start]) || !IsGap(dashes[(start + count - 1) % count])) ++start;
  return start;
}

double PatternLength(const Stroke& stroke) {
  if (stroke.lineType == nullptr) return 0;
  const Pen pen = PenOf(stroke);
  double length = 0;
  for (const uint32_t entry : pen.entries) length += entry;
  if (!pen.entries.empty() || HasBothKinds(stroke.lineType->dashes)) return length;
  for (const double element : stroke.lineType->dashes) length += std::abs(element) * stroke.lineTypeScale;
  return length;
}

uint32_t PenWidth(double dots) {
  return dots > 1 ? static_cast<uint32_t>(std::min(std::round(dots), 1e6)) : 1;
}

Pen PenOf(const Stroke& stroke) {
  Pen pen;
  pen.color = stroke.color;
  pen.width = stroke.width;
  pen.style = hdi::kPenGeometric | stroke.ends.caps | stroke.ends.joins;
  if (stroke.lineType != nullptr) {
    // A dash without a length shows by its round ends only.
    const uint32_t shortestDash = stroke.ends.caps == hdi::kPenCapRound ? 0 : 1;
    pen.entries = PenDashes(stroke.lineType->dashes, stroke.lineTypeScale, shortestDash);
  }
  pen.style |= pen.entries.empty() ? hdi::kPenSolid : hdi::kPenUserStyle;
  return pen;
}

std::vector<uint32_t> PenDashes(const std::vector<double>& dashes, double scale, uint32_t shortestDash) {
  double length = 0;
  for (const double element : dashes) length += std::abs(element) * scale;
  // The upper bound keeps the entries within 32 bits.
  if (!(length >= kShortestPattern && length < 1e9)) return {};
  if (!HasBothKinds(dashes)) return {};

  std::vector<uint32_t> entries;
  double end = 0;       // of the element, exactly
  int64_t written = 0;  // of the entries so far
  for (const double element : Alternating(dashes)) {
    end += element * scale;
    const int64_t shortest = entries.size() % 2 == 0 ? shortestDash : 1;
    const int64_t entry = std::max<int64_t>(std::llround(end) - written, shortest);
    entries.push_back(static_cast<uint32_t>(entry));
    written += entry;
  }
  return entries;
}

}  // namespace hdiplot
