// Draws the texts and shapes of line types along lines.
#pragma once

#include <map>
#include <span>
#include <vector>

#include "hdiplot/plot/canvas.h"
#include "hdiplot/plot/styles.h"
#include "hdiplot/plot/text_plotter.h"
#include "hdiplot/text/text_setter.h"

namespace hdiplot {

class LineTypeSigns {
 public:
  // Keeps references to all of them.
  LineTypeSigns(Canvas& canvas, TextSetter& texts, TextPlotter& plotter)
      : canvas_(canvas), texts_(texts), plotter_(plotter) {}

  [[nodiscard]] static bool AreIn(const Stroke& stroke) {
    return stroke.lineType != nullptr && !stroke.lineType->signs.empty();
  }

  // Along a line through `points`, in dots, that the stroke's pattern runs along from its start.
  void Draw(std::span<const Vec2> points, const Stroke& stroke, const Style& style);

 private:
  void DrawAt(Vec2 at, Vec2 direction, const LineTypeSign& sign, const Stroke& stroke, const Style& style);
  const TextBlock& BlockOf(const LineTypeSign& sign);

  Canvas& canvas_;
  TextSetter& texts_;
  TextPlotter& plotter_;
  std::map<const LineTypeSign*, TextBlock> blocks_;
  std::vector<Vec2> points_;
};

}  // namespace hdiplot
