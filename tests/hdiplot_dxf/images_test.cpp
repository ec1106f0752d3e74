// Images and wipeouts, in the drawing's coordinates whatever their pixels are.
#include <gtest/gtest.h>

#include "tests/hdiplot_dxf/dxf_writing.h"

namespace hdiplot {
namespace {

using dxf_writing::ErrorOf;
using dxf_writing::Groups;
using dxf_writing::Read;
using dxf_writing::ReadFirst;
using dxf_writing::WithEntities;

using Ring = std::vector<Vec2>;

// Of 8 by 4 pixels of half a unit, so of 4 by 2 units.
const std::string kImage = "0 IMAGE|10 1|20 2|11 0.5|21 0|31 0|12 0|22 0.5|32 0|13 8|23 4|340 a1";

TEST(Images, NameTheirFilesThroughObjects) {
  const std::string objects = Groups(
      "0 SECTION|2 OBJECTS|0 DICTIONARY|5 C|3 name|350 D|0 XRECORD|5 D|40 no number|0 "
      "IMAGEDEF|5 A1|102 {ACAD_REACTORS|330 B|102 }|1 .\\pictures\\a.png|10 8|20 4|0 ENDSEC|0 EOF");
  std::string file = WithEntities(kImage + "|70 9|281 60|282 40|283 200");
  file.replace(file.rfind("0\nEOF"), std::string::npos, objects);
  const Drawing drawing = Read(file);
  const auto image = std::get<ImageEntity>(drawing.entities.at(0).shape);
  EXPECT_EQ(drawing.imageFiles.at(image.definition), ".\\pictures\\a.png");
  EXPECT_TRUE(drawing.skipped.empty());
  EXPECT_EQ(image.corner, (Vec2{1, 2}));
  EXPECT_EQ(image.right, (Vec2{4, 0}));
  EXPECT_EQ(image.up, (Vec2{0, 2}));
  EXPECT_TRUE(image.shown);
  EXPECT_EQ(image.look, (ImageLook{true, 60, 40, 100}));
  EXPECT_TRUE(image.clip.empty());
}

TEST(Images, AreClippedToPolygonsOrTwoCorners) {
  const auto corners = ReadFirst<ImageEntity>(kImage + "|70 7|280 1|71 1|91 2|14 -0.5|24 -0.5|14 1.5|24 0.5");
  EXPECT_EQ(corners.clip, (Ring{{1, 4}, {2, 4}, {2, 3.5}, {1, 3.5}}));
  const auto inverted = ReadFirst<ImageEntity>(
      kImage + "|70 7|280 1|71 2|91 3|14 -0.5|24 3.5|14 7.5|24 3.5|14 7.5|24 1.5|290 1");
  EXPECT_EQ(inverted.clip, (Ring{{1, 2}, {5, 2}, {5, 3}}));
  EXPECT_TRUE(inverted.clipInverted);

  const std::string all = "|71 1|91 2|14 -0.5|24 -0.5|14 7.5|24 3.5";
  EXPECT_TRUE(ReadFirst<ImageEntity>(kImage + "|70 7|280 1" + all).clip.empty());
  EXPECT_TRUE(ReadFirst<ImageEntity>(kImage + "|70 3|280 0|71 1|91 2|14 0|24 0|14 1|24 1").clip.empty());
  EXPECT_EQ(ErrorOf(WithEntities(kImage + "|280 1|71 2|91 4|14 0|24 0|14 1|24 1")),
            "drawing.dxf:34: group 91 of IMAGE says 4, but there are 2");
}

TEST(Images, OfNothingAreWipeouts) {
  const std::string wipeout = "0 WIPEOUT|10 10|20 10|11 4|21 0|12 0|22 2|13 1|23 1";
  const std::string triangle = "|71 2|91 3|14 -0.5|24 0.5|14 0.5|24 0.5|14 0|24 -0.5";
  EXPECT_EQ(ReadFirst<WipeoutEntity>(wipeout + triangle).rings,
            (std::vector<Ring>{{{10, 10}, {14, 10}, {12, 12}}}));
  EXPECT_EQ(ReadFirst<WipeoutEntity>(wipeout + triangle + "|290 1").rings.size(), 2U);
  EXPECT_EQ(ReadFirst<WipeoutEntity>(wipeout).rings,
            (std::vector<Ring>{{{10, 10}, {14, 10}, {14, 12}, {10, 12}}}));
}

}  // namespace
}  // namespace hdiplot
