// A driver module that plots nothing and logs the steps of a job to $FAKE_LOG. Its output files contain just
// enough to be taken for a PDF.
//
// $FAKE_REFUSE makes it refuse documents, $FAKE_TRUNCATE leaves the output without its end, $FAKE_THROW fails
// while the document is written.
#include <fmt/format.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/unicode.h"
#include "tests/hdiplot/plain_driver.h"

namespace {

using hdi::HostDevice;
using hdi::Position;

void Write(const std::string& line) { std::ofstream(std::getenv("FAKE_LOG"), std::ios::app) << line << '\n'; }

std::string Text(const char16_t* text) {
  return text == nullptr ? "null" : "'" + hdi::ToUtf8(std::u16string_view(text)) + "'";
}

std::string Record(const hdi::DriverDevMode* record) {
  if (record == nullptr) return "null";
  return fmt::format("quality {} orientation {} paper {} background {} open {} fractions {}",
                     record->dm.dmPrintQuality, record->dm.dmOrientation, record->dm.dmPaperSize,
                     record->backgroundColor, record->openAfterPlot, record->keepFractions);
}

std::string outputFile;

int32_t StartDoc(HostDevice* device, const hdi::DOCINFOW* document) {
  Write(fmt::format("StartDoc {} {} {}", Text(document->lpszDocName),
                    document->lpszOutput == nullptr ? "null" : "output", Text(device->defaultOutput)));
  if (std::getenv("FAKE_REFUSE") != nullptr) return 0;
  const bool isDefault = document->lpszOutput == nullptr;
  outputFile = hdi::ToUtf8(isDefault ? device->defaultOutput : document->lpszOutput);
  if (!isDefault && !outputFile.ends_with(".pdf")) outputFile += ".pdf";
  std::ofstream(outputFile).flush();
  return 1;
}

int32_t EndDoc(HostDevice*) {
  Write("EndDoc");
  if (std::getenv("FAKE_THROW") != nullptr) throw std::runtime_error("the cable is out");
  std::ofstream(outputFile) << (std::getenv("FAKE_TRUNCATE") != nullptr ? "%PDF-1.7\n" : "%PDF-1.7\n%%EOF\n");
  return 1;
}

int32_t StartPage(HostDevice*, const hdi::DriverDevMode* record) {
  Write("StartPage " + Record(record));
  return 1;
}

class FakeDriver final : public PlainDriver {
 public:
  explicit FakeDriver(const char16_t* name) : name_(name) {
    record.dm.dmSize = sizeof(hdi::DEVMODEW);
    record.dm.dmDriverExtra = sizeof record - sizeof(hdi::DEVMODEW);
    record.dm.dmPrintQuality = 600;
    record.openAfterPlot = 1;
    Set(Position::kStartDoc, StartDoc);
    Set(Position::kEndDoc, EndDoc);
    Set(Position::kStartPage, StartPage);
  }

  const char16_t* GetName() override { return name_; }

  int32_t OpenDevice(HostDevice* device) override {
    Write("OpenDevice " + hdi::ToUtf8(name_) + " " + Record(&record));
    return PlainDriver::OpenDevice(device);
  }

  int32_t CloseDevice(HostDevice*) override {
    Write("CloseDevice");
    return 1;
  }

  int32_t SetCustomPaper(const char16_t* name, double width, double height, double left, double right,
                         double top, double bottom) override {
    Write(fmt::format("SetCustomPaper {} {} {} {} {} {} {}", Text(name), width, height, left, right, top,
                      bottom));
    return 1;
  }

  hdi::HT_Driver* Destroy(uint32_t) override {
    Write("Destroy " + hdi::ToUtf8(name_));
    delete this;
    return nullptr;
  }

 private:
  const char16_t* name_;
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
