// Writes each object step by step: clip, marked content, state, transparency, geometry.
#include "composition/content_generator.h"

#include <new>
#include <utility>

#include "composition/number_writer.h"
#include "composition/path_writer.h"

namespace hdi {
namespace {

bool SameDashes(const SharedDashes& a, const SharedDashes& b) {
  if (a == nullptr || b == nullptr) return a == b;
  return *a == *b;
}

bool SameClip(const SharedClip& a, const SharedClip& b) {
  if (a == nullptr || b == nullptr) return a == b;
  return a->SamePoints(*b);
}

// Room for what an object usually writes between two size checks.
constexpr size_t kPieceSlack = size_t{16} << 10;

std::string_view PaintingOperator(FillType fill, bool stroke) {
  switch (fill) {
    case FillType::kEvenOdd:
      return stroke ? " B*\n" : " f*\n";
    case FillType::kWinding:
      return stroke ? " B\n" : " f\n";
    case FillType::kNone:
      break;
  }
  return stroke ? " S\n" : " n\n";
}

}  // namespace

ContentGenerator::Attempt::Attempt(ContentGenerator& content)
    : content_(content),
      state_(content.state_),
      size_(content.out_.Size()),
      sinkSize_(content.sink_ == nullptr ? 0 : content.sink_->Size()),
      names_(content.names_.Count()) {
  content_.passed_.reset();
}

void ContentGenerator::Attempt::Undo() noexcept {
  if (content_.passed_) {
    content_.sink_->KeepFirst(sinkSize_);
    content_.out_ = std::move(*content_.passed_);
  }
  content_.out_.Truncate(size_);
  content_.state_ = std::move(state_);
  content_.names_.KeepFirst(names_);
  std::erase_if(content_.extGStates_, [this](const auto& entry) { return entry.second.index >= names_; });
}

void ContentGenerator::Write(const PathObject& object) {
  BeginObject(object.attributes);
  WriteColorsAndLine(object.attributes);
  WriteDash(object.dashArray, object.dashPhase);
  WriteTransparency(object.attributes);
  WritePoints(object.points);
  out_.Append(PaintingOperator(object.fill, object.stroke));
  PassOn();
}

void ContentGenerator::Write(const TextObject& object) {
  BeginObject(object.attributes);
  WriteColorsAndLine(object.attributes);
  WriteTransparency(object.attributes);
  out_.Append("BT ");
  WriteMatrix(object.matrix);
  out_.Append(" Tm ");
  WritePlainNumber(object.charSpace);
  out_.Append(" Tc ");
  WritePlainNumber(object.horizontalScale);
  out_.Append(" Tz /");
  out_.Append(names_.FontName(object.font));
  out_.Append(" ");
  WriteNumber(object.fontSize, kFontSizePrecision);
  out_.Append(" Tf ");
  WriteSmallInteger(object.renderMode);
  out_.Append(" Tr <");
  char* end = out_.Reserve(object.codes.size() * 4);
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  for (const uint16_t code : object.codes) {
    for (int shift = 12; shift >= 0; shift -= 4) *end++ = kHexDigits[(code >> shift) & 0xF];
  }
  out_.Commit(end);
  out_.Append("> Tj ET\n");
  PassOn();
}

void ContentGenerator::Write(const ImageObject& object) {
  BeginObject(object.attributes);
  WriteTransparency(object.attributes);
  const Matrix& m = object.matrix;
  if ((m[0] == 0 && m[1] == 0) || (m[2] == 0 && m[3] == 0) || object.image == 0) return;
  out_.Append("q ");
  WriteMatrix(m);
  out_.Append(" cm /");
  out_.Append(names_.XObjectName(object.image));
  out_.Append(" Do Q\n");
  PassOn();
}

std::string_view ContentGenerator::Finish() {
  if (!state_.hasHead) return {};
  if (state_.layer != 0) out_.Append("EMC\n");
  if (state_.clip != nullptr) out_.Append("Q\n");
  out_.Append("Q\n");
  return out_.View();
}

void ContentGenerator::BeginObject(const ObjectAttributes& attributes) {
  if (!state_.hasHead) WriteHead();
  WriteClip(attributes.clip);
  WriteMarks(attributes.layer);
}

void ContentGenerator::WriteHead() {
  const std::string& name =
      ExtGStateName({1.0F, 1.0F, BlendMode::kNormal},
                    {.fillAlpha = 1.0F, .strokeAlpha = 1.0F, .blendMode = BlendMode::kNormal});
  out_.Append("q\n0 0 0 RG 0 0 0 rg 1 w 0 J 0 j\n/");
  out_.Append(name);
  out_.Append(" gs ");
  state_.hasHead = true;
}

// "q" is written even before an object without a clip. Removing a clip therefore opens a level that nothing
// closes, and the stream ends one "Q" short.
void ContentGenerator::WriteClip(const SharedClip& clip) {
  if (SameClip(clip, state_.clip)) return;
  if (state_.clip != nullptr) out_.Append("Q\n");
  out_.Append("q\n");
  ContentState fresh;
  fresh.hasHead = true;
  fresh.layer = state_.layer;
  state_ = fresh;
  if (clip == nullptr) return;
  WritePoints(clip->points);
  out_.Append(" W n ");
  state_.clip = clip;
}

// The clip is written first, so if clip and layer change at the same object, "Q" and "q" fall inside the
// previous marked content: the two nestings may cross.
void ContentGenerator::WriteMarks(uint32_t layer) {
  if (layer == state_.layer) return;
  if (state_.layer != 0) out_.Append("EMC\n");
  if (layer != 0) {
    out_.Append("/OC /");
    out_.Append(names_.PropertiesName(layer));
    out_.Append(" BDC\n");
  }
  state_.layer = layer;
}

void ContentGenerator::WriteColorsAndLine(const ObjectAttributes& attributes) {
  if (attributes.fillColor != state_.fillColor) {
    WriteColor(attributes.fillColor, " rg ");
    state_.fillColor = attributes.fillColor;
  }
  if (attributes.strokeColor != state_.strokeColor) {
    WriteColor(attributes.strokeColor, " RG ");
    state_.strokeColor = attributes.strokeColor;
  }
  if (attributes.lineWidth != state_.lineWidth) {
    WriteNumber(attributes.lineWidth, kUnlimited);
    out_.Append(" w ");
    state_.lineWidth = attributes.lineWidth;
  }
  if (attributes.lineCap != state_.lineCap) {
    WriteSmallInteger(attributes.lineCap);
    out_.Append(" J ");
    state_.lineCap = attributes.lineCap;
  }
  if (attributes.lineJoin != state_.lineJoin) {
    WriteSmallInteger(attributes.lineJoin);
    out_.Append(" j ");
    state_.lineJoin = attributes.lineJoin;
  }
}

void ContentGenerator::WriteDash(const SharedDashes& dashArray, float dashPhase) {
  if (SameDashes(dashArray, state_.dashArray) && dashPhase == state_.dashPhase) return;
  if (dashArray == nullptr) {
    out_.Append("\n[] 0 d\n");
  } else {
    out_.Append("[ ");
    for (const float entry : *dashArray) {
      WritePlainNumber(entry);
      out_.Append(" ");
    }
    out_.Append("] ");
    WritePlainNumber(dashPhase);
    out_.Append(" d\n");
  }
  state_.dashArray = dashArray;
  state_.dashPhase = dashPhase;
}

// A dictionary holds only the entries that differed from the state when it was created, but is looked up by
// absolute values: a later object with the same values in another state reuses the same partial dictionary.
void ContentGenerator::WriteTransparency(const ObjectAttributes& attributes) {
  if (attributes.fillAlpha == state_.fillAlpha && attributes.strokeAlpha == state_.strokeAlpha &&
      attributes.blendMode == state_.blendMode) {
    return;
  }
  ExtGStateEntries entries;
  if (attributes.fillAlpha != state_.fillAlpha) entries.fillAlpha = attributes.fillAlpha;
  if (attributes.strokeAlpha != state_.strokeAlpha) entries.strokeAlpha = attributes.strokeAlpha;
  if (attributes.blendMode != state_.blendMode) entries.blendMode = attributes.blendMode;
  const std::string& name =
      ExtGStateName({attributes.fillAlpha, attributes.strokeAlpha, attributes.blendMode}, entries);
  state_.fillAlpha = attributes.fillAlpha;
  state_.strokeAlpha = attributes.strokeAlpha;
  state_.blendMode = attributes.blendMode;
  out_.Append("/");
  out_.Append(name);
  out_.Append(" gs ");
}

const std::string& ContentGenerator::ExtGStateName(const TransparencyKey& values,
                                                   const ExtGStateEntries& entries) {
  const auto found = extGStates_.find(values);
  if (found != extGStates_.end()) return found->second.name;
  const size_t index = names_.Count();
  return extGStates_.emplace(values, NamedExtGState{names_.AddExtGState(entries), index}).first->second.name;
}

void ContentGenerator::WritePoints(const PathPoints& points) {
  for (size_t at = 0; at < points.size(); PassOn()) at = WritePathPoints(points, at, out_);
}

// Without memory the bytes stay and go with a later piece.
void ContentGenerator::PassOn() {
  if (sink_ == nullptr || out_.Size() < sink_->PieceSize()) return;
  try {
    sink_->Take(out_.Owner(), out_.View());
  } catch (const std::bad_alloc&) {
    return;
  }
  if (!passed_) passed_ = out_;
  out_.StartAnew(sink_->PieceSize() + kPieceSlack);
}

void ContentGenerator::WriteMatrix(const Matrix& matrix) {
  out_.Commit(hdi::WriteMatrix(out_.Reserve(matrix.size() * kMaxNumberLength), matrix));
}

void ContentGenerator::WriteSmallInteger(int value) { WriteNumber(static_cast<float>(value), kUnlimited); }

void ContentGenerator::WriteNumber(float value, int precision) {
  out_.Commit(WriteReal(out_.Reserve(kMaxNumberLength), value, precision));
}

void ContentGenerator::WritePlainNumber(float value) {
  out_.Commit(WriteSixDigits(out_.Reserve(kMaxNumberLength), value));
}

void ContentGenerator::WriteColor(const Color& color, std::string_view op) {
  WritePlainNumber(static_cast<float>(color.red) / 255.0F);
  out_.Append(" ");
  WritePlainNumber(static_cast<float>(color.green) / 255.0F);
  out_.Append(" ");
  WritePlainNumber(static_cast<float>(color.blue) / 255.0F);
  out_.Append(op);
}

}  // namespace hdi
