// SPATIAL_FILTER: the outline that an INSERT shows its block within. The INSERT's extension dictionary leads
// to it through the entries ACAD_FILTER and SPATIAL.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/geometry/transform.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

class BlockClips {
 public:
  // Of the group 102 before the points in that XRECORD.
  static constexpr std::string_view kInverted = "ACAD_INVERTEDCLIP_ROUNDTRIP";

  // Takes an object of the section OBJECTS. Types other than DICTIONARY, SPATIAL_FILTER and XRECORD are
  // ignored. Throws DxfFault for a filter without a usable outline.
  void Add(const DxfObject& object);

  // The clip below the extension dictionary with that handle. Null: none.
  [[nodiscard]] std::shared_ptr<const BlockClip> Find(std::string_view dictionary) const;

 private:
  struct Filter {
    std::vector<Vec2> outline;
    Affine toBlock;
    std::string dictionary;  // HandleKey
  };

  [[nodiscard]] std::string Entry(const std::string& dictionary, const char* name) const;

  std::map<std::pair<std::string, std::string>, std::string> entries_;  // by dictionary and name
  std::map<std::string, Filter>
      filters_;  // by HandleKey, as the next; handles are HandleKeys everywhere here
  std::map<std::string, std::vector<Vec2>> inverted_;
};

}  // namespace hdiplot
