#include "hdiplot/command/job.h"

#include <fmt/format.h>

#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "engine/preview.h"
#include "hdiplot/command/printing.h"
#include "hdiplot/image/png_encoder.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/output_file.h"
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

// Paints the first page of `pdf` into the PNG file `file`. Throws FileError when there is no such page, when
// it is too large, or when the file cannot be written.
void WritePreview(const fs::path& pdf, const fs::path& file, int dotsPerInch) {
  try {
    const hdi::engine::PagePicture page = hdi::engine::PaintFirstPage(pdf, dotsPerInch);
    const std::vector<uint8_t> png =
        EncodePng({page.width, page.height, page.stride, page.pixels}, dotsPerInch);
    FileReplacement replacement(file);
    replacement.Write({reinterpret_cast<const char*>(png.data()), png.size()});
    replacement.Commit();
  } catch (const hdi::engine::PreviewError& error) {
    throw FileError(pdf, 0, error.what());
  } catch (const std::bad_alloc&) {
    throw FileError(file, 0, "cannot be written: out of memory");
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
    Fail("the driver did not start the document");
  }
  device_->Make(call::SetLineScale{settings.lineScale});
  if (recorder_) {
    recorder_->WriteJob(settings);
    device_->SetListener(*recorder_);
  }
}

void Job::Fail(const std::string& problem) const {
  throw std::runtime_error((file_ ? PathText(*file_) + ": " : "") + problem);
}

void Job::CheckFiles(const CommandLine& line) const {
  if (file_ && file_->empty()) {
    throw std::runtime_error(
        "no output file: give one with -o, or as output or defaultOutput in the job line");
  }
  if (line.preview && !file_) throw std::runtime_error("--preview needs an output file: give one with -o");
  if (!file_ && (AsksForPass(line.finish) || line.bookmarks.value_or(false))) {
    throw std::runtime_error("changes to the finished PDF need an output file: give one with -o");
  }
  using Role = std::pair<const char*, fs::path>;
  std::vector<Role> written;
  if (file_) written.emplace_back("output", *file_);
  if (line.record) written.emplace_back("record", *line.record);
  if (line.preview) written.emplace_back("preview", *line.preview);
  const auto requireTwoFiles = [](const Role& a, const Role& b) {
    if (!LeadToSameFile(a.second, b.second)) return;
    throw FileError(a.second, 0, std::string("is the ") + a.first + " and the " + b.first);
  };
  for (size_t i = 0; i < written.size(); ++i) {
    for (const fs::path& input : line.inputs) requireTwoFiles({"input", input}, written[i]);
    for (size_t j = 0; j < i; ++j) requireTwoFiles(written[j], written[i]);
  }
  if (line.preview) RequireWritable(*line.preview);
  if (file_) RequireWritable(*file_);
}

void Job::Finish() {
  summary_.pages = device_->PageCount();
  summary_.objects = device_->ObjectCount();
  try {
    device_->EndDoc();
  } catch (const std::exception& error) {
    // A failed write other than for a full disk.
    Fail(std::string("cannot be written: ") + error.what());
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

std::FILE* SummaryStream(const CommandLine& line) {
  if (line.verbosity == Verbosity::kQuiet) return nullptr;
  return line.results ? stderr : stdout;
}

}  // namespace hdiplot
