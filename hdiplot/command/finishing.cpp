#include "hdiplot/command/finishing.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "hdiplot/command/printing.h"
#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/files.h"
#include "hdiplot/system/output_file.h"
#include "hdiplot/system/process.h"
#include "platform/unicode.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

// The first line of a file.
std::string PasswordIn(const fs::path& file) {
  constexpr size_t kLongest = 127;  // bytes (ISO 32000-2:2020, 7.6.4.3.3)
  const FileStream stream = OpenToRead(file);
  if (!stream) throw FileError(file, 0, std::string("cannot be read: ") + std::strerror(errno));
  std::string password;
  for (int c = std::fgetc(stream.get()); c != EOF && c != '\n' && c != '\r'; c = std::fgetc(stream.get())) {
    password += static_cast<char>(c);
    if (password.size() > kLongest) throw FileError(file, 1, "a password has 127 bytes at most");
  }
  if (password.empty()) throw FileError(file, 1, "has no password");
  return password;
}

std::string Password(const fs::path& file) {
  if (file != "-") return PasswordIn(file);
  const std::optional<std::string> password = AskForPassword("Password of the PDF: ");
  if (!password) throw std::runtime_error("--encrypt -: there is no terminal to ask for the password");
  if (password->empty()) throw std::runtime_error("--encrypt -: no password was given");
  return *password;
}

// See reproducible-builds.org, "SOURCE_DATE_EPOCH".
std::optional<int64_t> SourceDateEpoch() {
  const char* value = std::getenv("SOURCE_DATE_EPOCH");
  if (value == nullptr || *value == '\0') return std::nullopt;
  constexpr int64_t kEndOfYear9999 = 253402300799;
  const std::string_view text = value;
  int64_t seconds = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  const bool isWhole = error == std::errc() && end == text.data() + text.size();
  if (!isWhole || seconds < 0 || seconds > kEndOfYear9999) {
    throw std::runtime_error(fmt::format("SOURCE_DATE_EPOCH is no time in seconds: \"{}\"", text));
  }
  return seconds;
}

ExitStatus Run(const FinishOptions& options, const fs::path& input, const fs::path& output) {
  const std::vector<std::string> losses = FinishFile(input, output, options);
  for (const std::string& loss : losses) PrintError(loss);
  return losses.empty() ? ExitStatus::kDone : ExitStatus::kPartlyDone;
}

// Runs the pass on a plotted PDF. One that fails is reported and leaves the PDF.
ExitStatus FinishPlot(const FinishOptions& options, const fs::path& pdf) {
  if (!AsksForPass(options)) return ExitStatus::kDone;
  try {
    return Run(options, pdf, pdf);
  } catch (const FileError& error) {
    PrintError(error.what());
    return ExitStatus::kNothingDone;
  }
}

}  // namespace

FinishOptions ResolveFinish(const CommandLine& line, const std::vector<PageName>& names) {
  FinishOptions options = line.finish;
  // A file that only the driver knows gets no default outline.
  const bool asksForFile = line.output && EqualWithoutCase(*line.output, "file:");
  if (line.bookmarks.value_or(names.size() > 1 && !asksForFile)) options.bookmarks = names;
  if (options.encryption) options.encryption->password = Password(line.passwordFile);
  options.sourceDateEpoch = SourceDateEpoch();
  // Found before the plot, as all that is wrong with the command line.
  for (const fs::path& file : options.attachments) {
    if (!OpenToRead(file)) throw FileError(file, 0, std::string("cannot be read: ") + std::strerror(errno));
  }
  return options;
}

ExitStatus Conclude(Job& job, const CommandLine& line, const FinishOptions& options, Clock::time_point start,
                    Progress& progress) {
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
  // Behind the preview, which cannot be made of an encrypted file.
  if (!summary.file.empty()) {
    status = std::max(status, FinishPlot(options, summary.file));
    summary.bytes = fs::file_size(summary.file);
  }
  summary.seconds = std::chrono::duration<double>(Clock::now() - start).count();
  if (std::FILE* stream = SummaryStream(line)) PrintLine(stream, FormatSummary(summary));
  return status;
}

ExitStatus FinishExistingPdf(const CommandLine& line) {
  const fs::path& input = line.inputs.front();
  const auto output = line.output ? DriverOutput(hdi::ToUtf16(*line.output), u"") : input;
  if (!output) throw std::runtime_error("--finish: give the name of the output with -o");
  const FinishOptions options = ResolveFinish(line, {});
  if (!AsksForPass(options)) throw std::runtime_error("--finish: no option says what to do to the PDF");
  const ExitStatus status = Run(options, input, *output);
  if (line.verbosity != Verbosity::kQuiet) PrintLine(stdout, FormatFinished(*output, fs::file_size(*output)));
  return status;
}

}  // namespace hdiplot
