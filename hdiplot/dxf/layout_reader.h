// The sheets of a DXF: LAYOUT objects, and the VIEWPORT entities that show the model on them.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/text_decoder.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

struct LayoutRecord {
  Layout layout;            // without its block, and without what is skipped
  std::string blockHandle;  // HandleKey of the record of the block with the layout's entities
};

// What views by name show, by folded name. Only those that look down on the drawing and are not turned.
using NamedViews = std::map<std::string, Box>;

// None for an object that does not name its block.
[[nodiscard]] std::optional<LayoutRecord> ReadLayout(const DxfObject& object, const TextDecoder& decoder,
                                                     const NamedViews& views);

enum class ViewportUse {
  kNone,       // the sheet itself, or no valid view
  kOff,        // only the border is plotted
  kNotPlanar,  // likewise, since the view is not from above
  kShown,
};

struct ViewportRecord {
  ViewportUse use = ViewportUse::kNone;
  ViewportEntity viewport;                 // without the clip and the layers frozen by handle
  std::vector<std::string> frozenHandles;  // HandleKeys of layers; older files have names instead
  std::string clipHandle;                  // HandleKey of the entity that is its outline; empty: none
};

// `isFirst`: of the viewports of its sheet. In some files only this identifies the sheet itself.
[[nodiscard]] ViewportRecord ReadViewport(const DxfObject& entity, bool isFirst, const TextDecoder& decoder);

}  // namespace hdiplot
