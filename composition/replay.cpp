// What each opcode does to the page writer.
#include "composition/replay.h"

#include <cmath>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace hdi {
namespace {

struct Replay {
  const DriverDevMode* settings;
  PageWriter& writer;
};

// Each opcode has its own Play; one that is missing breaks the build.
template <Opcode opcode>
void Play(Replay& replay, const PlotCommand& record);

Color ColorOf(uint32_t word) {
  return {static_cast<uint8_t>(word), static_cast<uint8_t>(word >> 8), static_cast<uint8_t>(word >> 16)};
}

BlendMode BlendModeOf(uint8_t mergeFlag) { return mergeFlag != 0 ? BlendMode::kDarken : BlendMode::kNormal; }

// An array of `count` values that stands behind a layout of `offset` bytes.
template <typename Value>
std::vector<Value> ReadArray(const PlotCommand& record, size_t offset, uint32_t count) {
  std::vector<Value> values(count);
  if (count > 0) std::memcpy(values.data(), record.data + offset, count * sizeof(Value));
  return values;
}

template <>
void Play<OP_START_PAGE>(Replay& replay, const PlotCommand& record) {
  const auto page = ReadSide<StartPageData>(record);
  replay.writer.BeginPage(page.pageNumber, page.width, page.height);
  if (page.background != kNoBackground) replay.writer.SetBackground(ColorOf(page.background));
  auto x = static_cast<float>(page.marginLeft);
  auto y = static_cast<float>(page.marginBottom);
  if (replay.settings == nullptr || replay.settings->keepFractions == 0) {
    x = static_cast<float>(std::round(static_cast<double>(x)));
    y = static_cast<float>(std::round(static_cast<double>(y)));
  }
  replay.writer.SetOrigin(x, y);
}

template <>
void Play<OP_END_PAGE>(Replay& replay, const PlotCommand& /*record*/) {
  replay.writer.FinishPage();
}

template <>
void Play<OP_FILL_STROKE_PATH>(Replay& replay, const PlotCommand& record) {
  replay.writer.FillAndStrokePath(ReadSide<FillData>(record).mode);
}

template <>
void Play<OP_FILL_PATH>(Replay& replay, const PlotCommand& record) {
  replay.writer.FillPath(ReadSide<FillData>(record).mode);
}

template <>
void Play<OP_SET_ALPHA>(Replay& replay, const PlotCommand& record) {
  replay.writer.SetAlpha(static_cast<uint8_t>(ReadSide<AlphaData>(record).alpha));
}

template <>
void Play<OP_SET_PEN>(Replay& replay, const PlotCommand& record) {
  const auto pen = ReadSide<PenData>(record);
  const auto dashCount = static_cast<int32_t>(pen.dashCount);
  // The one step that can fail goes first, so that a pen is taken whole or not at all.
  auto dashes = ReadArray<float>(record, sizeof pen, dashCount > 0 ? static_cast<uint32_t>(dashCount) : 0);
  replay.writer.SetLineWidth(pen.width);
  replay.writer.SetLineCap(pen.cap);
  replay.writer.SetLineJoin(pen.join);
  replay.writer.SetStrokeColor(ColorOf(pen.color), BlendModeOf(pen.merge));
  replay.writer.SetDashArray(std::move(dashes));
}

template <>
void Play<OP_SET_BRUSH>(Replay& replay, const PlotCommand& record) {
  const auto brush = ReadSide<BrushData>(record);
  replay.writer.SetFillColor(ColorOf(brush.color), BlendModeOf(brush.merge));
}

template <>
void Play<OP_CLIP_PATH>(Replay& replay, const PlotCommand& /*record*/) {
  replay.writer.MakeClipFromPath();
}

template <>
void Play<OP_LIST_HEAD>(Replay& /*replay*/, const PlotCommand& /*record*/) {}

template <>
void Play<OP_MOVE_TO>(Replay& replay, const PlotCommand& record) {
  const auto point = ReadSide<PointData>(record);
  replay.writer.MoveTo(point.x, point.y);
}

template <>
void Play<OP_LINE_TO>(Replay& replay, const PlotCommand& record) {
  const auto point = ReadSide<PointData>(record);
  replay.writer.LineTo(point.x, point.y);
}

template <>
void Play<OP_CURVE_TO>(Replay& replay, const PlotCommand& record) {
  const auto c = ReadSide<CurveData>(record);
  replay.writer.CurveTo(c.x1, c.y1, c.x2, c.y2, c.x3, c.y3);
}

template <>
void Play<OP_STROKE_PATH>(Replay& replay, const PlotCommand& /*record*/) {
  replay.writer.StrokePath();
}

template <>
void Play<OP_LINK>(Replay& replay, const PlotCommand& record) {
  const auto units = ReadArray<char16_t>(record, sizeof(LinkData), ReadSide<LinkData>(record).count);
  replay.writer.SetLinkTarget({units.begin(), units.end()});
}

template <>
void Play<OP_CLIP_RECT>(Replay& replay, const PlotCommand& record) {
  const auto rect = ReadSide<ClipRectData>(record);
  replay.writer.SetPageClipRect({rect.left, rect.bottom, rect.right, rect.top});
}

// Nothing records text, rasters, layers and comments yet.
template <>
void Play<OP_TEXT>(Replay& /*replay*/, const PlotCommand& /*record*/) {}
template <>
void Play<OP_BITMAP>(Replay& /*replay*/, const PlotCommand& /*record*/) {}
template <>
void Play<OP_LAYER>(Replay& /*replay*/, const PlotCommand& /*record*/) {}
template <>
void Play<OP_SHX_COMMENT>(Replay& /*replay*/, const PlotCommand& /*record*/) {}

void PlayRecord(Replay& replay, const PlotCommand& record) {
  switch (record.OpcodeValue()) {
#define HDI_PLAY_OPCODE(name, number) \
  case name:                          \
    return Play<name>(replay, record);
    HDI_FOR_EACH_OPCODE(HDI_PLAY_OPCODE)
#undef HDI_PLAY_OPCODE
    default:  // reserved or unknown: passed over
      return;
  }
}

}  // namespace

int32_t ReplayCommands(const PlotCommand* head, const DriverDevMode* settings, PageWriter& writer) {
  Replay replay{settings, writer};
  for (const PlotCommand* record = head; record != nullptr; record = record->next) {
    try {
      PlayRecord(replay, *record);
    } catch (const std::bad_alloc&) {
      continue;  // no memory for this record; the others are still played
    }
  }
  return 1;
}

}  // namespace hdi
