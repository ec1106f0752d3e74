// Proxy graphics: what an entity of another program looks like, as records of simple shapes and attributes.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/dxf/text_decoder.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

// What the records refer to.
struct ProxyTables {
  NameCache& names;
  const std::vector<Name>& layers;               // in the order of the file, as the next
  const std::vector<Name>& lineTypes;            // folded
  std::map<std::string, TextStyle>& textStyles;  // fonts of texts are added
};

// The shapes that the bytes describe, for a block whose insert is the entity; empty when they are damaged.
// `attributes` are the entity's.
[[nodiscard]] Entities ReadProxyGraphics(std::string_view bytes, const Attributes& attributes,
                                         const ProxyTables& tables);

}  // namespace hdiplot
