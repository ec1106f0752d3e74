#include "hdiplot/command/plot_style_book.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "hdiplot/system/ascii_case.h"
#include "hdiplot/system/errors.h"
#include "hdiplot/system/paths.h"
#include "hdiplot/system/wildcard.h"

namespace hdiplot {

namespace fs = std::filesystem;

namespace {

// The file of that name, in any case and whatever its directory was, in `folder`. Empty when there is none.
fs::path FindBeside(const fs::path& folder, const std::string& name) {
  const std::string file = name.substr(name.find_last_of("/\\") + 1);  // npos + 1 is 0
  const fs::path directory = folder.empty() ? fs::path(".") : folder;
  std::error_code error;
  const std::vector<fs::path> files = NamesMatching(directory, "*.?tb", error);
  const auto found = std::ranges::find_if(
      files, [&file](const fs::path& candidate) { return EqualWithoutCase(PathText(candidate), file); });
  return found != files.end() ? folder / *found : fs::path();
}

}  // namespace

PlotStyleBook::PlotStyleBook(const std::optional<fs::path>& chosen,
                             std::function<void(const std::string&)> report)
    : report_(std::move(report)), isChosen_(chosen.has_value()) {
  if (chosen && *chosen != "none") chosen_ = std::make_shared<PlotStyles>(ReadPlotStyles(*chosen));
}

std::shared_ptr<const PlotStyles> PlotStyleBook::Of(const DrawingPart& part) {
  if (isChosen_) return chosen_;
  const std::string& name =
      part.layout != nullptr ? part.layout->setup.styleSheet : part.drawing->modelStyleSheet;
  const fs::path file = name.empty() ? fs::path() : FindBeside(part.drawing->folder, name);
  if (file.empty()) return nullptr;
  const auto [entry, isNew] = byFile_.try_emplace(file);
  if (!isNew) return entry->second;
  try {
    entry->second = std::make_shared<PlotStyles>(ReadPlotStyles(file));
  } catch (const FileError& error) {
    hasUnusable_ = true;
    report_(error.what());
  }
  return entry->second;
}

}  // namespace hdiplot
