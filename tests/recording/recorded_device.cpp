#include "tests/recording/recorded_device.h"

#include <fmt/format.h>

namespace hdi {
namespace {

// The first `count` numbers of a record's side data.
std::string Floats(const PlotCommand& record, size_t count) {
  std::string text;
  for (size_t i = 0; i < count; ++i) {
    float value = 0;
    std::memcpy(&value, record.data + i * sizeof value, sizeof value);
    text += fmt::format(" {}", value);
  }
  return text;
}

// The 16-bit units after the layout `Data`; tests record only ASCII.
template <typename Data>
std::string Units(const PlotCommand& record) {
  std::string text = " ";
  const uint64_t count = ReadSide<Data>(record).count;
  for (size_t i = 0; i < count; ++i) text += static_cast<char>(record.data[sizeof(Data) + 2 * i]);
  return text;
}

std::string Describe(const PlotCommand& record) {
  switch (record.OpcodeValue()) {
    case OP_START_PAGE:
      return "PAGE";
    case OP_END_PAGE:
      return "ENDPAGE";
    case OP_FILL_PATH:
      return fmt::format("FILL {}", ReadSide<FillData>(record).mode);
    case OP_SET_ALPHA:
      return fmt::format("ALPHA {}", ReadSide<AlphaData>(record).alpha);
    case OP_LINK:
      return "LINK" + Units<LinkData>(record);
    case OP_LAYER:
      return "LAYER" + Units<LayerData>(record);
    case OP_TEXT:
      return "TEXT";
    case OP_CLIP_PATH:
      return "CLIP";
    case OP_MOVE_TO:
      return "M" + Floats(record, 2);
    case OP_LINE_TO:
      return "L" + Floats(record, 2);
    case OP_CURVE_TO:
      return "C" + Floats(record, 6);
    case OP_STROKE_PATH:
      return "STROKE";
    case OP_CLIP_RECT:
      return "CLIPRECT" + Floats(record, 4);
    default:
      return fmt::format("opcode {}", record.OpcodeValue());
  }
}

}  // namespace

std::string RecordedDevice::TakeRecords() {
  std::string texts;
  if (taken_ == nullptr) taken_ = Job().head;
  while (taken_->next != nullptr) {
    taken_ = taken_->next;
    texts += (texts.empty() ? "" : ", ") + Describe(*taken_);
  }
  return texts;
}

}  // namespace hdi
