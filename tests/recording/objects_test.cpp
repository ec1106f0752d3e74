// Rasters, links, layers and comments: what they record and what they answer.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "tests/recording/recorded_device.h"

namespace hdi {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Raster final : public RasterImage {
 public:
  const BITMAPINFOHEADER* GetImageHeader() override { return hasHeader ? &header_ : nullptr; }
  int32_t GetPixelWidth() override { return 14; }
  int32_t GetPixelHeight() override { return height; }
  int32_t HasAlphaChannel() override { return 0; }
  uint8_t* GetPixelBits() override { return nullptr; }
  uint8_t* EncodeToMemory(const char*, int32_t, uint64_t*) override { return nullptr; }
  void FreeEncoded(uint8_t*) override {}

  bool hasHeader = true;
  int32_t height = 4;

 private:
  BITMAPINFOHEADER header_{};
};

class ObjectsTest : public testing::Test {
 protected:
  RecordedDevice plot_;
  HostDevice* device_ = &plot_.device;
};

TEST_F(ObjectsTest, RastersArePlacedByTheirLowerLeftCorner) {
  plot_.Job().printableHeight = 100;
  Raster raster;
  HostImageRecord image{
      .image = &raster, .originX = 10.6, .originY = 20.2, .scaleX = 0.7, .unread = {9, 9}, .scaleY = 2};
  plot_.Settings().keepFractions = 1;
  EXPECT_EQ(DevBitmap(device_, &image), 1);
  raster.height = -4;
  plot_.Settings().keepFractions = 0;
  EXPECT_EQ(DevBitmap(device_, &image), 1);
  // The size is a difference before it is rounded.
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("BITMAP 10.6,71.8 9.799999999999999x8", "BITMAP 11,72 10x8"));

  raster.hasHeader = false;
  EXPECT_EQ(DevBitmap(device_, &image), 0);
  EXPECT_EQ(DevBitmap(device_, nullptr), 0);
}

TEST_F(ObjectsTest, LinksGetASchemeWhereTheTargetTells) {
  for (const char16_t* target :
       {u"C:\\plans\\a.dwg", u"wWw.example.org", u"www:x", u"http://x", u"x:y", u"1:y", u"", u"w"}) {
    EXPECT_EQ(DevBeginLink(device_, target), 1);
  }
  EXPECT_EQ(DevEndLink(device_), 1);
  EXPECT_THAT(plot_.TakeRecords(),
              ElementsAre("LINK file:///C:\\plans\\a.dwg", "LINK http://wWw.example.org", "LINK www:x",
                          "LINK http://x", "LINK file:///x:y", "LINK 1:y", "LINK ", "LINK w", "LINK "));
  plot_.Settings().linksEnabled = 0;
  EXPECT_EQ(DevBeginLink(device_, u"x"), 1);
  EXPECT_EQ(DevEndLink(device_), 1);
  EXPECT_THAT(plot_.TakeRecords(), IsEmpty());
  plot_.Settings().linksEnabled = 1;
  EXPECT_EQ(DevBeginLink(nullptr, u"x"), 0);
}

TEST_F(ObjectsTest, LayersAreRecordedWhenTheyChange) {
  EXPECT_EQ(DevSetLayer(device_, 7, u"Wall"), 1);
  EXPECT_EQ(DevSetLayer(device_, 0, u"Wall"), 1);
  EXPECT_EQ(DevSetLayer(device_, 0, u"WALL"), 1);
  EXPECT_EQ(DevSetLayer(device_, 0, u""), 0);
  const std::u16string longest(1023, u'x');
  EXPECT_EQ(DevSetLayer(device_, 0, longest.c_str()), 1);
  EXPECT_THAT(plot_.TakeRecords(),
              ElementsAre("LAYER Wall", "LAYER WALL", "LAYER " + std::string(1023, 'x')));
  plot_.Settings().layersEnabled = 0;
  EXPECT_EQ(DevSetLayer(device_, 0, u"Door"), 0);
  plot_.Settings().layersEnabled = 1;
  EXPECT_DEATH((void)DevSetLayer(device_, 0, (longest + u"x").c_str()), "");
}

TEST_F(ObjectsTest, CommentsHaveTheirCornersSortedAndCutToDots) {
  plot_.Job().printableHeight = 100.75;
  const int32_t rect[] = {30, -10, 5, 105};
  EXPECT_EQ(DevShxComment(device_, u"words", rect, 0x80000044), 1);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("COMMENT words -10,-4,30,95 flags 80000044 600 dpi"));
  EXPECT_EQ(DevShxComment(device_, u"", rect, 0), 0);
}

TEST_F(ObjectsTest, WhatRecordsNothingEndsThePathAllTheSame) {
  plot_.Settings().linksEnabled = 0;
  plot_.Settings().layersEnabled = 0;
  const int32_t rect[4] = {};
  const std::vector<std::function<int32_t()>> calls = {
      [&] { return DevBitmap(device_, nullptr); }, [&] { return DevBeginLink(device_, u"x"); },
      [&] { return DevEndLink(device_); }, [&] { return DevSetLayer(device_, 0, u"x"); },
      [&] { return DevShxComment(device_, u"", rect, 0); }};
  std::vector<int32_t> results;
  for (const auto& call : calls) {
    plot_.Polyline({{0, 0}, {1, 1}});
    results.push_back(call());
    const auto records = plot_.TakeRecords();
    EXPECT_EQ(records.size(), 3U);
    EXPECT_EQ(records.back(), "STROKE");
  }
  EXPECT_THAT(results, ElementsAre(0, 1, 1, 0, 0));
}

}  // namespace
}  // namespace hdi
