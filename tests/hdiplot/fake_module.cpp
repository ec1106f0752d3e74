// A driver module that plots nothing and writes down what reaches it: one line a call to $FAKE_LOG, with
// every argument as the entry received it. Its output files hold just enough to pass for a PDF.
//
// $FAKE_REFUSE makes it refuse documents, $FAKE_TRUNCATE leaves the output without its end, $FAKE_THROW fails
// while the document is written.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/border.h"
#include "platform/unicode.h"

namespace {

using hdi::HostDevice;
using hdi::HT_Double_Point;

void Write(const std::string& line) {
  const char* file = std::getenv("FAKE_LOG");
  if (file == nullptr) return;
  std::FILE* stream = std::fopen(file, "a");
  fmt::print(stream, "{}\n", line);
  std::fclose(stream);
}

std::string Text(const char16_t* text) {
  return text == nullptr ? "null" : "'" + hdi::ToUtf8(std::u16string_view(text)) + "'";
}

std::string Point(const HT_Double_Point& point) { return fmt::format("({} {})", point.x, point.y); }

std::string AllPoints(const HT_Double_Point* points, int64_t count) {
  std::string text;
  for (int64_t i = 0; i < count; ++i) text += Point(points[i]);
  return fmt::format("{}:{}", count, text);
}

std::string Hex(const void* data, size_t size) {
  const auto* bytes = static_cast<const uint8_t*>(data);
  return fmt::format("{:02x}", fmt::join(bytes, bytes + size, ""));
}

std::string Record(const hdi::DriverDevMode* record) {
  if (record == nullptr) return "null";
  return fmt::format("quality {} orientation {} paper {} background {} open {} fractions {}",
                     record->dm.dmPrintQuality, record->dm.dmOrientation, record->dm.dmPaperSize,
                     record->backgroundColor, record->openAfterPlot, record->keepFractions);
}

// What the job needs to know from one call to the next.
std::string outputFile;
std::vector<const hdi::HostImageRecord*> images;

int32_t StartDoc(HostDevice* device, const hdi::DOCINFOW* document) {
  Write(fmt::format("19 StartDoc {} {} {}", Text(document->lpszDocName),
                    document->lpszOutput == nullptr ? "null" : "output", Text(device->defaultOutput)));
  if (std::getenv("FAKE_REFUSE") != nullptr) return 0;
  const bool isDefault = document->lpszOutput == nullptr;
  outputFile = hdi::ToUtf8(isDefault ? device->defaultOutput : document->lpszOutput);
  if (!isDefault && !outputFile.ends_with(".pdf")) outputFile += ".pdf";
  std::fclose(std::fopen(outputFile.c_str(), "w"));
  images.clear();
  return 1;
}

int32_t EndDoc(HostDevice*) {
  Write("20 EndDoc");
  // The rasters are alive only if the host has kept them.
  for (const hdi::HostImageRecord* image : images) {
    hdi::RasterImage* raster = image->image;
    const hdi::BITMAPINFOHEADER* header = raster->GetImageHeader();
    const auto rows = static_cast<size_t>(std::abs(header->biHeight));
    const auto rowBytes = (static_cast<size_t>(header->biWidth) * header->biBitCount + 31) / 32 * 4;
    Write(fmt::format("raster {} {} {} {} alpha {} palette {} pixels {}", raster->GetPixelWidth(),
                      raster->GetPixelHeight(), header->biBitCount, header->biClrUsed,
                      raster->HasAlphaChannel(), Hex(header + 1, header->biClrUsed * size_t{4}),
                      Hex(raster->GetPixelBits(), rows * rowBytes)));
  }
  if (std::getenv("FAKE_THROW") != nullptr) throw std::runtime_error("the cable is out");
  std::FILE* stream = std::fopen(outputFile.c_str(), "w");
  std::fputs(std::getenv("FAKE_TRUNCATE") != nullptr ? "%PDF-1.7\n" : "%PDF-1.7\n%%EOF\n", stream);
  std::fclose(stream);
  return 1;
}

uint32_t GetCaps(HostDevice*, int32_t index) {
  Write(fmt::format("18 GetCaps {}", index));
  return 4000000000U;
}

int32_t StartPage(HostDevice*, const hdi::DriverDevMode* record) {
  Write("21 StartPage " + Record(record));
  return 1;
}

int32_t Arc(HostDevice*, const HT_Double_Point* center, double a, double b, double c, double d, double e) {
  Write(fmt::format("25 Arc {} {} {} {} {} {}", Point(*center), a, b, c, d, e));
  return 1;
}

int32_t PolyPolygon(HostDevice*, const HT_Double_Point* points, const uint32_t* counts, int32_t polygons) {
  std::string text = fmt::format("28 PolyPolygon {}", polygons);
  for (int32_t i = 0; i < polygons; points += counts[i], ++i) text += " " + AllPoints(points, counts[i]);
  Write(text);
  return 1;
}

int32_t SetPen(HostDevice*, const hdi::EXTLOGPEN32* pen) {
  const auto* words = reinterpret_cast<const uint32_t*>(pen);
  Write(fmt::format("38 SetPen {}", fmt::join(words, words + 6 + pen->elpNumEntries, " ")));
  return 1;
}

int32_t SetBrush(HostDevice*, const hdi::LOGBRUSH* brush) {
  Write(fmt::format("39 SetBrush {} {:x} {}", brush->lbStyle, brush->lbColor, brush->lbHatch));
  return 1;
}

int32_t SetClip(HostDevice*, const hdi::ClipPolygon* node) {
  std::string text = "43 SetClip";
  for (; node != nullptr; node = node->next) {
    text += " " + AllPoints(node->points, node->count);
    if (node->next == nullptr) text += fmt::format(" apply {}", node->apply);
  }
  Write(text);
  return -7;
}

int32_t TextRun(HostDevice*, const hdi::LOGFONTW* font, const HT_Double_Point* position, const char16_t* text,
                int32_t count, const double* advances, double height, double oblique, double tracking,
                double width) {
  Write(fmt::format(
      "48 Text {} {} {} {} {} {} {} {} {} {}", Hex(font, offsetof(hdi::LOGFONTW, lfFaceName)),
      Text(font->lfFaceName), Point(*position), Hex(text, static_cast<size_t>(count) * 2), count,
      advances == nullptr ? "null" : fmt::format("[{}]", fmt::join(advances, advances + count, " ")), height,
      oblique, tracking, width));
  return 1;
}

int32_t SetLayer(HostDevice*, int64_t reserved, const char16_t* name) {
  Write(fmt::format("50 SetLayer {} {}", reserved, Text(name)));
  return 1;
}

int32_t Bitmap(HostDevice*, const hdi::HostImageRecord* image) {
  Write(fmt::format("51 Bitmap {} {} {} {}", image->originX, image->originY, image->scaleX, image->scaleY));
  images.push_back(image);
  return 1;
}

int32_t ShxComment(HostDevice*, const char16_t* text, const int32_t* rect, uint32_t flags) {
  Write(fmt::format("58 ShxComment {} {} {}", Text(text), fmt::join(rect, rect + 4, " "), flags));
  return 1;
}

// Entries of one form at several positions.
template <int position>
int32_t Plain(HostDevice*) {
  Write(fmt::format("{}", position));
  return 1;
}

template <int position>
int32_t WithPoints(HostDevice*, const HT_Double_Point* points, int32_t count) {
  Write(fmt::format("{} points {}", position, AllPoints(points, count)));
  return 1;
}

template <int position, typename T>
int32_t WithNumber(HostDevice*, T number) {
  Write(fmt::format("{} number {}", position, number));
  return 1;
}

template <int position>
int32_t WithText(HostDevice*, const char16_t* text) {
  Write(fmt::format("{} text {}", position, Text(text)));
  return 1;
}

class FakeDriver final : public hdi::HT_Driver {
 public:
  explicit FakeDriver(const char16_t* name) : name_(name) {
    record_.dm.dmSize = sizeof(hdi::DEVMODEW);
    record_.dm.dmDriverExtra = sizeof record_ - sizeof(hdi::DEVMODEW);
    record_.dm.dmPrintQuality = 600;
    record_.openAfterPlot = 1;
  }
  virtual ~FakeDriver() = default;

  int32_t QueryInterface(const hdi::GUID&, hdi::HT_Driver**) override { return 0; }
  const char16_t* GetName() override { return name_; }
  const char16_t* GetModuleName() override { return u"fake"; }
  const char16_t* GetVersion() override { return u"0"; }
  int32_t ShowProperties(void*) override { return 1; }
  int32_t ReservedA() override { return 1; }
  int32_t SetDevMode(void*) override { return 1; }
  int32_t GetDevMode(void*) override { return 1; }
  int32_t ReservedB() override { return 1; }
  int32_t ReservedC() override { return 1; }

  int32_t OpenDevice(HostDevice* device) override {
    Write("OpenDevice " + hdi::ToUtf8(name_) + " " + Record(&record_));
    device->table = &table_;
    FillTable();
    return 1;
  }

  int32_t CloseDevice(HostDevice*) override {
    Write("CloseDevice");
    return 1;
  }

  void* GetDefaultDevMode() override { return nullptr; }
  int32_t DeviceCapabilities(uint16_t, uint8_t*, hdi::DriverDevMode*) override { return 0; }
  int32_t CreatePaper(const hdi::PaperSize&, int32_t*, hdi::DriverDevMode*) override { return 1; }

  int32_t SetCustomPaper(const char16_t* name, double width, double height, double left, double right,
                         double top, double bottom) override {
    Write(fmt::format("SetCustomPaper {} {} {} {} {} {} {}", Text(name), width, height, left, right, top,
                      bottom));
    return 1;
  }

  int32_t ModifyPaper(const hdi::PaperSize&, int32_t*, hdi::DriverDevMode*) override { return 1; }
  int32_t DeletePaper(int32_t) override { return 1; }
  int32_t ReservedD() override { return 0; }
  int32_t SetOption(uint32_t, int64_t) override { return 1; }
  void ReservedE() override {}
  uint32_t GetBackgroundColor() override { return 0; }
  void NormalizeDevMode(hdi::DriverDevMode*) override {}
  const char16_t* GetPaperFile() override { return u""; }
  hdi::DriverDevMode* GetDevModePointer() override { return &record_; }

  hdi::HT_Driver* Destroy(uint32_t) override {
    Write("Destroy " + hdi::ToUtf8(name_));
    delete this;
    return nullptr;
  }

 private:
  template <typename Function>
  void Set(int position, Function* function) {
    table_.positions[position] = reinterpret_cast<hdi::DeviceTable::Entry>(function);
  }

  void FillTable() {
    Set(18, GetCaps);
    Set(19, StartDoc);
    Set(20, EndDoc);
    Set(21, StartPage);
    Set(22, Plain<22>);
    Set(25, Arc);
    Set(26, WithPoints<26>);
    Set(27, WithPoints<27>);
    Set(28, PolyPolygon);
    Set(29, WithPoints<29>);
    Set(30, Plain<30>);
    Set(31, Plain<31>);
    Set(32, Plain<32>);
    Set(33, Plain<33>);
    Set(34, WithNumber<34, uint32_t>);
    Set(35, WithText<35>);
    Set(36, Plain<36>);
    Set(37, WithNumber<37, uint32_t>);
    Set(38, SetPen);
    Set(39, SetBrush);
    Set(42, WithNumber<42, uint32_t>);
    Set(43, SetClip);
    Set(48, TextRun);
    Set(50, SetLayer);
    Set(51, Bitmap);
    Set(52, WithNumber<52, double>);
    Set(58, ShxComment);
  }

  const char16_t* name_;
  hdi::DriverDevMode record_{};
  hdi::DeviceTable table_{};
};

}  // namespace

extern "C" __attribute__((visibility("default"))) int64_t IT_Driver(uint64_t code, void* context) {
  if (code == hdi::kCreateDrivers) {
    auto* list = static_cast<hdi::HostDriverList*>(context);
    list->AddDriver(new FakeDriver(u"First"));
    list->AddDriver(new FakeDriver(u"Zweites Gerät"));
  } else if (code == hdi::kReleaseDriver) {
    auto* release = static_cast<hdi::DriverRelease*>(context);
    release->driver->Destroy(1);
    release->list->RemoveDriver(release->driver);
  }
  return 1;
}
