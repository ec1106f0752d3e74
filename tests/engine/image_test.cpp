// Image XObjects, read back with qpdf.
#include "engine/image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "engine/library.h"
#include "tests/support/saved_document.h"

namespace hdi::engine {
namespace {

using Bytes = std::vector<uint8_t>;

Bytes Counting(size_t count) {
  Bytes bytes(count);
  std::iota(bytes.begin(), bytes.end(), uint8_t{1});
  return bytes;
}

std::string Text(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

void Append(Bytes& bytes, std::initializer_list<uint8_t> more) { bytes.insert(bytes.end(), more); }

// Returns a 5 x 3 JPEG up to its header, after a comment of `padding` bytes.
Bytes JpegHeader(uint8_t components, uint8_t precision, bool hasAdobeMarker, size_t padding = 0) {
  const size_t length = padding + 2;
  Bytes jpeg = {0xFF, 0xD8, 0xFF, 0xFE, static_cast<uint8_t>(length >> 8), static_cast<uint8_t>(length)};
  jpeg.resize(jpeg.size() + padding, 'x');
  if (hasAdobeMarker) {
    const uint8_t transform = components == 4 ? 2 : 1;
    Append(jpeg, {0xFF, 0xEE, 0, 14, 'A', 'd', 'o', 'b', 'e', 0, 100, 0, 0, 0, 0, transform});
  }
  Append(jpeg, {0xFF, 0xC0, 0, static_cast<uint8_t>(8 + 3 * components), precision, 0, 3, 0, 5, components});
  for (uint8_t i = 0; i < components; ++i) Append(jpeg, {static_cast<uint8_t>('A' + i), 0x11, 0});
  Append(jpeg, {0xFF, 0xDA, 0, static_cast<uint8_t>(6 + 2 * components), components});
  for (uint8_t i = 0; i < components; ++i) Append(jpeg, {static_cast<uint8_t>('A' + i), 0});
  Append(jpeg, {0, 63, 0, 0xFF, 0xD9});
  return jpeg;
}

// Returns the entries except type, length and mask.
std::string Entries(QPDFObjectHandle image) {
  auto dictionary = image.getDict().shallowCopy();
  EXPECT_EQ(dictionary.getKey("/Type").unparse() + dictionary.getKey("/Subtype").unparse(), "/XObject/Image");
  for (const char* key : {"/Type", "/Subtype", "/Length", "/SMask"}) dictionary.removeKey(key);
  return dictionary.unparse();
}

class ImageTest : public testing::Test {
 protected:
  Library library_;
  Document document_;
};

TEST_F(ImageTest, JpegsKeepTheirBytes) {
  const std::string gray = "/ColorSpace /DeviceGray /DecodeParms << /ColorTransform 0 >>";
  const std::string rgb = "/ColorSpace /DeviceRGB";
  const std::string cmyk = "/ColorSpace /DeviceCMYK /Decode [ 1 0 1 0 1 0 1 0 ]";
  const std::pair<Bytes, std::string> cases[] = {
      {JpegHeader(1, 8, false), gray},
      {JpegHeader(1, 8, true), gray},
      {JpegHeader(3, 8, false), rgb},
      {JpegHeader(3, 8, true), rgb},
      {JpegHeader(4, 8, false), cmyk + " /DecodeParms << /ColorTransform 0 >>"},
      {JpegHeader(4, 8, true), cmyk},
      {JpegHeader(3, 8, false, 9000), rgb}};
  for (const auto& [jpeg, colors] : cases) {
    const uint32_t number = AddJpegImage(document_, jpeg, {});
    SavedDocument saved(document_);
    EXPECT_EQ(Entries(saved.Object(number)),
              "<< /BitsPerComponent 8 " + colors + " /Filter /DCTDecode /Height 3 /Width 5 >>");
    EXPECT_EQ(StreamData(saved.Object(number)), Text(jpeg));
  }
}

TEST_F(ImageTest, RejectsUnreadableJpegs) {
  const Bytes whole = JpegHeader(3, 8, false);
  for (size_t size = 0; size + 2 < whole.size(); ++size) {
    EXPECT_EQ(AddJpegImage(document_, std::span(whole).first(size), Counting(15)), 0U) << size;
  }
  for (const Bytes& jpeg : {Bytes(300, 'x'), JpegHeader(2, 8, false), JpegHeader(3, 12, false)}) {
    EXPECT_EQ(AddJpegImage(document_, jpeg, Counting(15)), 0U);
  }
}

TEST_F(ImageTest, JpegMaskHasTheSizeOfTheJpeg) {
  const Bytes alpha = Counting(16);  // one byte too many
  const Bytes jpeg = JpegHeader(3, 8, true);
  const uint32_t image = AddJpegImage(document_, jpeg, alpha);
  const uint32_t opaque = AddJpegImage(document_, jpeg, std::span(alpha).first(14));
  SavedDocument saved(document_);
  auto mask = saved.Object(image).getDict().getKey("/SMask");
  EXPECT_TRUE(mask.isIndirect());
  EXPECT_EQ(StreamData(mask), Text(Counting(15)));
  EXPECT_EQ(Entries(mask),
            "<< /BitsPerComponent 8 /ColorSpace /DeviceGray /Filter /FlateDecode /Height 3 /Width 5 >>");
  EXPECT_FALSE(saved.Object(opaque).getDict().hasKey("/SMask"));
}

TEST_F(ImageTest, PixelsAreCompressed) {
  const Bytes rgb = Counting(63);
  const Bytes alpha = Counting(21);
  const Bytes bits = Counting(10);
  const uint32_t color = AddColorImage(document_, 7, 3, rgb, alpha);
  const uint32_t blackAndWhite = AddBlackAndWhiteImage(document_, 33, 2, bits);
  SavedDocument saved(document_);
  const auto look = [](QPDFObjectHandle image) { return Entries(image) + StreamData(image); };
  EXPECT_EQ(
      look(saved.Object(color)),
      "<< /BitsPerComponent 8 /ColorSpace /DeviceRGB /Filter /FlateDecode /Height 3 /Width 7 >>" + Text(rgb));
  EXPECT_EQ(look(saved.Object(color).getDict().getKey("/SMask")),
            "<< /BitsPerComponent 8 /ColorSpace /DeviceGray /Filter /FlateDecode /Height 3 /Width 7 >>" +
                Text(alpha));
  EXPECT_EQ(look(saved.Object(blackAndWhite)),
            "<< /BitsPerComponent 1 /ColorSpace [ /Indexed /DeviceRGB 1 <000000ffffff> ] "
            "/Filter /FlateDecode /Height 2 /Width 33 >>" +
                Text(bits));
}

TEST_F(ImageTest, RejectsPixelsOfAnotherSize) {
  const Bytes bytes = Counting(12);
  const auto part = [&](size_t size) { return std::span(bytes).first(size); };
  EXPECT_EQ(AddColorImage(document_, 2, 2, part(12), part(3)), 0U);
  EXPECT_EQ(AddColorImage(document_, 2, 2, part(11), part(4)), 0U);
  EXPECT_EQ(AddColorImage(document_, 0, 2, {}, {}), 0U);
  EXPECT_EQ(AddColorImage(document_, -2, -2, part(12), part(4)), 0U);
  EXPECT_EQ(AddColorImage(document_, INT32_MAX, INT32_MAX, part(12), part(4)), 0U);
  EXPECT_EQ(AddBlackAndWhiteImage(document_, 9, 2, part(3)), 0U);
  EXPECT_EQ(AddBlackAndWhiteImage(document_, INT32_MAX, INT32_MAX, part(12)), 0U);
  EXPECT_EQ(AddBlackAndWhiteImage(document_, 8, 0, {}), 0U);
}

}  // namespace
}  // namespace hdi::engine
