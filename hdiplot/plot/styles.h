// Resolves an entity's attributes to its look, by layer and by block.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "hdiplot/model/drawing.h"
#include "hdiplot/plot/colors.h"
#include "hdiplot/plot/plot_options.h"

namespace hdiplot {

// A layer as the plot sees it.
struct LayerStyle {
  std::u16string name;                   // in one spelling for all entities
  EntityColor color;                     // an index or a true colour
  int lineWeight = 0;                    // hundredths of a millimetre
  const LineType* lineType = nullptr;    // null: continuous
  const PlotStyle* plotStyle = nullptr;  // of those that have names
  uint8_t alpha = 255;
  bool frozen = false;  // also hides the contents of blocks inserted on it
  bool plotted = true;  // on, plottable and selected
  bool isZero = false;  // layer "0", which in a block means the layer of the insert
};

// The resolved look of an entity. Pointers are into the drawing and the StyleResolver.
struct Style {
  const LayerStyle* layer = nullptr;
  Rgb color;                           // of the plot
  int lineWeight = 0;                  // hundredths of a millimetre
  const LineType* lineType = nullptr;  // null: continuous
  double lineTypeScale = 1;            // the entity's own
  uint8_t alpha = 255;
  EntityColor own;  // of the drawing: an index or a true colour, as the next
  EntityColor byBlock;
  const Ink* ink = nullptr;
  const PlotStyle* plotStyle = nullptr;  // null: none

  // A colour within the entity, such as that of a part of a text: an index or a true colour, or its plotted
  // form.
  [[nodiscard]] EntityColor Resolved(const EntityColor& part) const;
  [[nodiscard]] Rgb Plotted(const EntityColor& part) const { return ink->Of(Resolved(part)); }
};

class StyleResolver {
 public:
  // Keeps references to the drawing and the options. The layers in `frozen` count as frozen.
  StyleResolver(const Drawing& drawing, const PlotOptions& options,
                const std::vector<std::string>& frozen = {});

  // `insert` is the style of the INSERT of the entity's block, null in the drawing itself, where "by block"
  // means the foreground colour, a continuous line, the default weight and opaque.
  [[nodiscard]] Style Resolve(const Attributes& attributes, const Style* insert);

 private:
  [[nodiscard]] const LayerStyle& FindLayer(const std::string& name);
  [[nodiscard]] LayerStyle MakeLayer(const std::string& name);
  [[nodiscard]] bool IsAskedFor(std::string_view foldedName) const;
  [[nodiscard]] const LineType* FindLineType(const std::string& name) const;
  void ResolvePlotStyle(const Attributes& attributes, const Style* insert, Style& style);
  [[nodiscard]] const PlotStyle* FindPlotStyle(const std::string& name) const;

  const Drawing& drawing_;
  const PlotOptions& options_;
  const PlotStyles* plotStyles_;  // null: none
  Ink ink_;
  std::map<const PlotStyle*, Ink> namedInks_;
  std::vector<std::string> wanted_;    // folded patterns
  std::vector<std::string> unwanted_;  // folded patterns
  std::set<std::string> frozen_;       // folded names
  struct NamedLayer {
    std::string name;  // as in the drawing's table, or else as in the first entity
    const Layer* layer;
  };
  std::map<std::string, NamedLayer> layersByFoldedName_;
  std::unordered_map<std::string, LayerStyle> layers_;  // by name as entities spell it, filled on demand
  const std::pair<const std::string, LayerStyle>* lastLayer_ = nullptr;  // entities come in runs of one layer
};

}  // namespace hdiplot
