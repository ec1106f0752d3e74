// Feeding dxflib, and what it says of tables, blocks and variables. The shapes are in dxflib_shapes.cpp.
//
// What dxflib drops or gets wrong is taken from the object's groups: a layer's line weight (1 for "default"),
// true colour and plot flag, and whether a group was there at all.
#include "host/hdiplot/dxf/dxflib_adapter.h"

#include <algorithm>
#include <span>
#include <utility>

#include "host/hdiplot/ascii_case.h"
#include "host/hdiplot/dxf/entity_attributes.h"

namespace hdiplot {
namespace {

constexpr unsigned kLayerFrozen = 1;

// The groups that dxflib uses of the objects that it is given: a name and numbers. Elevations of 0 are what
// it puts in their place anyway, and numbers take it long.
bool IsOfUse(const Group& group) {
  const bool isElevation = group.code >= 30 && group.code <= 39;
  if (isElevation && group.real == 0) return false;
  return group.code == 2 || (group.code >= 10 && group.code <= 79);
}

// dxflib makes room for so many values as a count says, when it comes to the count.
struct Count {
  int code;
  int counted;
};

constexpr Count kSplineCounts[] = {{72, 40}, {73, 10}, {74, 11}};
constexpr Count kLeaderCounts[] = {{76, 10}};
constexpr Count kLineTypeCounts[] = {{73, 49}};

std::span<const Count> CountsOf(std::string_view type) {
  if (type == "SPLINE") return kSplineCounts;
  if (type == "LEADER") return kLeaderCounts;
  if (type == "LTYPE") return kLineTypeCounts;
  return {};
}

}  // namespace

DxflibAdapter::DxflibAdapter(const NameDecoder& names) : names_(names), stream_(&buffer_) {
  // Setting it would set C's locale along with it, even where nothing changes.
  if (callersLocale_ != std::locale::classic()) std::locale::global(std::locale::classic());
}

DxflibAdapter::~DxflibAdapter() {
  if (callersLocale_ != std::locale::classic()) std::locale::global(callersLocale_);
}

void DxflibAdapter::AppendGroup(int code, std::string_view value) {
  text_ += std::to_string(code);
  text_ += '\n';
  text_ += value;
  text_ += '\n';
}

void DxflibAdapter::AppendGroup(const Group& group) {
  if (KindOfGroup(group.code) == ValueKind::kInteger) {
    AppendGroup(group.code, std::to_string(group.integer));
    return;
  }
  if (group.value.size() > kLongestName) {
    throw DxfFault{group.ValueLine(), "this value has " + std::to_string(group.value.size()) + " characters"};
  }
  AppendGroup(group.code, group.value);
}

void DxflibAdapter::AppendCount(int countCode, int countedCode) {
  const size_t counted = object_->Count(countedCode);
  object_->CheckCount(countCode, counted);
  AppendGroup(countCode, std::to_string(counted));
}

void DxflibAdapter::Feed(const DxfObject& object) {
  object_ = &object;
  plane_ = Ocs::Of(object);
  shape_.reset();
  text_.clear();
  const bool isVariable = object.type.starts_with('$');
  AppendGroup(isVariable ? 9 : 0, object.type);
  const auto counts = CountsOf(object.type);
  for (const Count& count : counts) AppendCount(count.code, count.counted);
  for (const Group& group : object.groups) {
    const bool isCount = std::ranges::find(counts, group.code, &Count::code) != counts.end();
    if (isVariable || (IsOfUse(group) && !isCount)) AppendGroup(group);
  }
  AppendGroup(0, "EOF");  // starts another object, so that dxflib finishes this one
  buffer_.Hold(text_);
  stream_.clear();
  dxflib_.in(stream_, this);
}

DxflibAdapter::NamedLayer DxflibAdapter::ReadLayer(const DxfObject& entry) {
  layer_ = {};
  Feed(entry);
  if (layer_.name.empty()) throw DxfFault{entry.line, "the layer has no name"};
  return std::move(layer_);
}

void DxflibAdapter::addLayer(const DL_LayerData& data) {
  layer_.name = names_.Decode(data.name);
  Layer& layer = layer_.layer;
  // Minus the colour means off.
  const int index = getAttributes().getColor();
  layer.off = index < 0;
  layer.color = ColorOf(*object_, {EntityColor::Kind::kIndex, 7}, ColorSign::kMeansOff);
  layer.frozen = (static_cast<unsigned>(data.flags) & kLayerFrozen) != 0;
  if (const Group* lineType = object_->Find(6)) layer.lineType = UpperCase(names_.Decode(*lineType));
  layer.lineWeight = LineWeightOf(*object_, kLineWeightDefault);
  layer.alpha = LayerAlphaOf(*object_);
  layer.plottable = object_->Integer(290, 1) != 0;
}

std::optional<DxflibAdapter::NamedLineType> DxflibAdapter::ReadLineType(const DxfObject& entry) {
  constexpr int kNeeded[] = {2};
  entry.Require(kNeeded);
  lineType_.reset();
  dashes_.clear();
  Feed(entry);
  return std::move(lineType_);
}

void DxflibAdapter::addLinetype(const DL_LinetypeData& data) {
  const std::string name = UpperCase(names_.Decode(data.name));
  if (name != "BYLAYER" && name != "BYBLOCK") lineType_ = NamedLineType{name, LineType{dashes_}};
}

void DxflibAdapter::addLinetypeDash(double length) { dashes_.push_back(length); }

DxflibAdapter::BlockHead DxflibAdapter::ReadBlock(const DxfObject& block) {
  block_ = {};
  Feed(block);
  if (block_.name.empty()) throw DxfFault{block.line, "the block has no name"};
  return std::move(block_);
}

void DxflibAdapter::addBlock(const DL_BlockData& data) {
  block_ = {UpperCase(names_.Decode(data.name)), {data.bpx, data.bpy}, static_cast<unsigned>(data.flags)};
}

DxflibAdapter::Variable DxflibAdapter::ReadVariable(const DxfObject& variable) {
  variable_ = {};
  Feed(variable);
  return std::move(variable_);
}

void DxflibAdapter::setVariableString(const std::string&, const std::string& value, int) {
  variable_.text = value;
}

void DxflibAdapter::setVariableInt(const std::string&, int value, int) { variable_.integer = value; }

void DxflibAdapter::setVariableDouble(const std::string&, double value, int) { variable_.real = value; }

}  // namespace hdiplot
