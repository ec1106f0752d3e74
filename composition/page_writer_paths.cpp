// Paths and clips: one paint record makes one page object.
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

// Ends the path on all exits, also when it could not be written.
class PathEnd {
 public:
  explicit PathEnd(PathObject& path) : path_(path) {}
  PathEnd(const PathEnd&) = delete;
  PathEnd& operator=(const PathEnd&) = delete;
  ~PathEnd() { path_.points.clear(); }

 private:
  PathObject& path_;
};

// Sets line width 0 and mitre joins for its lifetime.
class HairlineScope {
 public:
  explicit HairlineScope(ObjectAttributes& attributes)
      : attributes_(attributes),
        lineWidth_(std::exchange(attributes.lineWidth, 0.0F)),
        lineJoin_(std::exchange(attributes.lineJoin, uint8_t{0})) {}
  HairlineScope(const HairlineScope&) = delete;
  HairlineScope& operator=(const HairlineScope&) = delete;
  ~HairlineScope() {
    attributes_.lineWidth = lineWidth_;
    attributes_.lineJoin = lineJoin_;
  }

 private:
  ObjectAttributes& attributes_;
  float lineWidth_;
  uint8_t lineJoin_;
};

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
  const HairlineScope hairline(path_.attributes);
  ClosePath();
  CommitPath(FillTypeOf(fillMode), true);
}

void PageWriter::MakeClipFromPath() {
  const PathEnd end(path_);
  path_.attributes.clip = path_.points.empty() ? nullptr : std::make_shared<const Clip>(path_.points);
}

void PageWriter::ClosePath() {
  if (!path_.points.empty()) path_.points.back().close = true;
}

void PageWriter::CommitPath(FillType fill, bool stroke) {
  if (path_.points.empty()) return;
  const PathEnd end(path_);
  Attempt attempt(*this);
  const float alpha = static_cast<float>(alpha_) / 255.0F;
  path_.attributes.strokeAlpha = alpha;
  path_.attributes.fillAlpha = alpha;
  path_.attributes.layer = CurrentGroup();
  path_.fill = fill;
  path_.stroke = stroke;
  if (content_) content_->Write(path_);
  attempt.Keep();
  if (!linkTarget_.empty()) {
    if (const auto box = ObjectBounds(path_)) ExtendLinkRect(*box);
  }
}

}  // namespace hdi
