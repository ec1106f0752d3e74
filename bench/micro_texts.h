// Texts of 20 characters in a device's command list.
#pragma once

#include <algorithm>

#include "bench/scene.h"
#include "bench/text_fonts.h"
#include "driver/pdf_driver.h"
#include "recording/plot_entries.h"
#include "recording/plot_job.h"

namespace bench {

[[nodiscard]] inline Scene MakeTexts(size_t count) {
  constexpr size_t kLength = 20;
  constexpr double kAll = 10'000;  // texts in the whole scene
  Scene scene = MakeScene("texts", static_cast<double>(count) / kAll);
  for (Text& text : scene.texts) text.units.resize(kLength, u'0');
  return scene;
}

// A device that is open until this is destroyed.
class TextDevice {
 public:
  TextDevice() {
    device_.driver = &driver_;
    driver_.OpenDevice(&device_);
  }
  TextDevice(const TextDevice&) = delete;
  TextDevice& operator=(const TextDevice&) = delete;
  ~TextDevice() { driver_.CloseDevice(&device_); }

  [[nodiscard]] hdi::PlotJob& Job() { return *device_.job; }
  [[nodiscard]] const hdi::DriverDevMode& Settings() { return *driver_.GetDevModePointer(); }

  // `layout` must be that of the same scene.
  void AddTexts(const Scene& scene, const TextFonts& layout) {
    for (size_t i = 0; i < scene.texts.size(); ++i) {
      const Text& text = scene.texts[i];
      hdi::LOGFONTW font{};
      std::ranges::copy(scene.families[text.font], font.lfFaceName);
      font.lfEscapement = text.angle;
      const hdi::HT_Double_Point start = {text.start.x, text.start.y};
      hdi::DevText(&device_, &font, &start, text.units.data(), static_cast<int32_t>(text.units.size()),
                   layout.Advances(i).data(), text.height, 0, 1, 1);
    }
  }

 private:
  hdi::CPDFDriver driver_{u"bench"};
  hdi::HostDevice device_{};
};

}  // namespace bench
