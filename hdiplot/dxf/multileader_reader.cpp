// Groups are named by their place: the entity's own, those of its context, and there those of a leader and of
// a line of it.
#include "hdiplot/dxf/multileader_reader.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "hdiplot/dxf/mtext_extras.h"
#include "hdiplot/geometry/ocs.h"

namespace hdiplot {
namespace {

// A colour as a 32-bit number: the highest byte is the kind.
EntityColor ColorOf(const Group& group) {
  constexpr uint32_t kByLayer = 0xC0;
  constexpr uint32_t kTrue = 0xC2;
  constexpr uint32_t kIndex = 0xC3;
  const auto word = static_cast<uint32_t>(group.Integer());
  switch (word >> 24) {
    case kByLayer:
      return {EntityColor::Kind::kByLayer};
    case kTrue:
      return {EntityColor::Kind::kTrue, word & 0xFFFFFFU};
    case kIndex:
      return {EntityColor::Kind::kIndex, word & 0xFFU};
    default:
      return {EntityColor::Kind::kByBlock};
  }
}

bool IsPaperColor(const Group& group) { return static_cast<uint32_t>(group.Integer()) >> 24 == 0xC8; }

class MultiLeaderReader {
 public:
  MultiLeaderReader(const DxfObject& object, const TextDecoder& decoder)
      : object_(object), decoder_(decoder) {}

  MultiLeader Read() {
    for (const Group& group : object_.groups) {
      if (Enters(group)) continue;
      switch (place_) {
        case Place::kEntity:
          ReadOwn(group);
          break;
        case Place::kContext:
          if (!ReadText(group)) ReadBlock(group);
          break;
        case Place::kLeader:
          ReadBranch(group);
          break;
        case Place::kLine:
          ReadLine(group);
      }
    }
    if (hasText_) FinishText();
    if (hasBlock_) FinishBlock();
    for (MultiLeaderBranch& branch : leader_.branches) FinishBranch(branch);
    return std::move(leader_);
  }

 private:
  enum class Place : uint8_t { kEntity, kContext, kLeader, kLine };

  // Whether the group starts or ends a place.
  bool Enters(const Group& group) {
    if (group.code == 300 && place_ == Place::kEntity) return Go(Place::kContext);
    if (group.code == 301) return Go(Place::kEntity);
    if (group.code == 302 && place_ == Place::kContext) {
      leader_.branches.emplace_back();
      lengths_.push_back(0);
      return Go(Place::kLeader);
    }
    if (group.code == 303) return Go(Place::kContext);
    if (group.code == 304 && place_ == Place::kLeader) {
      leader_.branches.back().lines.emplace_back();
      return Go(Place::kLine);
    }
    return group.code == 305 && Go(Place::kLeader);
  }

  bool Go(Place place) {
    place_ = place;
    return true;
  }

  void ReadOwn(const Group& group) {
    switch (group.code) {
      case 91:
        leader_.color = ColorOf(group);
        break;
      case 94:
        arrowIndex_ = group.Integer();
        break;
      case 170:
        leader_.form = static_cast<MultiLeader::Form>(std::clamp<int64_t>(group.Integer(), 0, 2));
        break;
      case 171:
        leader_.lineWeight =
            static_cast<int16_t>(std::clamp<int64_t>(group.Integer(), kLineWeightDefault, 211));
        break;
      case 291:
        leader_.hasLanding = group.number != 0;
        break;
      case 292:
        panel_.framed = group.number != 0;
        break;
      case 302:
        if (!leader_.values.empty()) {
          leader_.values.back().second = decoder_.DecodeText(group.Raw(), Backslash::kItself);
        }
        break;
      case 330:
        leader_.values.emplace_back(group.Value(), std::string());
        break;
      case 341:
        leader_.lineType = group.Value();
        break;
      case 342:
        leader_.arrow = group.Value();
        break;
      case 345:
        leader_.arrows[arrowIndex_] = group.Value();
        break;
      default:
        break;
    }
  }

  bool ReadText(const Group& group) {
    switch (group.code) {
      case 41:
        text_.height = group.number > 0 ? group.number : 1;
        return true;
      case 43:
        text_.wrapWidth = std::max(group.number, 0.0);
        return true;
      case 44:
        height_ = std::max(group.number, 0.0);
        return true;
      case 45:
        if (group.number > 0) text_.lineSpacing = std::clamp(group.number, 0.25, 4.0);
        return true;
      case 90:
        leader_.textColor = ColorOf(group);
        return true;
      case 91:
        panel_.fill = ColorOf(group);
        isPaper_ = isPaper_ || IsPaperColor(group);
        return true;
      case 141:
        boxScale_ = group.number;
        return true;
      case 145:
        gap_ = std::max(group.number, 0.0);
        return true;
      case 170:
        text_.exactSpacing = group.Integer() == 2;
        return true;
      case 171:
        text_.attachment = static_cast<int>(std::clamp<int64_t>(group.Integer(), 1, 3));
        return true;
      case 172:
        text_.horizontal = group.Integer() == 1;
        return true;
      case 290:
        hasText_ = group.number != 0;
        return true;
      case 291:
        isPaper_ = isPaper_ || group.number != 0;
        return true;
      case 292:
        panel_.masked = group.number != 0;
        return true;
      case 304:
        text_.text = decoder_.DecodeText(group.Raw(), Backslash::kStartsCode);
        return true;
      case 340:
        leader_.textStyle = group.Value();
        return true;
      default:
        return ReadColumns(group) || SetPart(group, 12, place3_) || SetPart(group, 13, direction_);
    }
  }

  bool ReadColumns(const Group& group) {
    switch (group.code) {
      case 142:
        columns_.width = group.number;
        return true;
      case 143:
        columns_.gutter = std::max(group.number, 0.0);
        return true;
      case 144:
        columns_.heights.push_back(std::max(group.number, 0.0));
        return true;
      case 173:
        hasColumns_ = group.Integer() > 0;
        return true;
      case 294:
        columns_.reversed = group.number != 0;
        return true;
      default:
        return false;
    }
  }

  void ReadBlock(const Group& group) {
    if (group.code == 46) insert_.rotation = group.number;  // radians
    if (group.code == 93) leader_.blockColor = ColorOf(group);
    if (group.code == 140) leader_.arrowSize = std::max(group.number, 0.0);
    if (group.code == 296) hasBlock_ = group.number != 0;
    if (group.code == 341) leader_.blockRecord = group.Value();
    SetPart(group, 14, extrusion_);
    SetPart(group, 15, blockPlace_);
    SetPart(group, 16, blockScale_);
  }

  void ReadBranch(const Group& group) {
    MultiLeaderBranch& branch = leader_.branches.back();
    if (group.code == 10) branch.end.x = group.number;
    if (group.code == 20) branch.end.y = group.number;
    if (group.code == 11) branch.landing.x = group.number;
    if (group.code == 21) branch.landing.y = group.number;
    if (group.code == 40) lengths_.back() = group.number;
    if (group.code == 271) branch.isVertical = group.Integer() == 1;
  }

  void ReadLine(const Group& group) {
    MultiLeaderLine& line = leader_.branches.back().lines.back();
    if (group.code == 10) line.points.push_back({group.number, 0});
    if (group.code == 20 && !line.points.empty()) line.points.back().y = group.number;
    if (group.code == 91) line.index = group.Integer();
    if (group.code == 92) line.color = ColorOf(group);
  }

  // A coordinate of the point in group `code`.
  static bool SetPart(const Group& group, int code, Vec3& point) {
    if (group.code == code) point.x = group.number;
    if (group.code == code + 10) point.y = group.number;
    if (group.code == code + 20) point.z = group.number;
    return group.code % 10 == code % 10 && group.code >= code && group.code <= code + 20;
  }

  void FinishText() {
    if (text_.text.empty()) return;
    text_.place = Flat(place3_);
    text_.right = Unit(Flat(direction_));
    if (text_.right == Vec2{}) text_.right = {1, 0};
    text_.up = TurnedLeft(text_.right);
    if (isPaper_) panel_.fill.reset();
    panel_.margin = panel_.masked ? std::max(boxScale_ - 1, 0.0) : gap_ / text_.height;
    if (hasColumns_ && columns_.width > 0) {
      if (columns_.heights.empty()) columns_.heights = {height_};
    }
    const bool hasColumns = hasColumns_ && columns_.width > 0;
    if (hasColumns || panel_.masked || panel_.framed) {
      text_.extras = std::make_shared<MTextExtras>();
      text_.extras->panel = panel_;
      if (hasColumns) text_.extras->columns = std::move(columns_);
    }
    leader_.text = std::move(text_);
  }

  void FinishBlock() {
    insert_.at = Flat(blockPlace_);
    insert_.scaleX = blockScale_.x;
    insert_.scaleY = blockScale_.y;
    if (Ocs(extrusion_).GetKind() == Ocs::Kind::kMirrored) insert_.right = {-1, 0};
    leader_.block = insert_;
  }

  void FinishBranch(MultiLeaderBranch& branch) {
    const auto index = static_cast<size_t>(&branch - leader_.branches.data());
    branch.landing = branch.isVertical ? Vec2{} : Unit(branch.landing) * lengths_[index];
  }

  const DxfObject& object_;
  const TextDecoder& decoder_;
  Place place_ = Place::kEntity;
  MultiLeader leader_;
  std::vector<double> lengths_;  // of the landings
  int64_t arrowIndex_ = 0;
  bool hasText_ = false;
  bool hasBlock_ = false;
  bool hasColumns_ = false;
  bool isPaper_ = false;
  double boxScale_ = 1.5;
  double gap_ = 0;
  double height_ = 0;  // of the columns
  MTextEntity text_;
  MTextColumns columns_;
  MTextPanel panel_;
  InsertEntity insert_;
  Vec3 place3_, direction_{1, 0, 0}, extrusion_{0, 0, 1}, blockPlace_, blockScale_{1, 1, 1};
};

}  // namespace

MultiLeader ReadMultiLeader(const DxfObject& object, const TextDecoder& decoder) {
  return MultiLeaderReader(object, decoder).Read();
}

}  // namespace hdiplot
