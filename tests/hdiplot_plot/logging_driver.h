// A driver without a document: it keeps the calls that reach the device, so that tests see what was plotted.
#pragma once

#include <string>
#include <vector>

#include "host/hdiplot/plot/plot_drawing.h"
#include "platform/border.h"

namespace hdiplot {

struct LoggedCall {
  std::string name;
  std::vector<std::vector<hdi::HT_Double_Point>> points;  // one list for most calls; an arc's centre
  std::vector<double> numbers;                            // an arc's five, a fill mode
  Pen pen;
  Rgb brush;
};

// At 254 dots per inch, ten dots a millimetre, and with a printable area of 2000 by 3000 dots; so a tenth of
// a millimetre is a dot.
class LoggingDriver final : public hdi::HT_Driver {
 public:
  LoggingDriver();
  virtual ~LoggingDriver() = default;  // behind the slots that the host knows

  std::vector<LoggedCall> calls;

  int32_t QueryInterface(const hdi::GUID&, hdi::HT_Driver**) override { return 0; }
  const char16_t* GetName() override { return u"log"; }
  const char16_t* GetModuleName() override { return u""; }
  const char16_t* GetVersion() override { return u""; }
  int32_t ShowProperties(void*) override { return 0; }
  int32_t ReservedA() override { return 0; }
  int32_t SetDevMode(void*) override { return 0; }
  int32_t GetDevMode(void*) override { return 0; }
  int32_t ReservedB() override { return 0; }
  int32_t ReservedC() override { return 0; }
  int32_t OpenDevice(hdi::HostDevice* device) override;
  int32_t CloseDevice(hdi::HostDevice*) override { return 1; }
  void* GetDefaultDevMode() override { return nullptr; }
  int32_t DeviceCapabilities(uint16_t, uint8_t*, hdi::DriverDevMode*) override { return 0; }
  int32_t CreatePaper(const hdi::PaperSize&, int32_t*, hdi::DriverDevMode*) override { return 0; }
  int32_t SetCustomPaper(const char16_t*, double, double, double, double, double, double) override {
    return 0;
  }
  int32_t ModifyPaper(const hdi::PaperSize&, int32_t*, hdi::DriverDevMode*) override { return 0; }
  int32_t DeletePaper(int32_t) override { return 0; }
  int32_t ReservedD() override { return 0; }
  int32_t SetOption(uint32_t, int64_t) override { return 0; }
  void ReservedE() override {}
  uint32_t GetBackgroundColor() override { return 0; }
  void NormalizeDevMode(hdi::DriverDevMode*) override {}
  const char16_t* GetPaperFile() override { return u""; }
  hdi::DriverDevMode* GetDevModePointer() override { return &record_; }
  hdi::HT_Driver* Destroy(uint32_t) override { return this; }

 private:
  hdi::DriverDevMode record_{};
  hdi::DeviceTable table_{};
};

// The calls that plotting `drawing` makes.
[[nodiscard]] std::vector<LoggedCall> PlotToLog(const Drawing& drawing, const PlotOptions& options = {});

// A drawing of one unit a dot on the logging driver's sheet: plotted with OneToOne(), unit (x, y) comes to
// the dot (x, 3000 - y), since it has points in two corners of the sheet; and nothing else yet.
[[nodiscard]] Drawing SheetDrawing();
[[nodiscard]] PlotOptions OneToOne();

// The calls behind those for the points in the corners.
[[nodiscard]] std::vector<LoggedCall> PlotOnSheet(const Drawing& drawing,
                                                  const PlotOptions& options = OneToOne());

// The calls of one name.
[[nodiscard]] std::vector<LoggedCall> Named(const std::vector<LoggedCall>& calls, const std::string& name);

[[nodiscard]] Entity Thing(Shape shape, const std::string& layer = "0");

}  // namespace hdiplot
