#include "tests/recording/recorded_device.h"

#include <fmt/format.h>

namespace hdi {
namespace {

std::string Pen(const PlotCommand& record) {
  const auto pen = ReadSide<PenData>(record);
  std::string text = fmt::format("PEN {} cap {} join {} {:06x} merge {}", pen.width, pen.cap, pen.join,
                                 pen.color, pen.merge);
  for (uint32_t i = 0; i < pen.dashCount; ++i) {
    float dash = 0;
    std::memcpy(&dash, record.data + sizeof pen + i * sizeof dash, sizeof dash);
    text += fmt::format(" {}", dash);
  }
  return text;
}

// Takes one value after the other from a record's side data.
class SideReader {
 public:
  SideReader(const PlotCommand& record, size_t offset) : at_(record.data + offset) {}

  template <typename Value>
  Value operator()(Value value) {
    std::memcpy(&value, at_, sizeof value);
    at_ += sizeof value;
    return value;
  }

  std::string Units(uint64_t count) {
    std::string text;
    for (; count > 0; --count) text += static_cast<char>((*this)(char16_t{}));  // tests plot ASCII
    return text;
  }

 private:
  const uint8_t* at_;
};

std::string Comment(const PlotCommand& record) {
  SideReader take(record, 0);
  const std::string words = take.Units(take(uint64_t{}));
  const auto data = take(CommentData{});
  return fmt::format("COMMENT {} {},{},{},{} flags {:x} {} dpi", words, int32_t{data.left},
                     int32_t{data.bottom}, int32_t{data.right}, int32_t{data.top}, uint32_t{data.flags},
                     int32_t{data.dotsPerInch});
}

std::string Text(const PlotCommand& record) {
  const auto data = ReadSide<TextData>(record);
  SideReader take(record, sizeof data);
  std::string text = fmt::format("TEXT {},{}", float{data.x}, float{data.y});
  for (uint32_t i = 0; i < data.count; ++i) text += fmt::format(" {:x}", uint16_t{take(char16_t{})});
  text += data.hasAdvances != 0 ? " advances" : "";
  for (uint32_t i = 0; data.hasAdvances != 0 && i < data.count; ++i) text += fmt::format(" {}", take(0.0));
  const auto shape = take(TextShapeData{});
  return text + fmt::format(" height {} oblique {} tracking {} width {}", double{shape.textHeight},
                            double{shape.obliqueAngle}, double{shape.trackingFactor},
                            double{shape.widthFactor});
}

std::string Describe(const PlotCommand& record) {
  switch (record.OpcodeValue()) {
    case OP_START_PAGE: {
      const auto page = ReadSide<StartPageData>(record);
      // Copies, as the layout is packed and the formatter takes references.
      return fmt::format("PAGE {} {:.6g}x{:.6g} {:x} {:.6g},{:.6g}", uint32_t{page.pageNumber},
                         double{page.width}, double{page.height}, uint32_t{page.background},
                         double{page.marginLeft}, double{page.marginBottom});
    }
    case OP_END_PAGE:
      return "ENDPAGE";
    case OP_FILL_STROKE_PATH:
      return fmt::format("FILLSTROKE {}", ReadSide<FillData>(record).mode);
    case OP_FILL_PATH:
      return fmt::format("FILL {}", ReadSide<FillData>(record).mode);
    case OP_SET_ALPHA:
      return fmt::format("ALPHA {}", ReadSide<AlphaData>(record).alpha);
    case OP_SET_PEN:
      return Pen(record);
    case OP_SET_BRUSH: {
      const auto brush = ReadSide<BrushData>(record);
      return fmt::format("BRUSH {:06x} merge {}", brush.color, brush.merge);
    }
    case OP_BITMAP: {
      const auto data = ReadSide<BitmapData>(record);
      return fmt::format("BITMAP {},{} {}x{}", double{data.x}, double{data.y}, double{data.width},
                         double{data.height});
    }
    case OP_LINK:
      return "LINK " + SideReader(record, sizeof(LinkData)).Units(ReadSide<LinkData>(record).count);
    case OP_LAYER:
      return "LAYER " + SideReader(record, sizeof(LayerData)).Units(ReadSide<LayerData>(record).count);
    case OP_SHX_COMMENT:
      return Comment(record);
    case OP_TEXT:
      return Text(record);
    case OP_CLIP_PATH:
      return "CLIP";
    case OP_MOVE_TO:
    case OP_LINE_TO: {
      const auto point = ReadSide<PointData>(record);
      return fmt::format("{} {},{}", record.OpcodeValue() == OP_MOVE_TO ? 'M' : 'L', point.x, point.y);
    }
    case OP_CURVE_TO: {
      const auto c = ReadSide<CurveData>(record);
      return fmt::format("C {},{} {},{} {},{}", c.x1, c.y1, c.x2, c.y2, c.x3, c.y3);
    }
    case OP_STROKE_PATH:
      return "STROKE";
    case OP_CLIP_RECT: {
      const auto rect = ReadSide<ClipRectData>(record);
      return fmt::format("CLIPRECT {} {} {} {}", rect.left, rect.bottom, rect.right, rect.top);
    }
    default:
      return fmt::format("opcode {}", record.OpcodeValue());
  }
}

}  // namespace

std::vector<std::string> RecordedDevice::TakeRecords() {
  std::vector<std::string> texts;
  if (taken_ == nullptr) taken_ = Job().head;
  while (taken_->next != nullptr) {
    taken_ = taken_->next;
    texts.push_back(Describe(*taken_));
  }
  return texts;
}

}  // namespace hdi
