// The command list: plot entries append to it, the replay walks it once.
//
// A job's list is a chain of 56-byte records in `recordArena`; the operands of a record are byte-packed side
// data in `sideArena`. Both arenas are process-wide bump allocators over 2 MiB chunks, released together when
// the device closes. A record is appended for every primitive, so it costs only two compares and two
// additions.
//
// Side data is little-endian and may be unaligned: it is written and read by copying the packed layouts
// below, never in place. Coordinates are in dots, Y up, with the origin at the lower left of the printable
// area.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/border.h"

namespace hdi {

// All opcodes in use. The missing numbers are reserved: they are never written, the replay skips them, and
// they must not be reused.
#define HDI_FOR_EACH_OPCODE(X) \
  X(OP_START_PAGE, 0)          \
  X(OP_END_PAGE, 1)            \
  X(OP_FILL_STROKE_PATH, 8)    \
  X(OP_FILL_PATH, 11)          \
  X(OP_SET_ALPHA, 13)          \
  X(OP_SET_PEN, 14)            \
  X(OP_SET_BRUSH, 15)          \
  X(OP_CLIP_PATH, 17)          \
  X(OP_LIST_HEAD, 19)          \
  X(OP_TEXT, 22)               \
  X(OP_BITMAP, 25)             \
  X(OP_MOVE_TO, 27)            \
  X(OP_LINE_TO, 28)            \
  X(OP_CURVE_TO, 29)           \
  X(OP_STROKE_PATH, 30)        \
  X(OP_LINK, 31)               \
  X(OP_CLIP_RECT, 32)          \
  X(OP_LAYER, 33)              \
  X(OP_SHX_COMMENT, 34)

enum Opcode : uint8_t {
#define HDI_OPCODE_ENUMERATOR(name, number) name = (number),
  HDI_FOR_EACH_OPCODE(HDI_OPCODE_ENUMERATOR)
#undef HDI_OPCODE_ENUMERATOR
};

inline constexpr uint8_t kOpcodeMask = 0x3F;

// One record. Bits 6 and 7 of `opcodeByte` are undefined; `data` is set only by opcodes with side data. The
// remaining bytes are never read or written.
struct PlotCommand {
  PlotCommand* next;
  uint8_t opcodeByte;
  uint8_t* data;
  uint8_t unused[32];

  [[nodiscard]] uint8_t OpcodeValue() const { return opcodeByte & kOpcodeMask; }
  void SetOpcode(Opcode opcode) {
    opcodeByte = static_cast<uint8_t>((opcodeByte & ~kOpcodeMask) | static_cast<uint8_t>(opcode));
  }
};
static_assert(sizeof(PlotCommand) == 56);

// Side data layouts. An array that follows a layout starts right after it.
#pragma pack(push, 1)

struct StartPageData {
  uint32_t pageNumber;  // from 1
  double width;         // points, like the other lengths
  double height;
  uint32_t background;  // bytes red, green, blue, 0; all ones: none
  double marginLeft;
  double marginBottom;
};
static_assert(sizeof(StartPageData) == 40);

struct FillData {  // OP_FILL_STROKE_PATH, OP_FILL_PATH
  uint32_t mode;   // 1 even-odd, 2 nonzero winding
};
static_assert(sizeof(FillData) == 4);

struct AlphaData {
  uint32_t alpha;  // as given by the host; only the low byte counts
};
static_assert(sizeof(AlphaData) == 4);

struct PenData {
  float width;  // dots
  uint32_t cap;
  uint32_t join;
  uint32_t color;  // bytes red, green, blue, 0
  uint8_t merge;
  uint32_t dashCount;  // f32 dash entries follow, in points
};
static_assert(sizeof(PenData) == 21);

struct BrushData {
  uint32_t style;  // recorded but never read, like hatch
  uint32_t color;  // bytes red, green, blue, 0
  uint64_t hatch;
  uint8_t merge;
};
static_assert(sizeof(BrushData) == 17);

struct PointData {  // OP_MOVE_TO, OP_LINE_TO
  float x;
  float y;
};
static_assert(sizeof(PointData) == 8);

struct CurveData {
  float x1, y1, x2, y2, x3, y3;
};
static_assert(sizeof(CurveData) == 24);

struct ClipRectData {
  float left, bottom, right, top;
};
static_assert(sizeof(ClipRectData) == 16);

struct LinkData {
  uint32_t count;  // 16-bit units follow, unterminated; 0 ends the link
};
static_assert(sizeof(LinkData) == 4);

struct BitmapData {
  const HostImageRecord* image;  // owned by the host, which keeps it until the replay is done
  double x;                      // of the lower left corner; dots, like the size
  double y;
  double width;
  double height;
};
static_assert(sizeof(BitmapData) == 40);

struct LayerData {
  uint64_t count;  // 16-bit units follow, unterminated
};
static_assert(sizeof(LayerData) == 8);

// OP_SHX_COMMENT: follows a u64 count and that many 16-bit units.
struct CommentData {
  int32_t left;  // dots, like the others
  int32_t bottom;
  int32_t right;
  int32_t top;
  uint32_t flags;       // of the annotation, as given by the host
  int32_t dotsPerInch;  // recorded but never read
};
static_assert(sizeof(CommentData) == 24);

struct TextData {
  LOGFONTW font;
  float x;
  float y;
  uint8_t hasAdvances;
  uint32_t
      count;  // 16-bit units follow; then, if the flag is set, that many f64 advances; then TextShapeData
};
static_assert(sizeof(TextData) == 105);

struct TextShapeData {
  double textHeight;      // dots
  double obliqueAngle;    // radians
  double trackingFactor;  // 1 is normal, also for the width factor
  double widthFactor;
};
static_assert(sizeof(TextShapeData) == 32);

#pragma pack(pop)

// Text is tracked if its factor differs from this by more than the tolerance.
inline constexpr double kNormalTracking = 1.0;
inline constexpr double kTrackingTolerance = 1e-5;

// The header of a chunk, allocated separately from its block.
struct ArenaChunk {
  uint8_t* base;
  uint8_t* cursor;
  uint8_t* limit;
  ArenaChunk* previous;
};
static_assert(sizeof(ArenaChunk) == 32);

// A bump allocator. Both pointers are null while it is empty. Running out of memory is not handled.
struct CommandArena {
  static constexpr size_t kChunkSize = 0x200000;

  ArenaChunk* newest;   // where ReleaseChunks starts
  ArenaChunk* current;  // where allocations come from

  [[nodiscard]] size_t Room() const {
    return current == nullptr ? 0 : static_cast<size_t>(current->limit - current->cursor);
  }
  // Takes `size` bytes of the current chunk, which must have room for them.
  [[nodiscard]] uint8_t* Carve(size_t size) {
    uint8_t* block = current->cursor;
    current->cursor += size;
    return block;
  }
  void AddChunk(size_t size);
};

// Holds only records.
extern CommandArena recordArena;
// Holds the side data of all records.
extern CommandArena sideArena;

// Frees every chunk of `arena`.
void ReleaseChunks(CommandArena& arena);

// Returns an uninitialized record.
[[nodiscard]] inline PlotCommand* AllocRecord() {
  if (recordArena.Room() < sizeof(PlotCommand)) recordArena.AddChunk(CommandArena::kChunkSize);
  return reinterpret_cast<PlotCommand*>(recordArena.Carve(sizeof(PlotCommand)));
}

// Returns `size` uninitialized bytes. A request above the chunk size gets a chunk of exactly that size, which
// has no room for the next request.
[[nodiscard]] inline uint8_t* AllocSide(uint32_t size) {
  if (sideArena.Room() < size) {
    sideArena.AddChunk(size > CommandArena::kChunkSize ? size : CommandArena::kChunkSize);
  }
  return sideArena.Carve(size);
}

// Returns the layout at the start of a record's side data.
template <typename Data>
[[nodiscard]] Data ReadSide(const PlotCommand& record) {
  Data data;
  std::memcpy(&data, record.data, sizeof data);
  return data;
}

}  // namespace hdi
