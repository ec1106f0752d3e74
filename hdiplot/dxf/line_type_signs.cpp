// The part of the builder for the texts and shapes in line types. The table of their styles follows that of
// the line types.
#include <algorithm>
#include <set>
#include <utility>

#include "hdiplot/dxf/drawing_builder.h"
#include "hdiplot/geometry/standard_shapes.h"
#include "hdiplot/system/ascii_case.h"

namespace hdiplot {
namespace {

constexpr std::string_view kStandardShapes = "LTYPESHP.SHX";

// A shape of a text font is a letter.
bool IsLetter(int shape) { return shape > ' ' && shape < 0x7f; }

}  // namespace

// The handles of the signs' styles become names, and the numbers of known shapes strokes or letters.
void DrawingBuilder::FinishLineTypes() {
  std::set<std::string> unknown;
  for (auto& [name, lineType] : drawing_.lineTypes) {
    for (LineTypeSign& sign : lineType.signs) {
      const std::string handle = std::exchange(sign.style, kStandardStyle);
      if (const auto style = textStylesByHandle_.find(handle);
          style != textStylesByHandle_.end() && !style->second.empty()) {
        sign.style = style->second;
        if (sign.text.empty() && IsLetter(sign.shape)) sign.text = static_cast<char>(sign.shape);
      }
      const auto file = shapeFiles_.find(handle);
      if (file != shapeFiles_.end() && UpperCase(file->second).ends_with(kStandardShapes)) {
        sign.strokes = StandardShape(sign.shape);
      }
      const bool isKnown = !sign.text.empty() || !sign.strokes.empty();
      if (!isKnown && IsUsed(name)) unknown.insert("line type " + name + " without its shapes");
    }
  }
  for (const std::string& message : unknown) graph_.AddSkipped(kModelName, message);
}

// By an entity, whose names are held, or by a layer.
bool DrawingBuilder::IsUsed(const std::string& lineType) const {
  return drawing_.names->contains(lineType) || std::ranges::any_of(drawing_.layers, [&](const auto& entry) {
           return entry.second.lineType == lineType;
         });
}

}  // namespace hdiplot
