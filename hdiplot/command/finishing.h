// The end of a plot: the pass over the finished PDF, as the command line asks for it, and the summary.
#pragma once

#include <chrono>
#include <vector>

#include "hdiplot/command/job.h"
#include "hdiplot/command/options.h"
#include "hdiplot/finish/finish.h"
#include "hdiplot/system/progress.h"

namespace hdiplot {

// What `line` asks for, for a document whose pages have these names; none for one whose pages have no names.
// Reads the password and SOURCE_DATE_EPOCH. Throws a std::runtime_error with the message for the user.
[[nodiscard]] FinishOptions ResolveFinish(const CommandLine& line, const std::vector<PageName>& names);

using Clock = std::chrono::steady_clock;

// Finishes the job, the progress bar, the record, the preview and then, as `options` ask for, the PDF, and
// prints the summary with the time since `start`. What cannot be written is reported and shows in the status;
// a pass over the PDF that fails leaves the plotted PDF and counts as nothing done.
[[nodiscard]] ExitStatus Conclude(Job& job, const CommandLine& line, const FinishOptions& options,
                                  Clock::time_point start, Progress& progress);

}  // namespace hdiplot
