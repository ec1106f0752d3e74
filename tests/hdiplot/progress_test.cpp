// The progress bar on a terminal.
#include "host/hdiplot/progress.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <thread>

namespace hdiplot {
namespace {

// Standard error as a terminal, whose screen the test reads.
class Terminal {
 public:
  Terminal() : before_(dup(STDERR_FILENO)) {
    int slave = 0;
    if (openpty(&screen_, &slave, nullptr, nullptr, nullptr) != 0) throw std::runtime_error("no terminal");
    fcntl(screen_, F_SETFL, O_NONBLOCK);
    std::fflush(stderr);
    dup2(slave, STDERR_FILENO);
    close(slave);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() {
    dup2(before_, STDERR_FILENO);
    close(before_);
    close(screen_);
  }

  // What has been written since the last call.
  [[nodiscard]] std::string Take() const {
    char text[4096];
    const ssize_t size = read(screen_, text, sizeof text);
    return size > 0 ? std::string(text, static_cast<size_t>(size)) : "";
  }

 private:
  int before_;
  int screen_ = -1;
};

TEST(ProgressBar, ShowsAfterHalfASecondAndIsErased) {
  const Terminal terminal;
  Progress progress;
  progress.Start(1000);
  for (uint64_t i = 0; i < 100; ++i) progress.Advance(i);
  EXPECT_EQ(terminal.Take(), "");
  std::this_thread::sleep_for(std::chrono::milliseconds(510));
  for (uint64_t i = 100; i <= 500; ++i) progress.Advance(i);
  EXPECT_THAT(terminal.Take(), testing::MatchesRegex("\r\\[####\\.+\\]  1[0-9] %"));
  progress.Finish();
  EXPECT_EQ(terminal.Take(), "\r\x1b[K");

  Progress off(ProgressDisplay::kOff);
  std::this_thread::sleep_for(std::chrono::milliseconds(510));
  off.Start(1);
  off.Advance(1);
  EXPECT_EQ(terminal.Take(), "");
}

}  // namespace
}  // namespace hdiplot
