// MULTILEADER: its context data, which holds what is drawn, and what the entity says about all its leaders.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hdiplot/dxf/dxf_object.h"
#include "hdiplot/dxf/text_reader.h"
#include "hdiplot/model/drawing.h"

namespace hdiplot {

struct MultiLeaderLine {
  std::vector<Vec2> points;  // from the arrowhead on
  EntityColor color{EntityColor::Kind::kByBlock};
  int64_t index = 0;
};

struct MultiLeaderBranch {
  std::vector<MultiLeaderLine> lines;
  Vec2 end;      // of all lines
  Vec2 landing;  // from there to the content; none for a leader from above or below
  bool isVertical = false;
};

struct MultiLeader {
  enum class Form : uint8_t { kNone, kStraight, kSpline };
  Form form = Form::kStraight;
  bool hasLanding = true;
  double arrowSize = 0;
  std::string_view arrow;                          // handle of a block's record; empty: a filled arrow
  std::map<int64_t, std::string_view> arrows;      // of lines with another one, by index
  EntityColor color{EntityColor::Kind::kByBlock};  // of the lines
  std::string_view lineType;                       // handle
  int16_t lineWeight = kLineWeightByBlock;
  std::vector<MultiLeaderBranch> branches;
  std::optional<MTextEntity> text;  // its style is the standard one
  std::string_view textStyle;       // handle
  EntityColor textColor{EntityColor::Kind::kByBlock};
  std::optional<InsertEntity> block;  // without its name
  std::string_view blockRecord;       // handle
  EntityColor blockColor{EntityColor::Kind::kByBlock};
  std::vector<std::pair<std::string_view, std::string>> values;  // of attributes, by their ATTDEF's handle
};

[[nodiscard]] MultiLeader ReadMultiLeader(const DxfObject& object, const TextDecoder& decoder);

}  // namespace hdiplot
