// Entries for pages, links, layers and texts: unusual arguments, results, and the path that each call ends.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "recording/right_to_left.h"
#include "tests/recording/recorded_device.h"
#include "tests/support/log_font.h"

namespace hdi {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;

constexpr double kWidths[] = {1, 2, 3, 4};

class EntriesTest : public testing::Test {
 protected:
  int32_t Text(std::u16string_view text, const double* advances, double tracking = 1,
               std::u16string_view face = u"DejaVu Sans") {
    const LOGFONTW font = MakeLogFont(face);
    const HT_Double_Point at{10.5, 20.25};
    return DevText(device_, &font, &at, text.data(), static_cast<int32_t>(text.size()), advances, 12, 0.25,
                   tracking, 0.8);
  }

  RecordedDevice plot_;
  HostDevice* device_ = &plot_.device;
};

TEST_F(EntriesTest, PageTakesTheGivenRecordAndDropsThePath) {
  DriverDevMode given = plot_.Settings();
  given.dm.dmPaperSize = -7;  // not in any list: the fields stay as given
  given.paperWidth = 254;
  given.paperHeight = 508;
  plot_.Polyline({{1, 0}, {2, 0}});
  DevStartPage(device_, &given);
  DevEndPage(device_);
  EXPECT_EQ(plot_.TakeRecords(), "M 1 0, L 2 0, PAGE, ENDPAGE");
  EXPECT_EQ(plot_.Settings().paperWidth, 254);
  EXPECT_EQ(plot_.Job().pageCounter, 1U);

  given.paperWidth = 999;
  given.dm.dmDriverExtra = 0;  // only the public part is copied
  DevStartPage(device_, &given);
  EXPECT_EQ(plot_.Settings().paperWidth, 254);
  EXPECT_EQ(plot_.Settings().dm.dmDriverExtra, 0);
}

TEST_F(EntriesTest, LinksGetASchemeForPathsAndWebAddresses) {
  for (const char16_t* target :
       {u"C:\\plans\\a.dwg", u"wWw.example.org", u"www:x", u"http://x", u"x:y", u"1:y", u"", u"w"}) {
    EXPECT_EQ(DevBeginLink(device_, target), 1);
  }
  EXPECT_EQ(DevEndLink(device_), 1);
  EXPECT_EQ(plot_.TakeRecords(),
            "LINK file:///C:\\plans\\a.dwg, LINK http://wWw.example.org, LINK www:x, LINK http://x, "
            "LINK file:///x:y, LINK 1:y, LINK , LINK w, LINK ");
  EXPECT_EQ(DevBeginLink(nullptr, u"x"), 0);
}

TEST_F(EntriesTest, LayersAreRecordedOnChange) {
  const std::u16string longest(1023, u'x');
  EXPECT_EQ(DevSetLayer(device_, 7, u"Wall"), 1);
  EXPECT_EQ(DevSetLayer(device_, 0, u"Wall"), 1);
  EXPECT_EQ(DevSetLayer(device_, 0, u"WALL"), 1);
  EXPECT_EQ(DevSetLayer(device_, 0, u""), 0);
  EXPECT_EQ(DevSetLayer(device_, 0, longest.c_str()), 1);
  EXPECT_EQ(plot_.TakeRecords(), "LAYER Wall, LAYER WALL, LAYER " + std::string(1023, 'x'));
  EXPECT_DEATH((void)DevSetLayer(device_, 0, (longest + u"x").c_str()), "");
}

TEST_F(EntriesTest, CallsWithoutARecordStillEndThePath) {
  plot_.Settings().linksEnabled = 0;
  plot_.Settings().layersEnabled = 0;
  plot_.Settings().textAsGeometry = 1;
  const int32_t rect[4] = {};
  const std::vector<std::function<int32_t()>> calls = {
      [&] { return DevBitmap(device_, nullptr); }, [&] { return DevBeginLink(device_, u"x"); },
      [&] { return DevEndLink(device_); },         [&] { return DevSetLayer(device_, 0, u"x"); },
      [&] { return Text(u"x", kWidths); },         [&] { return DevShxComment(device_, u"", rect, 0); }};
  std::vector<int32_t> results;
  for (const auto& call : calls) {
    plot_.Polyline({{0, 0}, {1, 1}});
    results.push_back(call());
    EXPECT_EQ(plot_.TakeRecords(), "M 0 0, L 1 -1, STROKE");
  }
  EXPECT_THAT(results, ElementsAre(0, 1, 1, 0, 0, 0));
}

TEST_F(EntriesTest, TextsReturnWhetherTheyAreVisible) {
  EXPECT_EQ(Text(u"a", kWidths, 1.000001), 1);
  EXPECT_EQ(Text(u"a", kWidths, 1.0001), 0);
  EXPECT_EQ(Text(u"", nullptr), 0);
  EXPECT_EQ(plot_.TakeRecords(), "TEXT, TEXT, TEXT");
  const LOGFONTW font = MakeLogFont(u"DejaVu Sans");
  const HT_Double_Point at{};
  EXPECT_EQ(DevText(device_, &font, &at, u"a", -1, nullptr, 1, 0, 1, 1), 1);
  EXPECT_EQ(plot_.TakeRecords(), "");
}

std::u16string Reversed(std::u16string text) {
  std::vector<double> advances(text.begin(), text.end());
  ReverseRightToLeft(text.data(), static_cast<int32_t>(text.size()), advances.data());
  EXPECT_TRUE(std::ranges::equal(advances, text));  // they move together
  return text;
}

TEST(ReverseRightToLeft, RunsIncludeTrailingBlanks) {
  EXPECT_EQ(Reversed(u"a\u05d0\u05d1 \u05d2 b"), u"a \u05d2 \u05d1\u05d0b");
  EXPECT_EQ(Reversed(u" \u05d0\u05d1 "), u"  \u05d1\u05d0");
  EXPECT_EQ(Reversed(u"\u05d0\u05d11\u05d2\u05d3"), u"\u05d1\u05d01\u05d3\u05d2");
  EXPECT_EQ(Reversed(u"\u05d0\u05d1 (\u05d2"), u" \u05d1\u05d0(\u05d2");
  EXPECT_EQ(Reversed(u"\u05d0\xd83d\xde00\u05d1"), u"\u05d0\xd83d\xde00\u05d1");
  EXPECT_EQ(Reversed(u""), u"");
}

TEST(ReverseRightToLeft, RangesOfUnits) {
  // Two right-to-left units change places; others do not.
  const auto swaps = [](char16_t unit) {
    const std::u16string text{unit, u'\u05d0'};
    return Reversed(text) != text;
  };
  for (const char16_t unit : u"\u0590\u08ff\ufb50\ufdff\ufe70\ufeff"sv) EXPECT_TRUE(swaps(unit)) << int{unit};
  for (const char16_t unit : u"\u058f\u0900\ufb4f\ufe00\ufe6f\uff00"sv)
    EXPECT_FALSE(swaps(unit)) << int{unit};
}

}  // namespace
}  // namespace hdi
