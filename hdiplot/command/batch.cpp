// A PDF for each drawing. Each is plotted by a process of its own: the driver has one job at a time, and what
// ends one process does not end the others.
#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <mutex>
#include <set>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "hdiplot/command/options.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/system/child_process.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/paths.h"
#include "hdiplot/system/process.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

volatile std::sig_atomic_t interruption = 0;  // the signal that asked to stop

extern "C" void Interrupt(int signal) { interruption = signal; }

struct BatchItem {
  fs::path drawing;
  fs::path pdf;
};

class Batch {
 public:
  Batch(const CommandLine& line, const std::vector<std::string>& words) : line_(line), words_(words) {
    std::set<fs::path> names;
    for (const fs::path& drawing : line.inputs) {
      items_.push_back({drawing, line.outputDirectory / drawing.filename().replace_extension(".pdf")});
      if (!names.insert(items_.back().pdf).second) {
        throw FileError(drawing, 0,
                        "would be plotted to " + PathText(items_.back().pdf) + " like another drawing");
      }
    }
  }

  void Run() {
    const size_t count = std::min<size_t>(line_.jobs, items_.size());
    std::vector<std::thread> threads;
    threads.reserve(count);
    for (size_t i = 0; i < count; ++i) threads.emplace_back([this] { Work(); });
    for (std::thread& thread : threads) thread.join();
  }

  [[nodiscard]] ExitStatus Conclude() const {
    if (line_.verbosity != Verbosity::kQuiet) PrintLine(stdout, Summary());
    if (plotted_ + upToDate_ == 0) return ExitStatus::kNothingDone;
    return failed_ + partly_ == 0 ? ExitStatus::kDone : ExitStatus::kPartlyDone;
  }

 private:
  // "12 plotted, 1 of them in part, 1 failed"
  [[nodiscard]] std::string Summary() const {
    std::string summary = fmt::format("{} plotted", plotted_);
    if (partly_ > 0) summary += fmt::format(", {} of them in part", partly_);
    if (upToDate_ > 0) summary += fmt::format(", {} up to date", upToDate_);
    if (failed_ > 0) summary += fmt::format(", {} failed", failed_);
    return summary;
  }

  void Work() {
    for (size_t i = next_++; i < items_.size() && interruption == 0; i = next_++) Plot(items_[i]);
  }

  void Plot(const BatchItem& item) {
    if (line_.newer && IsUpToDate(item)) {
      const std::lock_guard lock(mutex_);
      ++upToDate_;
      return;
    }
    // Under a name of its own until it is whole.
    fs::path part = item.pdf;
    part.replace_extension(".part.pdf");
    std::vector<std::string> words = words_;
    for (const std::string& word :
         {std::string("--plot-one"), PathText(item.drawing), std::string("--plot-to"), PathText(part)})
      words.push_back(word);
    ChildRun run;
    try {
      run = RunChild(ExecutableFile(), words);
      if (run.status == 0 || run.status == 1) fs::rename(part, item.pdf);
    } catch (const std::system_error& error) {
      run = {static_cast<int>(ExitStatus::kNothingDone), "",
             fmt::format("hdiplot: {}: {}\n", PathText(item.pdf), error.what()), false};
    }
    std::error_code ignored;
    fs::remove(part, ignored);
    Report(item, part, run);
  }

  static bool IsUpToDate(const BatchItem& item) {
    std::error_code error;
    const auto plotted = fs::last_write_time(item.pdf, error);
    return !error && plotted >= fs::last_write_time(item.drawing, error) && !error;
  }

  void Report(const BatchItem& item, const fs::path& part, const ChildRun& run) {
    if (interruption != 0 && run.status != 0) return;
    const std::lock_guard lock(mutex_);
    plotted_ += run.status == 0 || run.status == 1 ? 1 : 0;
    partly_ += run.status == 1 ? 1 : 0;
    failed_ += run.status != 0 && run.status != 1 ? 1 : 0;
    PrintLines(stderr, run.messages, part, item.pdf);
    PrintLines(stdout, run.output, part, item.pdf);
    if (run.status < 0) {
      PrintError(fmt::format("{}: plotting was ended by signal {}", PathText(item.drawing), -run.status));
    }
  }

  // The process has named the part.
  static void PrintLines(std::FILE* stream, std::string text, const fs::path& part, const fs::path& pdf) {
    const std::string name = PathText(part);
    for (size_t at = text.find(name); at != std::string::npos; at = text.find(name, at)) {
      text.replace(at, name.size(), PathText(pdf));
    }
    if (text.ends_with('\n')) text.pop_back();
    size_t begin = 0;
    while (!text.empty() && begin <= text.size()) {
      const size_t end = std::min(text.find('\n', begin), text.size());
      PrintLine(stream, std::string_view(text).substr(begin, end - begin));
      begin = end + 1;
    }
  }

  const CommandLine& line_;
  const std::vector<std::string>& words_;
  std::vector<BatchItem> items_;
  std::atomic<size_t> next_ = 0;
  std::mutex mutex_;
  size_t plotted_ = 0;
  size_t partly_ = 0;
  size_t upToDate_ = 0;
  size_t failed_ = 0;
};

}  // namespace

ExitStatus PlotEach(const CommandLine& line, const std::vector<std::string>& words) {
  std::error_code error;
  fs::create_directories(line.outputDirectory, error);
  if (error) throw FileError(line.outputDirectory, 0, "cannot be created: " + error.message());
  Batch batch(line, words);
  // The processes of a terminal's group get the signal, too; this one waits for them and removes their parts.
  for (const int signal : {SIGINT, SIGTERM}) std::signal(signal, &Interrupt);
  batch.Run();
  if (interruption != 0) {
    std::signal(interruption, SIG_DFL);
    std::raise(interruption);
  }
  return batch.Conclude();
}

}  // namespace hdiplot
