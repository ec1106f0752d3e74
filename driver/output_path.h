// Determines a job's output path.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "driver/pdf_driver.h"
#include "platform/border.h"
#include "recording/plot_job.h"

namespace hdi {

enum class OutputChoice : uint8_t {
  kNone,     // no job: the user cancelled or declined to replace the file
  kSettled,  // the job's outputPath is set
};

// Sets the job's outputPath from the document's output: without one, the device's default output as it is;
// for a path, that path with ".pdf" appended unless present; for "FILE:", the user's answer.
[[nodiscard]] OutputChoice SettleOutputPath(const HostDevice& device, const DOCINFOW* docInfo,
                                            CPDFDriver& driver, PlotJob& job);

// Returns the file name to propose for a document: its name without directories and without everything from
// the last dot on, or "Drawing1" if nothing is left, with ".pdf". A name without a dot leaves nothing.
[[nodiscard]] std::u16string ProposedFileName(std::u16string_view documentName);

}  // namespace hdi
