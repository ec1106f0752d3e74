// The calls whose arguments are put into records or arrays.
#include "hdiplot/device/calls.h"

#include <bit>

namespace hdiplot::call {

namespace {

// The words of a pen record before its entries.
constexpr size_t kPenHeaderWords = offsetof(hdi::EXTLOGPEN32, elpStyleEntry) / sizeof(uint32_t);

int32_t Count(size_t size) { return static_cast<int32_t>(size); }

}  // namespace

int32_t StartPage::MakeOn(OpenDevice& device) const {
  if (!changes) return device.Enter(kEntry, nullptr);
  hdi::DriverDevMode record = *device.Driver().GetDevModePointer();
  for (const FieldSetting& change : *changes) WriteField(change, &record);
  return device.Enter(kEntry, &record);
}

int32_t SetPen::MakeOn(OpenDevice& device) const {
  hdi::EXTLOGPEN32 header{};
  header.elpPenStyle = pen.style;
  header.elpWidth = pen.width;
  header.elpColor = ColorWord(pen.color);
  header.elpNumEntries = Count(pen.entries.size());
  const auto words = std::bit_cast<std::array<uint32_t, sizeof header / sizeof(uint32_t)>>(header);
  std::vector<uint32_t>& record = device.CallBuffers().words;
  record.assign(words.begin(), words.begin() + kPenHeaderWords);
  record.insert(record.end(), pen.entries.begin(), pen.entries.end());
  if (pen.entries.empty()) record.push_back(0);  // the record has room for one entry
  return device.Enter(kEntry, reinterpret_cast<const hdi::EXTLOGPEN32*>(record.data()));
}

int32_t PolyPolygon::MakeOn(OpenDevice& device) const {
  auto& [counts, points] = device.CallBuffers();
  counts.clear();
  points.clear();
  for (const auto& polygon : polygons) {
    points.insert(points.end(), polygon.begin(), polygon.end());
    counts.push_back(static_cast<uint32_t>(polygon.size()));
  }
  return device.Enter(kEntry, points.data(), counts.data(), Count(polygons.size()));
}

int32_t SetClip::MakeOn(OpenDevice& device) const {
  std::vector<hdi::ClipPolygon> nodes(polygons ? polygons->size() : 0);
  for (size_t i = 0; i < nodes.size(); ++i) {
    const auto& polygon = (*polygons)[i];
    const bool isLast = i + 1 == nodes.size();
    nodes[i] = {isLast ? apply : 0, isLast ? nullptr : &nodes[i + 1], Count(polygon.size()), polygon.data()};
  }
  return device.Enter(kEntry, nodes.empty() ? nullptr : nodes.data());
}

// The driver copies the name to a buffer of 1024 units and ends the process when it does not fit.
std::string SetLayer::Problem() const { return name.size() < 1024 ? "" : "name: has more than 1023 units"; }

std::string Text::Problem() const {
  if (advances == nullptr || advances->size() == text.size()) return "";
  return "advances: has " + std::to_string(advances->size()) + " numbers, but text has " +
         std::to_string(text.size()) + " units";
}

int32_t Text::MakeOn(OpenDevice& device) const {
  // An empty text may have advances, too: they need an address.
  static constexpr double kNoAdvances = 0;
  const double* given = nullptr;
  if (advances != nullptr) given = advances->empty() ? &kNoAdvances : advances->data();
  return device.Enter(kEntry, &font, &position, text.data(), Count(text.size()), given, textHeight,
                      obliqueAngle, trackingFactor, widthFactor);
}

}  // namespace hdiplot::call
