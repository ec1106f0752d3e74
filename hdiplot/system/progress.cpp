// Reads the clock only after every hundredth of the stage.
#include "hdiplot/system/progress.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "hdiplot/system/process.h"

namespace hdiplot {

namespace {

constexpr auto kDelay = std::chrono::milliseconds(500);
constexpr auto kInterval = std::chrono::milliseconds(100);
constexpr uint64_t kCells = 40;

void WriteToTerminal(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

}  // namespace

Progress::Progress(ProgressDisplay display)
    : enabled_(display == ProgressDisplay::kAuto && StandardErrorIsTerminal()),
      nextDraw_(Clock::now() + kDelay) {}

Progress::~Progress() { Finish(); }

void Progress::Start(uint64_t total) {
  total_ = total;
  nextLook_ = 0;
}

void Progress::Look(uint64_t done) {
  nextLook_ = done + std::max<uint64_t>(1, total_ / 100);
  const Clock::time_point now = Clock::now();
  if (now < nextDraw_) return;
  nextDraw_ = now + kInterval;
  const double part =
      total_ == 0 ? 1.0 : std::min(1.0, static_cast<double>(done) / static_cast<double>(total_));
  const auto filled = static_cast<uint64_t>(part * kCells);
  WriteToTerminal(fmt::format("\r[{}{}] {:3.0f} %", std::string(filled, '#'),
                              std::string(kCells - filled, '.'), part * 100));
  shown_ = true;
}

void Progress::Finish() {
  if (shown_) WriteToTerminal("\r\x1b[K");
  shown_ = false;
}

}  // namespace hdiplot
