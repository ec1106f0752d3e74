// A driver without a document: it keeps the calls that reach the device, so that tests see what was plotted.
#pragma once

#include <string>
#include <vector>

#include "host/hdiplot/plot/plot_drawing.h"
#include "tests/hdiplot/plain_driver.h"

namespace hdiplot {

struct LoggedCall {
  std::string name;
  std::vector<std::vector<hdi::HT_Double_Point>> points;  // one list for most calls; an arc's centre
  // An arc's five; a text's height, oblique angle, tracking and width factor; an image's dots a pixel.
  std::vector<double> numbers;
  Pen pen;
  hdi::LOGFONTW font{};  // a text's, as the next
  std::u16string text{};
  std::vector<double> advances{};
  ImageData image{};
};

// At 254 dots per inch, ten dots a millimetre, and with a printable area of 2000 by 3000 dots; so a tenth of
// a millimetre is a dot.
class LoggingDriver final : public PlainDriver {
 public:
  LoggingDriver();

  std::vector<LoggedCall> calls;
  // The calls' names in order, with those of layers, transparency, links and comments between them, which
  // have their arguments behind the name.
  std::vector<std::string> course;
  bool showsText = true;  // what it says to a text with advances and without tracking
};

// The driver behind plotting `drawing`'s model or the layout, and the calls that it got.
[[nodiscard]] LoggingDriver PlotThrough(const Drawing& drawing, const PlotOptions& options,
                                        bool showsText = true, const Layout* layout = nullptr);
[[nodiscard]] std::vector<LoggedCall> PlotToLog(const Drawing& drawing, const PlotOptions& options = {},
                                                bool showsText = true);

// A drawing of one unit a dot on the logging driver's sheet: plotted with OneToOne(), unit (x, y) comes to
// the dot (x, 3000 - y), since it has points in two corners of the sheet; and nothing else yet.
[[nodiscard]] Drawing SheetDrawing();
[[nodiscard]] PlotOptions OneToOne();

// The calls behind those for the points in the corners, and for clips in front of them.
[[nodiscard]] std::vector<LoggedCall> PlotOnSheet(const Drawing& drawing,
                                                  const PlotOptions& options = OneToOne(),
                                                  bool showsText = true);

// The calls of one name.
[[nodiscard]] std::vector<LoggedCall> Named(const std::vector<LoggedCall>& calls, const std::string& name);

[[nodiscard]] Entity Thing(Shape shape, const std::string& layer = "0");

}  // namespace hdiplot
