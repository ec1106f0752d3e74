// Opens and closes a device: fills the table of entry points.
#include <algorithm>

#include "driver/capabilities.h"
#include "driver/job.h"
#include "driver/pdf_driver.h"
#include "recording/plot_entries.h"

namespace hdi {
namespace {

template <typename Function>
void Set(DeviceTable& table, Position position, Function* function) {
  table.positions[static_cast<size_t>(position)] = reinterpret_cast<DeviceTable::Entry>(function);
}

// Positions without an entry stay null: the device lacks that operation.
void FillTable(DeviceTable& table) {
  Set<entry::Open>(table, Position::kOpen, DevOpen);
  Set<entry::Close>(table, Position::kClose, DevClose);
  Set<entry::Prepare>(table, Position::kPrepare, DevPrepare);
  Set<entry::CreateDocument>(table, Position::kCreateDocument, DevCreateDocument);
  Set<entry::Finish>(table, Position::kFinish, DevFinish);
  Set<entry::OpenOutput>(table, Position::kOpenOutput, DevOpenOutput);
  Set<entry::GetCaps>(table, Position::kGetCaps, DevGetCaps);
  Set<entry::StartDoc>(table, Position::kStartDoc, DevStartDoc);
  Set<entry::EndDoc>(table, Position::kEndDoc, DevEndDoc);
  Set<entry::StartPage>(table, Position::kStartPage, DevStartPage);
  Set<entry::EndPage>(table, Position::kEndPage, DevEndPage);
  Set<entry::Arc>(table, Position::kArc, DevArc);
  Set<entry::Polyline>(table, Position::kPolyline, DevPolyline);
  Set<entry::Polygon>(table, Position::kPolygon, DevPolygon);
  Set<entry::PolyPolygon>(table, Position::kPolyPolygon, DevPolyPolygon);
  Set<entry::PolyBezier>(table, Position::kPolyBezier, DevPolyBezier);
  Set<entry::BeginPath>(table, Position::kBeginPath, DevBeginPath);
  Set<entry::EndPath>(table, Position::kEndPath, DevEndPath);
  Set<entry::FillPath>(table, Position::kFillPath, DevFillPath);
  Set<entry::StrokeFillPath>(table, Position::kStrokeFillPath, DevStrokeFillPath);
  Set<entry::SetFillMode>(table, Position::kSetFillMode, DevSetFillMode);
  Set<entry::BeginLink>(table, Position::kBeginLink, DevBeginLink);
  Set<entry::EndLink>(table, Position::kEndLink, DevEndLink);
  Set<entry::SetAlpha>(table, Position::kSetAlpha, DevSetAlpha);
  Set<entry::SetPen>(table, Position::kSetPen, DevSetPen);
  Set<entry::SetBrush>(table, Position::kSetBrush, DevSetBrush);
  Set<entry::SetRasterOp>(table, Position::kSetRasterOp, DevSetRasterOp);
  Set<entry::SetClip>(table, Position::kSetClip, DevSetClip);
  Set<entry::Text>(table, Position::kText, DevText);
  Set<entry::SetOwnerWindow>(table, Position::kSetOwnerWindow, DevSetOwnerWindow);
  Set<entry::SetLayer>(table, Position::kSetLayer, DevSetLayer);
  Set<entry::Bitmap>(table, Position::kBitmap, DevBitmap);
  Set<entry::SetLineScale>(table, Position::kSetLineScale, DevSetLineScale);
  Set<entry::ShxComment>(table, Position::kShxComment, DevShxComment);
}

}  // namespace

int32_t CPDFDriver::OpenDevice(HostDevice* device) {
  device_ = device;
  device->table = &deviceTable_;
  FillTable(deviceTable_);
  DevOpen(device);
  return 1;
}

int32_t CPDFDriver::CloseDevice(HostDevice* device) {
  deviceTable_.At<entry::Close>(Position::kClose)(device);
  std::ranges::fill(deviceTable_.positions, nullptr);
  return 1;
}

}  // namespace hdi
