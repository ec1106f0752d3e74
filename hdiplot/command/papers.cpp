// Asking the driver for its papers.
#include "hdiplot/command/papers.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "hdiplot/command/plot_commands.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/device/module.h"
#include "hdiplot/system/ascii_case.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

// The host's capability that gives whole PaperSize records.
constexpr uint16_t kPaperRecords = 19;

}  // namespace

std::vector<hdi::PaperSize> PapersOf(hdi::HT_Driver& driver) {
  hdi::DriverDevMode* record = driver.GetDevModePointer();
  const int32_t count = driver.DeviceCapabilities(kPaperRecords, nullptr, record);
  if (count < 1) return {};
  std::vector<hdi::PaperSize> papers(static_cast<size_t>(count));
  driver.DeviceCapabilities(kPaperRecords, reinterpret_cast<uint8_t*>(papers.data()), record);
  return papers;
}

std::string NameOf(const hdi::PaperSize& paper) {
  const std::u16string_view units(paper.name, std::size(paper.name));
  return hdi::ToUtf8(units.substr(0, units.find(u'\0')));
}

const hdi::PaperSize* FindPaper(const std::vector<hdi::PaperSize>& papers, std::string_view name) {
  const auto found = std::ranges::find_if(
      papers, [name](const hdi::PaperSize& paper) { return EqualWithoutCase(NameOf(paper), name); });
  return found == papers.end() ? nullptr : &*found;
}

ExitStatus ListPapers(const CommandLine& line) {
  const Module module(line.module);
  hdi::HT_Driver& driver = module.Driver(hdi::ToUtf16(line.device));
  for (const hdi::PaperSize& paper : PapersOf(driver)) {
    PrintLine(stdout,
              fmt::format("{:<20} {} x {} mm", NameOf(paper), paper.width / 10.0, paper.height / 10.0));
  }
  return ExitStatus::kDone;
}

}  // namespace hdiplot
