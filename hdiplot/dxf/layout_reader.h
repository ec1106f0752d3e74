// The sheets of a DXF: LAYOUT objects and the VIEWPORT entities that show the model on them.
#pragma once

#include <optional>
#include <string>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/name_decoder.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// The upper-case form of a handle, by which objects of a file name each other.
[[nodiscard]] std::string HandleKey(const Group& handle);

struct ReadLayout {
  Layout layout;            // without its block, and without what is skipped
  std::string blockHandle;  // a HandleKey, of the record of the block that holds the layout's entities
};

// Nothing for an object that does not say which block it is the layout of.
[[nodiscard]] std::optional<ReadLayout> LayoutOf(const DxfObject& object, const NameDecoder& names);

// What a VIEWPORT is to a plot.
enum class ViewportUse {
  kNone,       // the sheet itself, or without a view
  kOff,        // the border alone is plotted
  kNotPlanar,  // likewise, as its view is not from above
  kShown,
};

struct ReadViewport {
  ViewportUse use = ViewportUse::kNone;
  ViewportEntity viewport;                 // without the clip and the layers frozen by handle
  std::vector<std::string> frozenHandles;  // HandleKeys of layers, which older files have by name
  std::string clipHandle;                  // HandleKey of the entity that is its outline; empty: none
};

// `isFirst`: of the viewports of its sheet; in some files the sheet itself is told by that alone.
[[nodiscard]] ReadViewport ViewportOf(const DxfObject& entity, bool isFirst, const NameDecoder& names);

}  // namespace hdiplot
