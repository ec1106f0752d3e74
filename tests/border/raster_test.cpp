// Rasters whose host breaks its word between the plot call and the end of the document.
#include <array>
#include <string>
#include <vector>

#include "border.h"

namespace border {
namespace {

// A raster as a host builds one: a table of seven operations, and what they answer. Two pixels by two.
class HostRaster : Fixed {
 public:
  explicit HostRaster(uint16_t bitCount) {
    WriteAt<uint32_t>(header_.data(), 0, 40);
    WriteAt<int32_t>(header_.data(), 4, 2);
    WriteAt<int32_t>(header_.data(), 8, 2);
    WriteAt<uint16_t>(header_.data(), 14, bitCount);
    static const std::array<void*, 7> kTable = {
        reinterpret_cast<void*>(&Header),     reinterpret_cast<void*>(&Size),
        reinterpret_cast<void*>(&Size),       reinterpret_cast<void*>(&HasAlpha),
        reinterpret_cast<void*>(&Bits),       reinterpret_cast<void*>(&Encode),
        reinterpret_cast<void*>(&FreeEncoded)};
    face_ = {kTable.data(), this};
    record_ = {&face_, 500, 500, 100, 0, 0, 100};
  }

  [[nodiscard]] const void* Record() const { return &record_; }

  bool hasHeader = true;
  bool hasBits = true;
  std::string encoded;  // what it claims to be a JPEG file; none when empty
  int alive = 0;        // encodings that have not been given back

 private:
  struct Face {
    void* const* table;
    HostRaster* self;
  };
  struct Placed {
    Face* image;
    double originX, originY, scaleX, unread[2], scaleY;
  };

  static void* Header(Face* face) { return face->self->hasHeader ? face->self->header_.data() : nullptr; }
  static int32_t Size(Face*) { return 2; }
  static int32_t HasAlpha(Face*) { return 1; }
  static void* Bits(Face* face) { return face->self->hasBits ? face->self->bits_.data() : nullptr; }
  static void* Encode(Face* face, const char*, int32_t, uint64_t* size) {
    std::string& encoded = face->self->encoded;
    if (encoded.empty()) return nullptr;
    ++face->self->alive;
    *size = encoded.size();
    return encoded.data();
  }
  static void FreeEncoded(Face* face, void*) { --face->self->alive; }

  Face face_{};
  Placed record_{};
  std::array<uint8_t, 16> bits_ = {0, 1, 0, 0, 1, 0};
  alignas(4) std::array<uint8_t, 40 + 256 * 4> header_{};  // with its palette
};

class RasterTest : public BorderTest {
 protected:
  RasterTest() {
    device.Open();
    EXPECT_EQ(device.StartDoc(sandbox.OutPath("rasters.pdf").c_str()), 1);
  }
  void Place(const HostRaster& raster) { EXPECT_EQ(device.Call(51, raster.Record()), 1); }
  // How many images the finished document has, soft masks included.
  [[nodiscard]] size_t ImageCount() const {
    const std::string text = RunCommand("qpdf --qdf '" + File().string() + "' -").second;
    size_t count = 0;
    for (size_t at = 0; (at = text.find("/Subtype /Image", at)) != std::string::npos; ++at) ++count;
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
  EXPECT_EQ(device.EndDoc(), 1);
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
  EXPECT_EQ(device.EndDoc(), 1);
  EXPECT_TRUE(IsSoundPdf(File()));
  EXPECT_EQ(PageCount(File()), 2);
  EXPECT_EQ(ImageCount(), 2U) << "the sound one and its mask";
  for (const HostRaster* raster : {&unencodable, &encodedAsNonsense, &encodedCutShort}) {
    EXPECT_EQ(raster->alive, 0) << "what a host encodes goes back to it once";
  }
}

}  // namespace
}  // namespace border
