// Output path rules and questions to the user.
#include "driver/output_path.h"

#include <algorithm>

#include "driver/settings_paths.h"
#include "platform/companion.h"
#include "platform/dialogs.h"
#include "platform/files.h"
#include "platform/settings_file.h"

namespace hdi {
namespace {

constexpr std::u16string_view kAskUser = u"FILE:";
constexpr std::u16string_view kExtension = u".pdf";

bool EqualWithoutCase(std::u16string_view a, std::u16string_view b) {
  const auto lower = [](char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
  };
  return std::ranges::equal(a, b, {}, lower, lower);
}

bool HasPdfExtension(std::u16string_view path) {
  return path.size() >= kExtension.size() &&
         EqualWithoutCase(path.substr(path.size() - kExtension.size()), kExtension);
}

// Asks whether the existing file may be replaced; the user may choose not to be asked again.
bool MayReplace(void* parentWindow, CPDFDriver& driver) {
  int32_t noHint = driver.SaveNotHint();
  if (!AskReplaceExisting(parentWindow, noHint)) return false;
  driver.SetSaveNotHint(noHint);
  // Written to the user's file but read from the device's section of another: the choice lasts only as long
  // as the driver.
  WriteSetting(u"PDFBase", u"PDFSaveNotHint", noHint != 0 ? u"1" : u"0", UserSettingsFile());
  return true;
}

OutputChoice AskUser(const DOCINFOW& docInfo, CPDFDriver& driver, PlotJob& job) {
  const std::u16string_view documentName = docInfo.lpszDocName == nullptr ? u"" : docInfo.lpszDocName;
  const auto chosen = AskSavePath(job.ownerWindow, ProposedFileName(documentName));
  if (!chosen) return OutputChoice::kNone;
  job.outputPath = *chosen;
  if (FileExists(job.outputPath) && driver.SaveNotHint() == 0 && !MayReplace(job.ownerWindow, driver)) {
    return OutputChoice::kNone;
  }
  return OutputChoice::kSettled;
}

}  // namespace

std::u16string ProposedFileName(std::u16string_view documentName) {
  std::u16string name(documentName);
  if (const size_t separator = name.find_last_of(u"\\/"); separator != std::u16string::npos) {
    name.erase(0, separator + 1);
  }
  const size_t dot = name.rfind(u'.');
  name.resize(dot == std::u16string::npos ? 0 : dot);
  if (name.empty()) name = u"Drawing1";
  return name.append(kExtension);
}

OutputChoice SettleOutputPath(const HostDevice& device, const DOCINFOW* docInfo, CPDFDriver& driver,
                              PlotJob& job) {
  const char16_t* output = docInfo == nullptr ? nullptr : docInfo->lpszOutput;
  if (output == nullptr || *output == 0) {
    job.outputPath = device.defaultOutput == nullptr ? u"" : device.defaultOutput;
    return OutputChoice::kSettled;
  }
  job.outputPath = output;
  if (EqualWithoutCase(job.outputPath, kAskUser)) return AskUser(*docInfo, driver, job);
  if (!HasPdfExtension(job.outputPath)) job.outputPath += kExtension;
  return OutputChoice::kSettled;
}

}  // namespace hdi
