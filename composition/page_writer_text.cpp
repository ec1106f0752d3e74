// Text: each run makes one text object.
#include <cmath>
#include <numeric>
#include <span>
#include <string_view>

#include "composition/page_writer.h"

namespace hdi {
namespace {

constexpr double kRadiansPerTenthDegree = 0.0017453292519943296;
constexpr int kInvisible = 3;  // text rendering mode (ISO 32000-1:2008, 9.3.6)

float RoundToWhole(float value) { return static_cast<float>(std::round(static_cast<double>(value))); }

// The engine's text ends at its first NUL.
std::u16string_view UnitsOf(const HT_TextRun& run) {
  const std::u16string_view units(run.text, static_cast<size_t>(run.count));
  return units.substr(0, units.find(u'\0'));
}

// Returns the advance after `run`. Adds to the running sum one by one: sums of runs would round differently.
double AddAdvances(double advance, const HT_TextRun& run) {
  if (run.advances == nullptr || run.count <= 0) return advance;
  const std::span<const double> advances(run.advances, static_cast<size_t>(run.count));
  return std::accumulate(advances.begin(), advances.end(), advance);
}

}  // namespace

void PageWriter::WriteTextRuns(const HT_Text& text, float x, float y, const TextShapeData& shape,
                               TextVisibility visibility) {
  const HT_TextRun* first = text.runs->next;
  if (document_ == nullptr || first == text.runs) return;
  // The first run's angle applies to all runs.
  const auto angle = static_cast<float>(first->lf->lfEscapement * kRadiansPerTenthDegree);
  const TextPlacement placement{.x = x,
                                .y = y,
                                .angle = angle,
                                .obliqueAngle = static_cast<float>(shape.obliqueAngle),
                                .widthFactor = static_cast<float>(shape.widthFactor)};
  Attempt attempt(*this);
  double advance = 0;
  for (const HT_TextRun* run = first; run != text.runs; run = run->next) {
    const Matrix matrix =
        ComputeRunMatrix(placement, static_cast<float>(advance), fonts_.NeedsSyntheticItalic(*run->lf));
    if (const engine::Font* font = fonts_.GetFontHandle(*document_, run->lf)) {
      WriteTextRun(UnitsOf(*run), *font, shape, matrix, visibility);
    }
    advance = AddAdvances(advance, *run);
  }
  attempt.Keep();
  if (!linkTarget_.empty()) {
    ExtendLinkRect(TextBounds(x, y, TextExtent(advance, shape.textHeight, static_cast<double>(angle))));
  }
}

// The stroke colour is the pen's, the fill colour the brush's; text shares no other state with paths except
// opacity, clip and layer.
void PageWriter::WriteTextRun(std::u16string_view units, const engine::Font& font, const TextShapeData& shape,
                              const Matrix& matrix, TextVisibility visibility) {
  if (!content_) return;
  const float alpha = static_cast<float>(alpha_) / 255.0F;
  text_.attributes.strokeColor = path_.attributes.strokeColor;
  text_.attributes.fillColor = path_.attributes.fillColor;
  text_.attributes.strokeAlpha = alpha;
  text_.attributes.fillAlpha = alpha;
  text_.attributes.clip = path_.attributes.clip;
  text_.attributes.layer = CurrentGroup();
  text_.matrix = matrix;
  if (bounds_ == Bounds::kWholePoints) {
    text_.matrix[4] = RoundToWhole(matrix[4]);
    text_.matrix[5] = RoundToWhole(matrix[5]);
  }
  text_.font = font.ObjectNumber();
  text_.fontSize = static_cast<float>(shape.textHeight);
  text_.horizontalScale = static_cast<float>(shape.widthFactor) * 100.0F;
  text_.charSpace = static_cast<float>((shape.trackingFactor - kNormalTracking) * shape.textHeight * 0.5);
  text_.renderMode = visibility == TextVisibility::kVisible ? 0 : kInvisible;
  text_.codes.clear();
  font.AppendCodes(units, text_.codes);
  content_->Write(text_);
}

engine::Rectangle PageWriter::TextBounds(float x, float y, const engine::Rectangle& extent) const {
  return Rounded({(extent.left + x) * pointScale_ + originX_, (extent.bottom + y) * pointScale_ + originY_,
                  (extent.right + x) * pointScale_ + originX_, (extent.top + y) * pointScale_ + originY_});
}

}  // namespace hdi
