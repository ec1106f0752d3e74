// Each method puts its arguments into the form of the entry, records the call and makes it.
#include "hdiplot/device/plot_device.h"

#include <array>
#include <bit>
#include <utility>

#include "hdiplot/trace/trace.h"
#include "hdiplot/trace/trace_writer.h"

namespace hdiplot {

namespace {

using hdi::Position;
namespace entry = hdi::entry;

// The words of a pen record before its entries.
constexpr size_t kPenHeaderWords = offsetof(hdi::EXTLOGPEN32, elpStyleEntry) / sizeof(uint32_t);

uint32_t ColorWord(Rgb color) {
  return uint32_t{color.red} | uint32_t{color.green} << 8 | uint32_t{color.blue} << 16;
}

int32_t Count(size_t size) { return static_cast<int32_t>(size); }

PointList Copy(Points points) { return {points.begin(), points.end()}; }

}  // namespace

template <typename Function, typename... Arguments>
auto PlotDevice::Invoke(Position position, Arguments... arguments) {
  auto* function = device_.table->At<Function>(position);
  using Result = decltype(function(&device_, arguments...));
  return function == nullptr ? Result{} : function(&device_, arguments...);
}

// Records a call; the values are those of its structure, in order.
template <typename Record, typename... Values>
void PlotDevice::Log(Values&&... values) {
  recorder_->WriteCall(Record{std::forward<Values>(values)...});
}

PlotDevice::PlotDevice(hdi::HT_Driver& driver) : driver_(driver) {
  device_.driver = &driver;
  driver.OpenDevice(&device_);
}

PlotDevice::~PlotDevice() { driver_.CloseDevice(&device_); }

int32_t PlotDevice::StartDoc(const std::u16string& docName, const std::optional<std::u16string>& output,
                             const std::u16string& defaultOutput) {
  defaultOutput_ = defaultOutput;
  device_.defaultOutput = defaultOutput_.c_str();
  hdi::DOCINFOW document{};
  document.cbSize = sizeof document;
  document.lpszDocName = docName.c_str();
  document.lpszOutput = output ? output->c_str() : nullptr;
  return Invoke<entry::StartDoc>(Position::kStartDoc, &document);
}

int32_t PlotDevice::EndDoc() { return Invoke<entry::EndDoc>(Position::kEndDoc); }

uint32_t PlotDevice::GetCaps(int32_t index) {
  if (recorder_ != nullptr) Log<call::GetCaps>(index);
  return Invoke<entry::GetCaps>(Position::kGetCaps, index);
}

int32_t PlotDevice::StartPage(const std::optional<std::vector<FieldSetting>>& changes) {
  if (recorder_ != nullptr) Log<call::StartPage>(changes);
  ++pages_;
  if (!changes) return Invoke<entry::StartPage>(Position::kStartPage, nullptr);
  hdi::DriverDevMode record = *driver_.GetDevModePointer();
  for (const FieldSetting& change : *changes) WriteField(change, &record);
  return Invoke<entry::StartPage>(Position::kStartPage, &record);
}

int32_t PlotDevice::EndPage() {
  if (recorder_ != nullptr) Log<call::EndPage>();
  return Invoke<entry::EndPage>(Position::kEndPage);
}

int32_t PlotDevice::SetPen(const Pen& pen) {
  if (recorder_ != nullptr) Log<call::SetPen>(pen);
  hdi::EXTLOGPEN32 header{};
  header.elpPenStyle = pen.style;
  header.elpWidth = pen.width;
  header.elpColor = ColorWord(pen.color);
  header.elpNumEntries = Count(pen.entries.size());
  const auto words = std::bit_cast<std::array<uint32_t, sizeof header / sizeof(uint32_t)>>(header);
  penWords_.assign(words.begin(), words.end());
  penWords_.resize(kPenHeaderWords);
  penWords_.insert(penWords_.end(), pen.entries.begin(), pen.entries.end());
  if (pen.entries.empty()) penWords_.push_back(0);  // the record has room for one entry
  return Invoke<entry::SetPen>(Position::kSetPen,
                               reinterpret_cast<const hdi::EXTLOGPEN32*>(penWords_.data()));
}

int32_t PlotDevice::SetBrush(const Brush& brush) {
  if (recorder_ != nullptr) Log<call::SetBrush>(brush);
  const hdi::LOGBRUSH record{brush.style, ColorWord(brush.color), brush.hatch};
  return Invoke<entry::SetBrush>(Position::kSetBrush, &record);
}

int32_t PlotDevice::SetAlpha(uint32_t alpha) {
  if (recorder_ != nullptr) Log<call::SetAlpha>(alpha);
  return Invoke<entry::SetAlpha>(Position::kSetAlpha, alpha);
}

int32_t PlotDevice::SetRasterOp(uint32_t code) {
  if (recorder_ != nullptr) Log<call::SetRasterOp>(code);
  return Invoke<entry::SetRasterOp>(Position::kSetRasterOp, code);
}

int32_t PlotDevice::SetFillMode(uint32_t mode) {
  if (recorder_ != nullptr) Log<call::SetFillMode>(mode);
  return Invoke<entry::SetFillMode>(Position::kSetFillMode, mode);
}

int32_t PlotDevice::SetLineScale(double scale) {
  if (recorder_ != nullptr) Log<call::SetLineScale>(scale);
  return Invoke<entry::SetLineScale>(Position::kSetLineScale, scale);
}

int32_t PlotDevice::Polyline(Points points) {
  if (recorder_ != nullptr) Log<call::Polyline>(Copy(points));
  ++objects_;
  return Invoke<entry::Polyline>(Position::kPolyline, points.data(), Count(points.size()));
}

int32_t PlotDevice::Polygon(Points points) {
  if (recorder_ != nullptr) Log<call::Polygon>(Copy(points));
  ++objects_;
  return Invoke<entry::Polygon>(Position::kPolygon, points.data(), Count(points.size()));
}

int32_t PlotDevice::PolyPolygon(std::span<const std::vector<hdi::HT_Double_Point>> polygons) {
  if (recorder_ != nullptr) Log<call::PolyPolygon>(PolygonList(polygons.begin(), polygons.end()));
  ++objects_;
  joinedPoints_.clear();
  counts_.clear();
  for (const auto& polygon : polygons) {
    joinedPoints_.insert(joinedPoints_.end(), polygon.begin(), polygon.end());
    counts_.push_back(static_cast<uint32_t>(polygon.size()));
  }
  return Invoke<entry::PolyPolygon>(Position::kPolyPolygon, joinedPoints_.data(), counts_.data(),
                                    Count(polygons.size()));
}

int32_t PlotDevice::PolyBezier(Points points) {
  if (recorder_ != nullptr) Log<call::PolyBezier>(Copy(points));
  ++objects_;
  return Invoke<entry::PolyBezier>(Position::kPolyBezier, points.data(), Count(points.size()));
}

int32_t PlotDevice::Arc(hdi::HT_Double_Point center, double a, double b, double c, double d, double e) {
  if (recorder_ != nullptr) Log<call::Arc>(center, a, b, c, d, e);
  ++objects_;
  return Invoke<entry::Arc>(Position::kArc, &center, a, b, c, d, e);
}

int32_t PlotDevice::BeginPath() {
  if (recorder_ != nullptr) Log<call::BeginPath>();
  return Invoke<entry::BeginPath>(Position::kBeginPath);
}

int32_t PlotDevice::EndPath() {
  if (recorder_ != nullptr) Log<call::EndPath>();
  return Invoke<entry::EndPath>(Position::kEndPath);
}

int32_t PlotDevice::FillPath() {
  if (recorder_ != nullptr) Log<call::FillPath>();
  return Invoke<entry::FillPath>(Position::kFillPath);
}

int32_t PlotDevice::StrokeFillPath() {
  if (recorder_ != nullptr) Log<call::StrokeFillPath>();
  return Invoke<entry::StrokeFillPath>(Position::kStrokeFillPath);
}

int32_t PlotDevice::SetClip(std::span<const std::vector<hdi::HT_Double_Point>> polygons, uint32_t apply) {
  if (recorder_ != nullptr) Log<call::SetClip>(PolygonList(polygons.begin(), polygons.end()), apply);
  std::vector<hdi::ClipPolygon> nodes(polygons.size());
  for (size_t i = 0; i < nodes.size(); ++i) {
    const bool isLast = i + 1 == nodes.size();
    nodes[i].apply = isLast ? apply : 0;
    nodes[i].next = isLast ? nullptr : &nodes[i + 1];
    nodes[i].count = Count(polygons[i].size());
    nodes[i].points = polygons[i].data();
  }
  return Invoke<entry::SetClip>(Position::kSetClip, nodes.empty() ? nullptr : nodes.data());
}

int32_t PlotDevice::BeginLink(const std::u16string& target) {
  if (recorder_ != nullptr) Log<call::BeginLink>(target);
  return Invoke<entry::BeginLink>(Position::kBeginLink, target.c_str());
}

int32_t PlotDevice::EndLink() {
  if (recorder_ != nullptr) Log<call::EndLink>();
  return Invoke<entry::EndLink>(Position::kEndLink);
}

int32_t PlotDevice::SetLayer(const std::u16string& name) {
  if (recorder_ != nullptr) Log<call::SetLayer>(name);
  return Invoke<entry::SetLayer>(Position::kSetLayer, int64_t{0}, name.c_str());
}

int32_t PlotDevice::Text(const hdi::LOGFONTW& font, hdi::HT_Double_Point position, std::u16string_view text,
                         const std::vector<double>* advances, double textHeight, double obliqueAngle,
                         double trackingFactor, double widthFactor) {
  if (recorder_ != nullptr) {
    Log<call::Text>(font, position, std::u16string(text), advances ? std::optional(*advances) : std::nullopt,
                    textHeight, obliqueAngle, trackingFactor, widthFactor);
  }
  ++objects_;
  // Given advances of an empty text are an address, too.
  static constexpr double kNoAdvances = 0;
  const double* given = nullptr;
  if (advances != nullptr) given = advances->empty() ? &kNoAdvances : advances->data();
  return Invoke<entry::Text>(Position::kText, &font, &position, text.data(), Count(text.size()), given,
                             textHeight, obliqueAngle, trackingFactor, widthFactor);
}

int32_t PlotDevice::Bitmap(const hdi::HostImageRecord& image) {
  if (recorder_ != nullptr) {
    Log<call::Bitmap>(DescribeRaster(*image.image), image.originX, image.originY, image.scaleX, image.scaleY);
  }
  ++objects_;
  return Invoke<entry::Bitmap>(Position::kBitmap, &image);
}

int32_t PlotDevice::ShxComment(const std::u16string& text, std::span<const int32_t, 4> rect, uint32_t flags) {
  if (recorder_ != nullptr) {
    Log<call::ShxComment>(text, std::array{rect[0], rect[1], rect[2], rect[3]}, flags);
  }
  ++objects_;
  return Invoke<entry::ShxComment>(Position::kShxComment, text.c_str(), rect.data(), flags);
}

}  // namespace hdiplot
