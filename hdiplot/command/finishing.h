// The pass over the finished PDF, as the command line asks for it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "hdiplot/command/options.h"
#include "hdiplot/finish/finish.h"

namespace hdiplot {

// What `line` asks for, for a document whose pages have these names; none for one whose pages have no names.
// Reads the password and SOURCE_DATE_EPOCH. Throws a std::runtime_error with the message for the user.
[[nodiscard]] FinishOptions ResolveFinish(const CommandLine& line, const std::vector<PageName>& names);

// Runs the pass on the plotted `pdf`, if the options ask for one, and reports what is lost. A pass that fails
// is reported, leaves the PDF, and counts as nothing done.
[[nodiscard]] ExitStatus FinishPlot(const FinishOptions& options, const std::filesystem::path& pdf);

}  // namespace hdiplot
