// Images of the engine's document, held against those that the engine makes itself.
#include "engine/image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <numeric>
#include <utility>

#include "core/fpdfapi/page/cpdf_image.h"
#include "core/fpdfapi/parser/cpdf_dictionary.h"
#include "core/fpdfapi/parser/cpdf_document.h"
#include "core/fpdfapi/parser/cpdf_stream.h"
#include "core/fxcrt/cfx_read_only_span_stream.h"
#include "core/fxge/dib/cfx_dibitmap.h"
#include "engine/document_implementation.h"
#include "tests/support/saved_document.h"

namespace hdi::engine {
namespace {

using Bytes = std::vector<uint8_t>;

Bytes Counting(size_t count) {
  Bytes bytes(count);
  std::iota(bytes.begin(), bytes.end(), uint8_t{1});
  return bytes;
}

void Append(Bytes& bytes, std::initializer_list<uint8_t> more) { bytes.insert(bytes.end(), more); }

// A JPEG as far as its header, 5 by 3 pixels. A comment of `padding` bytes stands before everything else.
Bytes JpegHeader(uint8_t components, uint8_t precision, bool hasAdobeMarker, size_t padding = 0) {
  const size_t length = padding + 2;
  Bytes jpeg(6 + padding, 'x');
  std::ranges::copy(
      Bytes{0xFF, 0xD8, 0xFF, 0xFE, static_cast<uint8_t>(length >> 8), static_cast<uint8_t>(length)},
      jpeg.begin());
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

// What a reader sees of an image and its mask.
std::string Described(QPDFObjectHandle image) {
  if (!image.isStream()) return "none";
  auto dictionary = image.getDict().shallowCopy();
  std::string mask;
  if (dictionary.hasKey("/SMask")) mask = " under " + Described(dictionary.getKey("/SMask"));
  dictionary.removeKey("/SMask");
  dictionary.removeKey("/Length");
  return dictionary.unparse() + StreamData(image) + mask;
}

class ImageTest : public testing::Test {
 protected:
  std::string Ours(uint32_t image) { return Described(SavedDocument(document_).Object(image)); }

  // `set` gives the engine's image its pixels.
  template <typename Set>
  std::string Engines(Set set) {
    CPDF_Document& pdf = *document_.Internals().document;
    const auto image = pdfium::MakeRetain<CPDF_Image>(&pdf);
    set(*image);
    if (image->GetStream() == nullptr) return "none";
    image->ConvertStreamToIndirectObject();
    return Ours(image->GetStream()->GetObjNum());
  }

  std::string EnginesJpeg(const Bytes& jpeg) {
    jpegs_.push_back(jpeg);
    return Engines([&](CPDF_Image& image) {
      image.SetJpegImage(pdfium::MakeRetain<CFX_ReadOnlySpanStream>(jpegs_.back()));
    });
  }

  std::string EnginesBitmap(int width, int height, FXDIB_Format format, Bytes pixels, uint32_t rowLength) {
    return Engines([&](CPDF_Image& image) {
      const auto bitmap = pdfium::MakeRetain<CFX_DIBitmap>();
      ASSERT_TRUE(bitmap->Create(width, height, format, pixels.data(), rowLength));
      image.SetImage(bitmap);
    });
  }

  Library library_;
  std::deque<Bytes> jpegs_;  // read when the document is saved
  Document document_;
};

TEST_F(ImageTest, JpegsAreTheEngines) {
  for (uint8_t components = 1; components <= 4; ++components) {
    for (const bool hasAdobeMarker : {false, true}) {
      const Bytes jpeg = JpegHeader(components, 8, hasAdobeMarker);
      EXPECT_EQ(Ours(AddJpegImage(document_, jpeg, {})), EnginesJpeg(jpeg)) << int{components};
    }
  }
  const Bytes late = JpegHeader(3, 8, false, 9000);
  const std::string image = Ours(AddJpegImage(document_, late, {}));
  EXPECT_NE(image, "none");
  EXPECT_EQ(image, EnginesJpeg(late));
}

TEST_F(ImageTest, JpegsThatCantBeReadMakeNothing) {
  const Bytes whole = JpegHeader(3, 8, false);
  for (size_t size = 0; size + 2 < whole.size(); ++size) {
    const Bytes jpeg(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size));
    EXPECT_EQ(AddJpegImage(document_, jpeg, Counting(15)), 0U) << size;
  }
  for (const Bytes& jpeg : {Bytes(300, 'x'), JpegHeader(2, 8, false), JpegHeader(3, 12, false)}) {
    EXPECT_EQ(AddJpegImage(document_, jpeg, Counting(15)), 0U);
  }
}

TEST_F(ImageTest, AJpegsMaskHasTheJpegsSize) {
  Bytes alpha = Counting(16);  // a byte too many
  const uint32_t image = AddJpegImage(document_, JpegHeader(3, 8, true), alpha);
  const uint32_t opaque = AddJpegImage(document_, JpegHeader(3, 8, true), std::span(alpha).first(14));
  SavedDocument saved(document_);
  auto mask = saved.Object(image).getDict().getKey("/SMask");
  EXPECT_TRUE(mask.isIndirect());
  EXPECT_EQ(StreamData(mask), std::string(alpha.begin(), alpha.end() - 1));
  auto dictionary = mask.getDict().shallowCopy();
  dictionary.removeKey("/Length");
  EXPECT_EQ(dictionary.unparse(),
            "<< /BitsPerComponent 8 /ColorSpace /DeviceGray /Filter /FlateDecode /Height 3 /Subtype /Image "
            "/Type /XObject /Width 5 >>");
  EXPECT_FALSE(saved.Object(opaque).getDict().hasKey("/SMask"));
}

TEST_F(ImageTest, PixelsAreTheEngines) {
  const Bytes bgra = Counting(84);
  Bytes rgb;
  Bytes alpha;
  for (size_t i = 0; i < bgra.size(); i += 4) {
    Append(rgb, {bgra[i + 2], bgra[i + 1], bgra[i]});
    alpha.push_back(bgra[i + 3]);
  }
  EXPECT_EQ(Ours(AddColorImage(document_, 7, 3, rgb, alpha)),
            EnginesBitmap(7, 3, FXDIB_Format::kBgra, bgra, 7 * 4));

  const Bytes rows = {1, 2, 3, 4, 5, 0, 0, 0, 6, 7, 8, 9, 10, 0, 0, 0};
  const Bytes bits = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
  EXPECT_EQ(Ours(AddBlackAndWhiteImage(document_, 33, 2, bits)),
            EnginesBitmap(33, 2, FXDIB_Format::k1bppRgb, rows, 8));
}

TEST_F(ImageTest, PixelsOfAnotherSizeMakeNothing) {
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
