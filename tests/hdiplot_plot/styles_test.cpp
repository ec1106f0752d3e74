// Colours, layers and what is inherited.
#include "host/hdiplot/plot/styles.h"

#include <gtest/gtest.h>

#include "host/hdiplot/plot/wildcard.h"

namespace hdiplot {

void PrintTo(Rgb color, std::ostream* out) {
  *out << int{color.red} << ' ' << int{color.green} << ' ' << int{color.blue};
}

namespace {

constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kGreen{0, 255, 0};

EntityColor Index(uint32_t index) { return {EntityColor::Kind::kIndex, index}; }

TEST(IndexColor, IsTheTable) {
  EXPECT_EQ(IndexColor(1), kRed);
  EXPECT_EQ(IndexColor(5), (Rgb{0, 0, 255}));
  EXPECT_EQ(IndexColor(7), kWhite);
  EXPECT_EQ(IndexColor(8), (Rgb{128, 128, 128}));
  EXPECT_EQ(IndexColor(10), kRed);
  EXPECT_EQ(IndexColor(11), (Rgb{255, 127, 127}));
  EXPECT_EQ(IndexColor(12), (Rgb{204, 0, 0}));
  EXPECT_EQ(IndexColor(30), (Rgb{255, 127, 0}));
  EXPECT_EQ(IndexColor(52), (Rgb{204, 204, 0}));
  EXPECT_EQ(IndexColor(70), (Rgb{127, 255, 0}));
  EXPECT_EQ(IndexColor(94), (Rgb{0, 153, 0}));
  EXPECT_EQ(IndexColor(140), (Rgb{0, 191, 255}));
  EXPECT_EQ(IndexColor(150), (Rgb{0, 127, 255}));
  EXPECT_EQ(IndexColor(176), (Rgb{0, 0, 127}));
  EXPECT_EQ(IndexColor(200), (Rgb{191, 0, 255}));
  EXPECT_EQ(IndexColor(240), (Rgb{255, 0, 63}));
  EXPECT_EQ(IndexColor(250), (Rgb{51, 51, 51}));
  EXPECT_EQ(IndexColor(255), kWhite);
}

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

TEST(Wildcards, MatchWholeNames) {
  const auto matches = [](const char* pattern, const char* name) {
    return MatchesWildcard(FoldedCase(pattern), FoldedCase(name));
  };
  EXPECT_TRUE(matches("wall*", "WALLS-outer"));
  EXPECT_TRUE(matches("*a*b?c*", "xxaxxabxbbcxbycz"));
  EXPECT_TRUE(matches("*", ""));
  EXPECT_TRUE(matches("m\xC3\xBC?er", "M\xC3\x9CLER"));  // two bytes are one character
  EXPECT_FALSE(matches("wall", "walls"));
  EXPECT_FALSE(matches("*s", "wallsx"));
  EXPECT_FALSE(matches("?", ""));
}

class Styles : public testing::Test {
 protected:
  Styles() {
    drawing.layers["Walls"] = {Index(1), "dashed", 50, false, false, true};
    drawing.layers["Doors"] = {Index(3), "CONTINUOUS", kLineWeightDefault, false, false, true};
    drawing.lineTypes["DASHED"] = {{6, -3}};
    drawing.lineTypes["DOTS"] = {{0, -3}};
    drawing.lineTypes["CONTINUOUS"] = {};
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
  const Style doors = styles.Resolve(On("Doors"), nullptr);
  EXPECT_EQ(doors.lineWeight, 25);
  EXPECT_EQ(doors.lineType, nullptr);
  const Style unknown = styles.Resolve(On("nowhere"), nullptr);
  EXPECT_EQ(unknown.color, kBlack);
  EXPECT_TRUE(unknown.layer->plotted);

  Attributes own = On("Walls");
  own.color = {EntityColor::Kind::kTrue, 0x102030};
  own.lineType = "DOTS";
  own.lineWeight = 0;
  const Style mine = styles.Resolve(own, nullptr);
  EXPECT_EQ(mine.color, (Rgb{0x10, 0x20, 0x30}));
  EXPECT_EQ(mine.lineWeight, 0);
  EXPECT_EQ(mine.lineType, &drawing.lineTypes["DOTS"]);
}

TEST_F(Styles, ComeFromTheInsertThroughNestedBlocks) {
  StyleResolver styles(drawing, options);
  // Outside of any block there is nothing to inherit.
  const Style nothing = styles.Resolve(ByBlock("Walls"), nullptr);
  EXPECT_EQ(nothing.color, kBlack);
  EXPECT_EQ(nothing.lineWeight, 25);
  EXPECT_EQ(nothing.lineType, nullptr);

  // The outer insert goes by its layer, the inner one and the entity by block.
  const Style outer = styles.Resolve(On("Walls"), nullptr);
  const Style inner = styles.Resolve(ByBlock("Doors"), &outer);
  const Style entity = styles.Resolve(ByBlock("Doors"), &inner);
  EXPECT_EQ(entity.color, kRed);
  EXPECT_EQ(entity.lineWeight, 50);
  EXPECT_EQ(entity.lineType, &drawing.lineTypes["DASHED"]);

  // Layer 0 in a block is the layer of the insert, also through an insert on layer 0; others stay.
  const Style onZero = styles.Resolve(On("0"), &outer);
  EXPECT_EQ(styles.Resolve(On("0"), &onZero).color, kRed);
  EXPECT_EQ(styles.Resolve(On("Doors"), &outer).color, kGreen);
}

TEST_F(Styles, HideLayers) {
  drawing.layers["Off"].off = true;
  drawing.layers["Frozen"].frozen = true;
  drawing.layers["Never"].plottable = false;
  options.layers = {"w*", "D?ors", "off", "frozen", "never", "defpoints"};
  options.skipLayers = {"*RS"};
  StyleResolver styles(drawing, options);
  const auto plotted = [&](const char* layer) { return styles.Resolve(On(layer), nullptr).layer->plotted; };
  EXPECT_TRUE(plotted("Walls"));
  EXPECT_TRUE(plotted("wAlLs"));
  EXPECT_FALSE(plotted("Doors"));  // skipped
  EXPECT_FALSE(plotted("0"));      // not asked for
  EXPECT_FALSE(plotted("Off"));
  EXPECT_FALSE(plotted("Frozen"));
  EXPECT_FALSE(plotted("Never"));
  EXPECT_FALSE(plotted("Defpoints"));
}

}  // namespace
}  // namespace hdiplot
