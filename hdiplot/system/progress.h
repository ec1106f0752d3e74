// The progress bar on standard error.
#pragma once

#include <chrono>
#include <cstdint>

namespace hdiplot {

enum class ProgressDisplay { kAuto, kOff };

// Appears half a second after construction, and never when standard error is not a terminal or the display is
// off. Finish or the destructor erases it.
class Progress {
 public:
  explicit Progress(ProgressDisplay display = ProgressDisplay::kAuto);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  // Starts a stage of `total` steps.
  void Start(uint64_t total);

  // Sets the number of completed steps. Cheap enough for every entity of a drawing.
  void Advance(uint64_t done) {
    if (enabled_ && done >= nextLook_) Look(done);
  }

  void Finish();

 private:
  using Clock = std::chrono::steady_clock;

  void Look(uint64_t done);

  bool enabled_;
  bool shown_ = false;
  Clock::time_point nextDraw_;
  uint64_t total_ = 0;
  uint64_t nextLook_ = 0;
};

}  // namespace hdiplot
