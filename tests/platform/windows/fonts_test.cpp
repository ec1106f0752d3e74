// Font data from GDI, and the system's subsetter.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/font_services.h"
#include "platform/font_subsetter.h"

namespace hdi {
namespace {

LOGFONTW Font(const std::u16string& family, bool isItalic = false) {
  LOGFONTW font = {};
  font.lfHeight = -100;
  font.lfWeight = 400;
  font.lfItalic = isItalic ? 1 : 0;
  font.lfCharSet = 1;
  std::copy(family.begin(), family.end(), font.lfFaceName);
  return font;
}

std::vector<uint8_t> Data(const LOGFONTW& font, uint32_t table) {
  const auto platformFont = SystemFontServices().CreateFontIndirect(font);
  const uint32_t size = platformFont->GetFontData(table, nullptr, 0);
  if (size == kNoFontData) return {};
  std::vector<uint8_t> bytes(size);
  EXPECT_EQ(platformFont->GetFontData(table, bytes.data(), size), size);
  return bytes;
}

TEST(GdiFonts, GiveTheFileOrTheCollection) {
  const std::vector<uint8_t> file = Data(Font(u"Liberation Sans"), kWholeFontFile);
  ASSERT_GT(file.size(), 100000U);
  EXPECT_EQ(std::vector<uint8_t>(file.begin(), file.begin() + 4), (std::vector<uint8_t>{0, 1, 0, 0}));
  EXPECT_TRUE(Data(Font(u"Liberation Sans"), kFontCollection).empty());
  const std::vector<uint8_t> collection = Data(Font(u"WenQuanYi Zen Hei"), kFontCollection);
  ASSERT_GT(collection.size(), 100000U);
  EXPECT_EQ(std::string(collection.begin(), collection.begin() + 4), "ttcf");
}

TEST(GdiFonts, KnowTheirSlantAndTheInterfaceFont) {
  const auto slant = [](const LOGFONTW& font) {
    return SystemFontServices().CreateFontIndirect(font)->ItalicAngle();
  };
  EXPECT_EQ(slant(Font(u"Liberation Sans")), 0);
  // A face without an italic of its own stands upright, whatever GDI does to it.
  EXPECT_EQ(slant(Font(u"WenQuanYi Zen Hei", true)), 0);
  const auto interfaceFont = SystemFontServices().DefaultInterfaceFont();
  ASSERT_TRUE(interfaceFont);
  EXPECT_NE(interfaceFont->lfFaceName[0], 0);
}

TEST(GdiFonts, GoThroughTheSubsetterWithOurAllocator) {
  CreateFontPackageFunction* const createFontPackage = FindCreateFontPackage();
  ASSERT_NE(createFontPackage, nullptr);
  EXPECT_EQ(FindCreateFontPackage(), createFontPackage);
  const std::vector<uint8_t> file = Data(Font(u"Liberation Sans"), kWholeFontFile);
  const uint16_t keep[] = {'a', 'b'};
  uint8_t* package = nullptr;
  uint32_t size = 0;
  uint32_t written = 0;
  createFontPackage(file.data(), static_cast<uint32_t>(file.size()), &package, &size, &written,
                    kSubsetFlagSubset, 0, kSubsetPlainFormat, kSubsetAnyLanguage, kSubsetMicrosoftPlatform,
                    kSubsetAnyEncoding, keep, 2, std::malloc, std::realloc, std::free, nullptr);
  ASSERT_NE(package, nullptr);
  EXPECT_GT(written, 0U);
  EXPECT_LE(written, size);
  std::free(package);
}

}  // namespace
}  // namespace hdi
