// Plays each opcode on the page writer.
#include "composition/replay.h"

#include <cmath>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "composition/replay_bitmap.h"

namespace hdi {
namespace {

struct Replay {
  const DriverDevMode* settings;
  PageWriter& writer;
  // Buffers of the current record, kept for their capacity.
  std::vector<char16_t> units;
  std::vector<double> advances;
  bool isCutShort = false;  // the rest of the list is not played
};

// One specialization per opcode; a missing one breaks the build.
template <Opcode opcode>
void Play(Replay& replay, const PlotCommand& record);

Color ColorOf(uint32_t word) {
  return {static_cast<uint8_t>(word), static_cast<uint8_t>(word >> 8), static_cast<uint8_t>(word >> 16)};
}

BlendMode BlendModeOf(uint8_t mergeFlag) { return mergeFlag != 0 ? BlendMode::kDarken : BlendMode::kNormal; }

// Reads an array of `count` values that starts `offset` bytes into the record. Returns the offset after it.
template <typename Value>
size_t ReadArray(const PlotCommand& record, size_t offset, uint32_t count, std::vector<Value>& values) {
  values.resize(count);
  if (count > 0) std::memcpy(values.data(), record.data + offset, count * sizeof(Value));
  return offset + count * sizeof(Value);
}

template <typename Value>
std::vector<Value> ReadArray(const PlotCommand& record, size_t offset, uint32_t count) {
  std::vector<Value> values;
  ReadArray(record, offset, count, values);
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
  replay.writer.SetPageScaleInfo(replay.settings == nullptr ? kDefaultDotsPerInch
                                                            : DotsPerInch(*replay.settings));
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
  // Whatever can fail goes first, so that a pen is applied completely or not at all.
  replay.writer.SetDashArray(
      ReadArray<float>(record, sizeof pen, dashCount > 0 ? static_cast<uint32_t>(dashCount) : 0));
  replay.writer.SetLineWidth(pen.width);
  replay.writer.SetLineCap(pen.cap);
  replay.writer.SetLineJoin(pen.join);
  replay.writer.SetStrokeColor(ColorOf(pen.color), BlendModeOf(pen.merge));
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

// Text without advances is in a stroke font, which the host draws itself. An invisible text in a font that
// every system has keeps it searchable.
template <>
void Play<OP_TEXT>(Replay& replay, const PlotCommand& record) {
  auto data = ReadSide<TextData>(record);
  const uint32_t advanceCount = data.hasAdvances != 0 ? data.count : 0;
  size_t offset = ReadArray(record, sizeof data, data.count, replay.units);
  offset = ReadArray(record, offset, advanceCount, replay.advances);
  TextShapeData shape;
  std::memcpy(&shape, record.data + offset, sizeof shape);

  const double* advances = replay.advances.data();
  TextVisibility visibility = isEqual(shape.trackingFactor, kNormalTracking, kTrackingTolerance)
                                  ? TextVisibility::kVisible
                                  : TextVisibility::kInvisible;
  if (data.hasAdvances == 0) {
    const auto interfaceFont = SystemFontServices().DefaultInterfaceFont();
    if (!interfaceFont) return;
    data.font = *interfaceFont;
    advances = nullptr;
    visibility = TextVisibility::kInvisible;
  }
  const HT_Text text(&data.font, replay.units.data(), static_cast<int32_t>(data.count), advances);
  replay.writer.WriteTextRuns(text, data.x, data.y, shape, visibility);
}

template <>
void Play<OP_BITMAP>(Replay& replay, const PlotCommand& record) {
  const BitmapOutcome outcome = PlayBitmap(ReadSide<BitmapData>(record), replay.writer);
  replay.isCutShort = outcome == BitmapOutcome::kRasterIsGone;
}

template <>
void Play<OP_LAYER>(Replay& replay, const PlotCommand& record) {
  const auto count = static_cast<uint32_t>(ReadSide<LayerData>(record).count);
  ReadArray(record, sizeof(LayerData), count, replay.units);
  replay.writer.SetCurrentLayer({replay.units.begin(), replay.units.end()});
}

template <>
void Play<OP_SHX_COMMENT>(Replay& replay, const PlotCommand& record) {
  const auto count = static_cast<uint32_t>(ReadSide<uint64_t>(record));
  const size_t offset = ReadArray(record, sizeof(uint64_t), count, replay.units);
  CommentData data;
  std::memcpy(&data, record.data + offset, sizeof data);
  replay.writer.WriteShxComment({replay.units.data(), replay.units.size()},
                                {data.left, data.right, data.bottom, data.top}, data.flags);
}

void PlayRecord(Replay& replay, const PlotCommand& record) {
  switch (record.OpcodeValue()) {
#define HDI_PLAY_OPCODE(name, number) \
  case name:                          \
    return Play<name>(replay, record);
    HDI_FOR_EACH_OPCODE(HDI_PLAY_OPCODE)
#undef HDI_PLAY_OPCODE
    default:  // reserved or unknown: skipped
      return;
  }
}

}  // namespace

int32_t ReplayCommands(const PlotCommand* head, const FontUsage& fontUsage, const DriverDevMode* settings,
                       PageWriter& writer) {
  writer.SetCharacters(fontUsage);
  Replay replay{settings, writer, {}, {}};
  for (const PlotCommand* record = head; record != nullptr; record = record->next) {
    try {
      PlayRecord(replay, *record);
    } catch (const std::bad_alloc&) {
      continue;  // out of memory: skip this record and play the others
    }
    if (replay.isCutShort) return 0;
  }
  return 1;
}

}  // namespace hdi
