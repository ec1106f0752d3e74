// Where a job's output goes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "driver/pdf_driver.h"
#include "platform/border.h"
#include "recording/plot_job.h"

namespace hdi {

enum class OutputChoice : uint8_t {
  kNone,     // the user gave up, or would not have the file replaced: there is no job
  kSettled,  // the job's outputPath is the file to write
};

// Settles the job's outputPath from the document's output: none takes the device's default output as it
// stands, a path gets ".pdf" unless it ends so, "FILE:" asks the user.
[[nodiscard]] OutputChoice SettleOutputPath(const HostDevice& device, const DOCINFOW* docInfo,
                                            CPDFDriver& driver, PlotJob& job);

// The file name that the save dialog offers for a document: its name without directories and without what
// follows the last dot, "Drawing1" when nothing is left, and ".pdf". A name without a dot leaves nothing.
[[nodiscard]] std::u16string ProposedFileName(std::u16string_view documentName);

}  // namespace hdi
