// Link annotations, with the bounds of what they cover, and comments.
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "composition/page_writer.h"
#include "platform/host_library.h"

namespace hdi {
namespace {

constexpr double kEmptyTolerance = 1e-5;  // points

// Encodes 16-bit units one by one: a surrogate pair becomes two three-byte sequences.
std::string EncodeUnits(const std::u16string& text) {
  std::string bytes;
  bytes.reserve(text.size() * 3);
  for (const char16_t unit : text) {
    if (unit < 0x80) {
      bytes.push_back(static_cast<char>(unit));
      continue;
    }
    if (unit < 0x800) {
      bytes.push_back(static_cast<char>(0xC0 | (unit >> 6)));
    } else {
      bytes.push_back(static_cast<char>(0xE0 | (unit >> 12)));
      bytes.push_back(static_cast<char>(0x80 | ((unit >> 6) & 0x3F)));
    }
    bytes.push_back(static_cast<char>(0x80 | (unit & 0x3F)));
  }
  return bytes;
}

float Floor(float value) { return static_cast<float>(std::floor(static_cast<double>(value))); }
float Ceiling(float value) { return static_cast<float>(std::ceil(static_cast<double>(value))); }

}  // namespace

void PageWriter::SetLinkTarget(std::u16string target) {
  const bool hasArea = linkRect_.right > linkRect_.left && linkRect_.top > linkRect_.bottom;
  if (target.empty() && !linkTarget_.empty() && hasArea) {
    if (page_ != nullptr) page_->AddLinkAnnotation(linkRect_, EncodeUnits(linkTarget_));
    linkRect_ = {};
  }
  linkTarget_ = std::move(target);
}

void PageWriter::WriteShxComment(std::u16string_view text, const CommentRectangle& rect, uint32_t flags) {
  if (page_ != nullptr) hdi::WriteShxComment(*page_, text, rect, flags, pointScale_, originX_, originY_);
}

std::optional<engine::Rectangle> PageWriter::ObjectBounds(const PathObject& object) const {
  if (object.points.empty()) return std::nullopt;
  constexpr float kLargest = std::numeric_limits<float>::max();
  engine::Rectangle box{kLargest, kLargest, -kLargest, -kLargest};
  for (const PathPoint& point : object.points) {  // control points included
    box.left = std::min(box.left, point.x);
    box.right = std::max(box.right, point.x);
    box.bottom = std::min(box.bottom, point.y);
    box.top = std::max(box.top, point.y);
  }
  return Rounded({pointScale_ * box.left + originX_, pointScale_ * box.bottom + originY_,
                  pointScale_ * box.right + originX_, pointScale_ * box.top + originY_});
}

engine::Rectangle PageWriter::ImageBounds(const Matrix& matrix) const {
  const float left = matrix[4] * pointScale_ + originX_;
  const float bottom = matrix[5] * pointScale_ + originY_;
  return Rounded({left, bottom, matrix[0] * pointScale_ + left, matrix[3] * pointScale_ + bottom});
}

engine::Rectangle PageWriter::Rounded(const engine::Rectangle& box) const {
  if (bounds_ == Bounds::kExact) return box;
  return {Floor(box.left), Floor(box.bottom), Ceiling(box.right), Ceiling(box.top)};
}

// Only the old rectangle is tested for being empty: a flat new one still counts.
void PageWriter::ExtendLinkRect(const engine::Rectangle& rect) {
  if (isEqual(linkRect_.left, linkRect_.right, kEmptyTolerance) ||
      isEqual(linkRect_.bottom, linkRect_.top, kEmptyTolerance)) {
    linkRect_ = rect;
    return;
  }
  linkRect_ = {std::min(linkRect_.left, rect.left), std::min(linkRect_.bottom, rect.bottom),
               std::max(linkRect_.right, rect.right), std::max(linkRect_.top, rect.top)};
}

}  // namespace hdi
