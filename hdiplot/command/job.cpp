// A job from its settings to the finished file.
#include "hdiplot/command/job.h"

#include <fmt/format.h>

#include <exception>
#include <stdexcept>
#include <string>

#include "hdiplot/system/output_file.h"
#include "hdiplot/command/preview.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/paths.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace {

namespace fs = std::filesystem;

void SetUpDriver(hdi::HT_Driver& driver, const JobSettings& settings, bool open) {
  hdi::DriverDevMode* record = driver.GetDevModePointer();
  WriteField(DevModeSetting("openAfterPlot", 0), record);
  for (const FieldSetting& setting : settings.devMode) WriteField(setting, record);
  if (open) WriteField(DevModeSetting("openAfterPlot", 1), record);
  if (const auto& paper = settings.customPaper) {
    driver.SetCustomPaper(paper->name.c_str(), paper->width, paper->height, paper->left, paper->right,
                          paper->top, paper->bottom);
  }
}

}  // namespace

Job::Job(hdi::HT_Driver& driver, const JobSettings& settings, const CommandLine& line) {
  const auto output = line.output ? std::optional(hdi::ToUtf16(*line.output)) : settings.output;
  file_ = DriverOutput(output, settings.defaultOutput);
  CheckFiles(line);
  if (line.record) recorder_.emplace(*line.record);

  if (line.verbosity == Verbosity::kVerbose) {
    PrintLine(stderr,
              fmt::format("device \"{}\" of {}", hdi::ToUtf8(driver.GetName()), PathText(line.module)));
  }
  SetUpDriver(driver, settings, line.open);
  device_.emplace(driver);
  if (device_->StartDoc(settings.docName, output, settings.defaultOutput) == 0) {
    const std::string name = file_ ? PathText(*file_) + ": " : "";
    throw std::runtime_error(name + "the driver did not start the document");
  }
  device_->Make(call::SetLineScale{settings.lineScale});
  if (recorder_) {
    recorder_->WriteJob(settings);
    device_->SetListener(*recorder_);
  }
}

void Job::CheckFiles(const CommandLine& line) const {
  if (file_ && file_->empty()) {
    throw std::runtime_error(
        "no output file: give one with -o, or as output or defaultOutput in the job line");
  }
  for (const fs::path& input : line.inputs) {
    if (file_ && LeadToSameFile(*file_, input)) throw FileError(input, 0, "is the input and the output");
    if (line.record && LeadToSameFile(*line.record, input))
      throw FileError(input, 0, "is the input and the record");
  }
  if (file_ && line.record && LeadToSameFile(*file_, *line.record)) {
    throw FileError(*file_, 0, "is the output and the record");
  }
  if (line.preview) CheckPreview(line);
  if (file_) RequireWritable(*file_);
}

void Job::CheckPreview(const CommandLine& line) const {
  const fs::path& preview = *line.preview;
  if (!file_) throw std::runtime_error("--preview needs an output file: give one with -o");
  if (LeadToSameFile(preview, *file_)) throw FileError(preview, 0, "is the output and the preview");
  if (line.record && LeadToSameFile(preview, *line.record)) {
    throw FileError(preview, 0, "is the record and the preview");
  }
  for (const fs::path& input : line.inputs) {
    if (LeadToSameFile(preview, input)) throw FileError(preview, 0, "is the input and the preview");
  }
  RequireWritable(preview);
}

void Job::Finish() {
  summary_.pages = device_->PageCount();
  summary_.objects = device_->ObjectCount();
  try {
    device_->EndDoc();
  } catch (const std::exception& error) {
    // A write that fails otherwise than for a full disk.
    throw std::runtime_error((file_ ? PathText(*file_) + ": " : "") + "cannot be written: " + error.what());
  }
  device_.reset();
  if (file_) {
    RequireComplete(*file_);
    summary_.file = *file_;
    summary_.bytes = fs::file_size(*file_);
  }
}

void Job::FinishRecord() {
  if (recorder_) recorder_->Finish();
}

void Job::FinishPreview(const CommandLine& line) const {
  if (line.preview) WritePreview(*file_, *line.preview, line.previewDpi);
}

ExitStatus Conclude(Job& job, const CommandLine& line, Clock::time_point start, Progress& progress) {
  job.Finish();
  progress.Finish();
  ExitStatus status = ExitStatus::kDone;
  const auto finish = [&status](const auto& step) {
    try {
      step();
    } catch (const FileError& error) {
      PrintError(error.what());
      status = ExitStatus::kPartlyDone;
    }
  };
  finish([&] { job.FinishRecord(); });
  finish([&] { job.FinishPreview(line); });
  PlotSummary summary = job.Summary();
  summary.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  if (std::FILE* stream = SummaryStream(line)) PrintLine(stream, FormatSummary(summary));
  return status;
}

std::FILE* SummaryStream(const CommandLine& line) {
  if (line.verbosity == Verbosity::kQuiet) return nullptr;
  return line.results ? stderr : stdout;
}

}  // namespace hdiplot
