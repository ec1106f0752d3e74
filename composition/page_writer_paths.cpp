// The page writer's paths and clips: one paint record makes one page object.
#include <memory>
#include <utility>

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

}  // namespace

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
  const float lineWidth = std::exchange(path_.attributes.lineWidth, 0.0F);
  const uint8_t lineJoin = std::exchange(path_.attributes.lineJoin, uint8_t{0});
  ClosePath();
  CommitPath(FillTypeOf(fillMode), true);
  path_.attributes.lineWidth = lineWidth;
  path_.attributes.lineJoin = lineJoin;
}

void PageWriter::MakeClipFromPath() {
  path_.attributes.clip = path_.points.empty() ? nullptr : std::make_shared<const Clip>(path_.points);
  path_.points.clear();
}

void PageWriter::ClosePath() {
  if (!path_.points.empty()) path_.points.back().close = true;
}

void PageWriter::CommitPath(FillType fill, bool stroke) {
  if (path_.points.empty()) return;
  const float alpha = static_cast<float>(alpha_) / 255.0F;
  path_.attributes.strokeAlpha = alpha;
  path_.attributes.fillAlpha = alpha;
  path_.attributes.layer = CurrentGroup();
  path_.fill = fill;
  path_.stroke = stroke;
  WriteObject(path_);
  if (!linkTarget_.empty()) {
    if (const auto box = ObjectBounds(path_)) ExtendLinkRect(*box);
  }
  path_.points.clear();
}

}  // namespace hdi
