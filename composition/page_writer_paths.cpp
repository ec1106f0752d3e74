// The page writer's paths and clips: one paint record makes one page object.
#include <memory>

#include "composition/page_writer.h"
#include "platform/records.h"

namespace hdi {
namespace {

FillType FillTypeOf(uint32_t fillMode) {
  switch (fillMode) {
    case kFillAlternate:
      return FillType::kEvenOdd;
    case kFillWinding:
      return FillType::kWinding;
    default:
      return FillType::kNone;
  }
}

// Codes that the operators J and j don't know leave an object's default.
uint8_t LineCode(uint32_t code) { return code < 3 ? static_cast<uint8_t>(code) : 0; }

}  // namespace

void PageWriter::MoveTo(float x, float y) { path_.points.push_back({x, y, PointType::kMove, false}); }

void PageWriter::LineTo(float x, float y) {
  if (path_.points.empty()) return;
  path_.points.push_back({x, y, PointType::kLine, false});
}

void PageWriter::CurveTo(float x1, float y1, float x2, float y2, float x3, float y3) {
  if (path_.points.empty()) return;
  path_.points.push_back({x1, y1, PointType::kBezier, false});
  path_.points.push_back({x2, y2, PointType::kBezier, false});
  path_.points.push_back({x3, y3, PointType::kBezier, false});
}

void PageWriter::StrokePath() { CommitPath(FillType::kNone, true); }

void PageWriter::FillAndStrokePath(uint32_t fillMode) {
  ClosePath();
  CommitPath(FillTypeOf(fillMode), true);
}

void PageWriter::FillPath(uint32_t fillMode) {
  if (alpha_ != 255 || fillMode == kFillWinding) {
    CommitPath(FillTypeOf(fillMode), false);
    return;
  }
  const PathState kept = state_;
  state_.lineWidth = 0;
  state_.lineJoin = 0;
  ClosePath();
  CommitPath(FillTypeOf(fillMode), true);
  state_ = kept;
}

void PageWriter::MakeClipFromPath() {
  clip_ = path_.points.empty() ? nullptr : std::make_shared<const Clip>(path_.points);
  ClearPath();
}

void PageWriter::ClosePath() {
  if (!path_.points.empty()) path_.points.back().close = true;
}

void PageWriter::ClearPath() { path_.points.clear(); }

void PageWriter::CommitPath(FillType fill, bool stroke) {
  if (path_.points.empty()) return;
  const float alpha = static_cast<float>(alpha_) / 255.0F;
  path_.attributes = {
      .strokeColor = state_.strokeColor,
      .fillColor = state_.fillColor,
      .strokeAlpha = alpha,
      .fillAlpha = alpha,
      .blendMode = merge_ ? BlendMode::kDarken : BlendMode::kNormal,
      .lineWidth = state_.lineWidth < 0 ? 1.0F : state_.lineWidth,
      .lineCap = LineCode(state_.lineCap),
      .lineJoin = LineCode(state_.lineJoin),
      .clip = clip_,
  };
  path_.dashArray = dashArray_;
  path_.fill = fill;
  path_.stroke = stroke;
  if (content_) content_->Write(path_);
  if (!linkTarget_.empty()) {
    if (const auto bounds = ObjectBounds(path_)) ExtendLinkRect(*bounds);
  }
  ClearPath();
}

}  // namespace hdi
