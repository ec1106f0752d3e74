// From an entity's attributes to how it looks: by layer, by block, and what is not plotted at all.
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
  std::u16string name;  // the same for all ways to write it
  Rgb color;
  int lineWeight = 0;                  // hundredths of a millimetre
  const LineType* lineType = nullptr;  // null: continuous
  uint8_t alpha = 255;
  bool frozen = false;  // hides the contents of blocks inserted on it, too
  bool plotted = true;  // on, plottable and asked for
  bool isZero = false;  // layer "0", which in a block stands for the layer of the insert
};

// How an entity looks, nothing left to look up. Pointers are into the drawing and the StyleResolver.
struct Style {
  const LayerStyle* layer = nullptr;
  Rgb color;                           // of the plot
  int lineWeight = 0;                  // hundredths of a millimetre
  const LineType* lineType = nullptr;  // null: continuous
  double lineTypeScale = 1;            // the entity's own
  uint8_t alpha = 255;
  Rgb byBlock;
  const Ink* ink = nullptr;

  // The plotted form of a colour within the entity, as a text has them.
  [[nodiscard]] Rgb Plotted(const EntityColor& own) const;
};

class StyleResolver {
 public:
  // Refers to the drawing and the options from then on. The layers of `frozen` are frozen, too.
  StyleResolver(const Drawing& drawing, const PlotOptions& options,
                const std::vector<std::string>& frozen = {});

  // `insert` is the style of the INSERT that the entity's block came by, null in the drawing itself. What is
  // by block there is the foreground colour, continuous, of the default weight and opaque.
  [[nodiscard]] Style Resolve(const Attributes& attributes, const Style* insert);

 private:
  [[nodiscard]] const LayerStyle& FindLayer(const std::string& name);
  [[nodiscard]] LayerStyle MakeLayer(const std::string& name);
  [[nodiscard]] bool IsAskedFor(std::string_view foldedName) const;
  [[nodiscard]] const LineType* FindLineType(const std::string& name) const;

  const Drawing& drawing_;
  Ink ink_;
  std::vector<std::string> wanted_;    // folded patterns
  std::vector<std::string> unwanted_;  // folded patterns
  std::set<std::string> frozen_;       // folded names
  struct NamedLayer {
    std::string name;  // as the drawing's table has it, or the first entity
    const Layer* layer;
  };
  std::map<std::string, NamedLayer> layersByFoldedName_;
  std::unordered_map<std::string, LayerStyle> layers_;  // by name as entities write it, made when first met
  const std::pair<const std::string, LayerStyle>* lastLayer_ = nullptr;  // entities come in runs of one layer
};

}  // namespace hdiplot
