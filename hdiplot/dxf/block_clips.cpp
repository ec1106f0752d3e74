// A filter: the outline (10), two points for a rectangle; whether it is in use (71); the distances of a front
// and a back plane, if any; and two matrices of three rows by four columns (40). The first one takes world
// coordinates to those of the block, the second one to those of the outline.
// An inverted clip has in its place a frame around the block with the hole cut open, which some writers leave
// incomplete; the outline of the hole is in a record.
#include "hdiplot/dxf/block_clips.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

namespace hdiplot {
namespace {

constexpr size_t kMatrixSize = 12;

double Dot(Vec3 a, Vec3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }

// An affine map of space, by its rows.
struct SpaceMap {
  std::array<Vec3, 3> rows;
  Vec3 shift;

  explicit SpaceMap(std::span<const double> m)
      : rows{Vec3{m[0], m[1], m[2]}, {m[4], m[5], m[6]}, {m[8], m[9], m[10]}}, shift{m[3], m[7], m[11]} {}

  [[nodiscard]] Vec3 operator()(Vec3 p) const {
    return {Dot(rows[0], p) + shift.x, Dot(rows[1], p) + shift.y, Dot(rows[2], p) + shift.z};
  }
  [[nodiscard]] double Determinant() const { return Dot(rows[0], Cross(rows[1], rows[2])); }
  // The point that the map takes to `p`.
  [[nodiscard]] Vec3 Before(Vec3 p) const {
    const Vec3 q{p.x - shift.x, p.y - shift.y, p.z - shift.z};
    const Vec3 x = Cross(rows[1], rows[2]) * q.x;
    const Vec3 y = Cross(rows[2], rows[0]) * q.y;
    const Vec3 z = Cross(rows[0], rows[1]) * q.z;
    return Vec3{x.x + y.x + z.x, x.y + y.y + z.y, x.z + y.z + z.z} / Determinant();
  }
};

constexpr const char* kFilters = "ACAD_FILTER";
constexpr const char* kSpatial = "SPATIAL";
constexpr const char* kRecord = "ACAD_XREC_ROUNDTRIP";

// Whether a dictionary's entry of that name leads to a clip.
bool IsOnWay(std::string_view name) { return name == kFilters || name == kSpatial || name == kRecord; }

double AreaOf(const std::vector<Vec2>& polygon) {
  double area = 0;
  for (size_t i = 0; i < polygon.size(); ++i) area += Cross(polygon[i], polygon[(i + 1) % polygon.size()]);
  return std::abs(area) / 2;
}

std::vector<Vec2> ReadOutline(const DxfObject& object) {
  std::vector<Vec2> outline = object.Points(10);
  if (outline.size() != 2) return outline;
  const Vec2 a = outline[0];
  const Vec2 b = outline[1];
  return {a, {b.x, a.y}, b, {a.x, b.y}};
}

// From the coordinates of the outline to those of the block.
Affine ReadMap(const DxfObject& filter) {
  std::vector<double> numbers;
  for (const Group& group : filter.groups) {
    if (group.code == 40) numbers.push_back(group.number);
  }
  if (numbers.size() < 2 * kMatrixSize) throw DxfFault{filter.place, "the clip of a block has no matrices"};
  // A front plane has its distance in a group 40 before these.
  const auto matrices = std::span<const double>(numbers).last(2 * kMatrixSize);
  const SpaceMap toBlock(matrices.first(kMatrixSize));
  const SpaceMap toOutline(matrices.last(kMatrixSize));
  const auto map = [&](Vec2 p) { return Flat(toBlock(toOutline.Before({p.x, p.y, 0}))); };
  const Vec2 origin = map({0, 0});
  return Affine::OfAxes(map({1, 0}) - origin, map({0, 1}) - origin, origin);
}

}  // namespace

void BlockClips::Add(const DxfObject& object) {
  const Group* handle = object.Find(5);
  if (handle == nullptr) return;
  if (object.type == "SPATIAL_FILTER") {
    if (object.Integer(71, 1) == 0) return;
    const Filter filter{ReadOutline(object), ReadMap(object), HandleKey(object.dictionary)};
    // The comparison is false for what is not a number.
    if (!(AreaOf(filter.outline) * std::abs(filter.toBlock.Determinant()) > 0)) {
      throw DxfFault{object.place, "the clip of a block has no area"};
    }
    filters_[HandleKey(handle->Value())] = filter;
  } else if (object.type == "XRECORD") {
    std::vector<Vec2> outline = ReadOutline(object);
    if (outline.size() > 2) inverted_[HandleKey(handle->Value())] = std::move(outline);
  } else if (object.type == "DICTIONARY") {
    for (size_t i = 1; i < object.groups.size(); ++i) {
      const Group& name = object.groups[i - 1];
      const Group& entry = object.groups[i];
      const bool isHandle = entry.code == 350 || entry.code == 360;
      if (name.code == 3 && isHandle && IsOnWay(name.Value())) {
        entries_[{HandleKey(handle->Value()), std::string(name.Value())}] = HandleKey(entry.Value());
      }
    }
  }
}

std::shared_ptr<const BlockClip> BlockClips::Find(std::string_view dictionary) const {
  const auto found = filters_.find(Entry(Entry(HandleKey(dictionary), kFilters), kSpatial));
  if (found == filters_.end()) return nullptr;
  const Filter& filter = found->second;
  const auto inverted = inverted_.find(Entry(filter.dictionary, kRecord));
  auto clip = std::make_shared<BlockClip>();
  clip->isInverted = inverted != inverted_.end();
  clip->outline = clip->isInverted ? inverted->second : filter.outline;
  for (Vec2& p : clip->outline) p = filter.toBlock(p);
  return clip;
}

std::string BlockClips::Entry(const std::string& dictionary, const char* name) const {
  const auto entry = entries_.find({dictionary, name});
  return entry == entries_.end() ? std::string() : entry->second;
}

}  // namespace hdiplot
