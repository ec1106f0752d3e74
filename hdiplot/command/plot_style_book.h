// The files of plot styles that pages are plotted with.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "hdiplot/plot/extents.h"
#include "hdiplot/plot/plot_styles.h"

namespace hdiplot {

class PlotStyleBook {
 public:
  // `chosen`: the file for all pages, or "none" for no plot styles; otherwise each page has those that its
  // layout names. `report` is called once for each file of a layout that cannot be used. Throws FileError
  // when the chosen file cannot be read.
  PlotStyleBook(const std::optional<std::filesystem::path>& chosen,
                std::function<void(const std::string&)> report);

  // Null when the page has none, or when they are not beside the drawing.
  [[nodiscard]] std::shared_ptr<const PlotStyles> Of(const DrawingPart& part);

  // Whether a file could not be used.
  [[nodiscard]] bool HasUnusable() const { return hasUnusable_; }

 private:
  std::function<void(const std::string&)> report_;
  bool isChosen_ = false;
  std::shared_ptr<const PlotStyles> chosen_;
  std::map<std::filesystem::path, std::shared_ptr<const PlotStyles>> byFile_;
  bool hasUnusable_ = false;
};

}  // namespace hdiplot
