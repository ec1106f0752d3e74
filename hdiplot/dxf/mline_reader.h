// MLINE, parallel lines, and MLINESTYLE, which gives them colours, line types, caps and a fill.
#pragma once

#include <string>
#include <vector>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/text_decoder.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

struct MLineStyle {
  struct Element {
    double offset = 0;  // orders the lines
    EntityColor color;
    Name lineType{&kByLayer};  // folded
  };
  // At an end of a line that is not closed.
  struct Cap {
    bool square = false;
    bool round = false;
    bool innerArcs = false;
  };
  std::vector<Element> elements;
  Cap start;
  Cap end;
  bool hasJoints = false;
  bool isFilled = false;
  EntityColor fill;
};

// Scale, justification and style are part of the vertices already.
struct MLine {
  struct Vertex {
    Vec2 point;
    Vec2 miter;  // direction of the joint
    // For each line: how far along the miter it passes, then where its pieces start and end, in turn, along
    // the segment behind the vertex. The last piece runs to the next vertex if its end is missing.
    std::vector<std::vector<double>> lines;
    std::vector<std::vector<double>> fills;  // ends of the pieces of the fill, for each line
  };
  std::vector<Vertex> vertices;
  std::string styleHandle;  // HandleKey
  bool isClosed = false;
  bool hasStartCap = true;
  bool hasEndCap = true;
};

// Throw DxfFault.
[[nodiscard]] MLine ReadMLine(const DxfObject& entity);
[[nodiscard]] MLineStyle ReadMLineStyle(const DxfObject& object, NameCache& names);

// Appends the parts of the line to `parts`. They look as `attributes` say where the style does not; inside of
// a block, by block is by the MLINE. Without a style all lines are by layer, without caps.
void AppendMLine(const MLine& line, const MLineStyle* style, const Attributes& attributes, Entities& parts);

}  // namespace hdiplot
