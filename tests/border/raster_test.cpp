// Rasters whose host breaks its word between the plot call and the end of the document.
#include "tests/border/host_raster.h"

namespace border {
namespace {

class RasterTest : public BorderTest {
 protected:
  RasterTest() {
    device.Open();
    EXPECT_EQ(device.StartDocument(sandbox.OutPath("rasters.pdf").c_str()), 1);
  }
  void Place(const HostRaster& raster) { EXPECT_EQ(device.Call(51, raster.Record()), 1); }
  // How many images the finished document has, soft masks included.
  [[nodiscard]] size_t ImageCount() const {
    const std::string text = ReadFile(File());  // whose dictionaries are never packed
    size_t count = 0;
    for (size_t at = 0; (at = text.find("/Subtype/Image", at)) != std::string::npos; ++at) ++count;
    return count;
  }
  [[nodiscard]] std::filesystem::path File() const { return sandbox.Out() / "rasters.pdf"; }

  Device device{FirstDriver()};
};

TEST_F(RasterTest, VanishedHeaderEndsTheReplayAndTheDocumentIsSaved) {
  HostRaster sound(8);
  HostRaster vanishing(8);
  device.PlotPage();
  device.StartPage();
  Place(sound);
  Place(vanishing);
  Place(sound);
  device.EndPage();
  device.PlotPage();
  vanishing.hasHeader = false;
  EXPECT_EQ(device.EndDocument(), 1);
  EXPECT_TRUE(IsSoundPdf(File()));
  EXPECT_EQ(PageCount(File()), 2) << "the page with the raster was begun, the one behind it was not";
}

TEST_F(RasterTest, RasterWithoutItsPixelsIsLeftOut) {
  HostRaster unencodable(32);
  HostRaster encodedAsNonsense(32);
  encodedAsNonsense.encoded = "no JPEG file at all";
  HostRaster encodedCutShort(32);
  encodedCutShort.encoded = std::string("\xFF\xD8\xFF\xE0\x00\x10JFIF", 10);
  HostRaster withoutBits(8);
  withoutBits.hasBits = false;
  HostRaster sound(8);
  device.StartPage();
  for (const HostRaster* raster :
       {&unencodable, &encodedAsNonsense, &encodedCutShort, &withoutBits, &sound}) {
    Place(*raster);
  }
  device.EndPage();
  device.PlotPage();
  EXPECT_EQ(device.EndDocument(), 1);
  EXPECT_TRUE(IsSoundPdf(File()));
  EXPECT_EQ(PageCount(File()), 2);
  EXPECT_EQ(ImageCount(), 2U) << "the sound one and its mask";
  for (const HostRaster* raster : {&unencodable, &encodedAsNonsense, &encodedCutShort}) {
    EXPECT_EQ(raster->alive, 0) << "what a host encodes goes back to it once";
  }
}

}  // namespace
}  // namespace border
