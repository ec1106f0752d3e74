// The columns that the lines of a paragraph text flow through.
#pragma once

#include <algorithm>
#include <cstddef>

#include "hdiplot/model/drawing.h"

namespace hdiplot {

// Lengths are in drawing units.
class ColumnFlow {
 public:
  // `columns` may be null and must outlive this: then there is one column, as wide as the text's box.
  explicit ColumnFlow(const MTextColumns* columns) : columns_(columns) {}

  // The current column, from 0.
  [[nodiscard]] size_t Index() const { return index_; }

  // Whether a further line, with its base line at that depth below the top, or one after a column break
  // starts the next column.
  [[nodiscard]] bool IsEnded(double depth, bool isBroken) const {
    if (columns_ == nullptr || (columns_->count > 0 && index_ + 1 >= columns_->count)) return false;
    const double height = Height();
    return isBroken || (height > 0 && depth > height);
  }
  void Next() { ++index_; }

  // The width of all columns together, the last one being the current one.
  [[nodiscard]] double Width(double boxWidth) const {
    if (columns_ == nullptr) return boxWidth;
    const size_t count = std::max(index_ + 1, columns_->count);
    return LeftOf(count - 1, boxWidth, false) + columns_->width;
  }
  // The left edge of a column, from the left edge of the first one.
  [[nodiscard]] double LeftOf(size_t column, double boxWidth) const {
    return columns_ == nullptr ? 0 : LeftOf(column, boxWidth, columns_->reversed);
  }

 private:
  [[nodiscard]] double Height() const {
    const auto& heights = columns_->heights;
    return heights.empty() ? 0 : heights[std::min(index_, heights.size() - 1)];
  }
  [[nodiscard]] double LeftOf(size_t column, double boxWidth, bool reversed) const {
    const double left = static_cast<double>(column) * (columns_->width + columns_->gutter);
    return reversed ? Width(boxWidth) - columns_->width - left : left;
  }

  const MTextColumns* columns_;
  size_t index_ = 0;
};

}  // namespace hdiplot
