// Colours, layers and what is inherited.
#include "host/hdiplot/plot/styles.h"

#include <gtest/gtest.h>

namespace hdiplot {

namespace {

constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kGreen{0, 255, 0};

EntityColor Index(uint32_t index) { return {EntityColor::Kind::kIndex, index}; }

TEST(Ink, TheForegroundStandsOutFromTheSheetAndOtherWhitesStay) {
  EXPECT_EQ(Ink(std::nullopt, false).OfIndex(7), kBlack);
  EXPECT_EQ(Ink(kWhite, false).OfIndex(7), kBlack);
  EXPECT_EQ(Ink(Rgb{20, 30, 60}, false).OfIndex(7), kWhite);
  EXPECT_EQ(Ink(std::nullopt, false).OfIndex(255), kWhite);
  EXPECT_EQ(Ink(std::nullopt, false).OfTrueColor(0xFFFFFF), kWhite);
  EXPECT_EQ(Ink(std::nullopt, false).OfIndex(1), kRed);
  EXPECT_EQ(Ink(std::nullopt, true).OfIndex(1), kBlack);
  EXPECT_EQ(Ink(kBlack, true).OfTrueColor(0xFF0000), kWhite);
}

class Styles : public testing::Test {
 protected:
  Styles() {
    drawing.layers["Walls"] = {Index(1), "DASHED", 50, false, false, true};
    drawing.layers["Walls"].alpha = 100;
    drawing.layers["Doors"] = {Index(3), "CONTINUOUS", kLineWeightDefault, false, false, true};
    drawing.lineTypes["DASHED"] = {{6, -3}};
    drawing.lineTypes["DOTS"] = {{0, -3}};
  }

  [[nodiscard]] static Attributes On(const std::string& layer) {
    Attributes attributes;
    attributes.layer = layer;
    return attributes;
  }
  [[nodiscard]] static Attributes ByBlock(const std::string& layer) {
    Attributes attributes = On(layer);
    attributes.color.kind = EntityColor::Kind::kByBlock;
    attributes.lineType = "BYBLOCK";
    attributes.lineWeight = kLineWeightByBlock;
    attributes.alpha.kind = EntityAlpha::Kind::kByBlock;
    return attributes;
  }

  Drawing drawing;
  PlotOptions options;
};

TEST_F(Styles, ComeFromTheLayer) {
  StyleResolver styles(drawing, options);
  const Style walls = styles.Resolve(On("WALLS"), nullptr);
  EXPECT_EQ(walls.color, kRed);
  EXPECT_EQ(walls.lineWeight, 50);
  EXPECT_EQ(walls.lineType, &drawing.lineTypes["DASHED"]);
  EXPECT_EQ(walls.alpha, 100);
  EXPECT_EQ(walls.layer->name, u"Walls");
  EXPECT_EQ(styles.Resolve(On("New"), nullptr).layer->name, u"New");
  EXPECT_EQ(styles.Resolve(On("NEW"), nullptr).layer->name, u"New");
  Attributes own = On("Walls");
  own.color = {EntityColor::Kind::kTrue, 0x102030};
  own.lineType = "DOTS";
  own.lineWeight = 0;
  own.alpha = {EntityAlpha::Kind::kOwn, 30};
  const Style mine = styles.Resolve(own, nullptr);
  EXPECT_EQ(mine.color, (Rgb{0x10, 0x20, 0x30}));
  EXPECT_EQ(mine.alpha, 30);
}

TEST_F(Styles, ComeFromTheInsertThroughNestedBlocks) {
  StyleResolver styles(drawing, options);
  // Outside of any block there is nothing to inherit.
  const Style nothing = styles.Resolve(ByBlock("Walls"), nullptr);
  EXPECT_EQ(nothing.color, kBlack);
  EXPECT_EQ(nothing.lineType, nullptr);
  EXPECT_EQ(nothing.alpha, 255);

  // The outer insert goes by its layer, the inner one and the entity by block.
  const Style outer = styles.Resolve(On("Walls"), nullptr);
  const Style inner = styles.Resolve(ByBlock("Doors"), &outer);
  const Style entity = styles.Resolve(ByBlock("Doors"), &inner);
  EXPECT_EQ(entity.color, kRed);
  EXPECT_EQ(entity.lineWeight, 50);
  EXPECT_EQ(entity.lineType, &drawing.lineTypes["DASHED"]);
  EXPECT_EQ(entity.alpha, 100);

  // Layer 0 in a block is the layer of the insert, also through an insert on layer 0; others stay.
  const Style onZero = styles.Resolve(On("0"), &outer);
  EXPECT_EQ(styles.Resolve(On("0"), &onZero).color, kRed);
  EXPECT_EQ(styles.Resolve(On("Doors"), &outer).color, kGreen);
}

TEST_F(Styles, HideLayers) {
  drawing.layers["Off"].off = true;
  drawing.layers["Frozen"].frozen = true;
  drawing.layers["Never"].plottable = false;
  options.layers = {"*a*l?", "D?ors", "off", "frozen", "never", "defpoints"};
  options.skipLayers = {"*RS"};
  StyleResolver styles(drawing, options);
  const auto plotted = [&](const char* layer) { return styles.Resolve(On(layer), nullptr).layer->plotted; };
  EXPECT_TRUE(plotted("wAlLs"));
  // Skipped, not asked for, and hidden by what they are.
  for (const char* layer : {"Doors", "0", "Off", "Frozen", "Never", "Defpoints"})
    EXPECT_FALSE(plotted(layer)) << layer;
}

}  // namespace
}  // namespace hdiplot
