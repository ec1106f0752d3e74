// The progress bar on standard error, for jobs that take a while.
#pragma once

#include <chrono>
#include <cstdint>

namespace hdiplot {

enum class ProgressDisplay { kAuto, kOff };

// Shows nothing until half a second after it was made, nor ever when standard error is no terminal or the
// display is off. The bar stays when a stretch is done, until Finish or the destructor erases it.
class Progress {
 public:
  explicit Progress(ProgressDisplay display = ProgressDisplay::kAuto);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  // Begins a stretch of `total` steps.
  void Start(uint64_t total);

  // Tells that `done` steps of the stretch are behind us. Cheap enough for every entity of a drawing.
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
