// One function for each step of an object: clip, marks, state, transparency, geometry.
#include "composition/content_generator.h"

#include "composition/number_writer.h"
#include "composition/path_writer.h"

namespace hdi {
namespace {

bool SameClip(const SharedClip& a, const SharedClip& b) {
  if (a == nullptr || b == nullptr) return a == b;
  return a->SamePoints(*b);
}

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

void ContentGenerator::Write(const PathObject& object) {
  BeginObject(object.attributes);
  WriteColorsAndLine(object.attributes);
  WriteDash(object.dashArray, object.dashPhase);
  WriteTransparency(object.attributes);
  WritePoints(object.points);
  out_.Append(PaintingOperator(object.fill, object.stroke));
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
}

std::string_view ContentGenerator::Finish() {
  if (!hasHead_) return {};
  if (layer_ != 0) out_.Append("EMC\n");
  if (state_.clip != nullptr) out_.Append("Q\n");
  out_.Append("Q\n");
  return out_.View();
}

void ContentGenerator::BeginObject(const ObjectAttributes& attributes) {
  if (!hasHead_) WriteHead();
  WriteClip(attributes.clip);
  WriteMarks(attributes.layer);
}

void ContentGenerator::WriteHead() {
  const std::string& name =
      extGStates_
          .emplace(
              TransparencyKey{1.0F, 1.0F, BlendMode::kNormal},
              names_.AddExtGState({.fillAlpha = 1.0F, .strokeAlpha = 1.0F, .blendMode = BlendMode::kNormal}))
          .first->second;
  out_.Append("q\n0 0 0 RG 0 0 0 rg 1 w 0 J 0 j\n/");
  out_.Append(name);
  out_.Append(" gs ");
  hasHead_ = true;
}

// "q" stands also before an object without a clip. So taking a clip away opens a level that nothing closes,
// and the stream ends one "Q" short.
void ContentGenerator::WriteClip(const SharedClip& clip) {
  if (SameClip(clip, state_.clip)) return;
  if (state_.clip != nullptr) out_.Append("Q\n");
  out_.Append("q\n");
  state_ = ContentState{};
  if (clip == nullptr) return;
  WritePoints(clip->points);
  out_.Append(" W n ");
  state_.clip = clip;
}

// The clip goes first, so a change of clip and layer at one object writes "Q" and "q" inside the earlier
// mark: the two nestings may cross.
void ContentGenerator::WriteMarks(uint32_t layer) {
  if (layer == layer_) return;
  if (layer_ != 0) out_.Append("EMC\n");
  if (layer != 0) {
    out_.Append("/OC /");
    out_.Append(names_.PropertiesName(layer));
    out_.Append(" BDC\n");
  }
  layer_ = layer;
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

void ContentGenerator::WriteDash(const std::vector<float>& dashArray, float dashPhase) {
  if (dashArray == state_.dashArray && dashPhase == state_.dashPhase) return;
  if (dashArray.empty()) {
    out_.Append("\n[] 0 d\n");
  } else {
    out_.Append("[ ");
    for (const float entry : dashArray) {
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

// A dictionary holds only what differs from the state in which it was first needed, though it is found again
// by the absolute values: a later object that meets the same values from another state gets the same partial
// dictionary.
void ContentGenerator::WriteTransparency(const ObjectAttributes& attributes) {
  if (attributes.fillAlpha == state_.fillAlpha && attributes.strokeAlpha == state_.strokeAlpha &&
      attributes.blendMode == state_.blendMode) {
    return;
  }
  std::string& name = extGStates_[{attributes.fillAlpha, attributes.strokeAlpha, attributes.blendMode}];
  if (name.empty()) {
    ExtGStateEntries entries;
    if (attributes.fillAlpha != state_.fillAlpha) entries.fillAlpha = attributes.fillAlpha;
    if (attributes.strokeAlpha != state_.strokeAlpha) entries.strokeAlpha = attributes.strokeAlpha;
    if (attributes.blendMode != state_.blendMode) entries.blendMode = attributes.blendMode;
    name = names_.AddExtGState(entries);
  }
  state_.fillAlpha = attributes.fillAlpha;
  state_.strokeAlpha = attributes.strokeAlpha;
  state_.blendMode = attributes.blendMode;
  out_.Append("/");
  out_.Append(name);
  out_.Append(" gs ");
}

void ContentGenerator::WritePoints(const PathPoints& points) { WritePathPoints(points, out_); }

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
