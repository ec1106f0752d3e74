// The text entry: what it records, what it collects, and what it answers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recording/right_to_left.h"
#include "tests/recording/recorded_device.h"

namespace hdi {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

LOGFONTW FontOf(std::u16string_view face) {
  LOGFONTW font{};
  std::ranges::copy(face, font.lfFaceName);
  return font;
}

std::u16string Reversed(std::u16string text) {
  std::vector<double> advances;
  for (const char16_t unit : text) advances.push_back(unit);
  ReverseRightToLeft(text.data(), static_cast<int32_t>(text.size()), advances.data());
  for (size_t i = 0; i < text.size(); ++i) EXPECT_EQ(advances[i], text[i]);  // they move together
  return text;
}

TEST(ReverseRightToLeft, StretchesWithTheBlanksBehind) {
  EXPECT_EQ(Reversed(u"a\u05d0\u05d1 \u05d2 b"), u"a \u05d2 \u05d1\u05d0b");
  EXPECT_EQ(Reversed(u" \u05d0\u05d1 "), u"  \u05d1\u05d0");
  EXPECT_EQ(Reversed(u"\u05d0\u05d11\u05d2\u05d3"), u"\u05d1\u05d01\u05d3\u05d2");
  EXPECT_EQ(Reversed(u"\u05d0\u05d1 (\u05d2"), u" \u05d1\u05d0(\u05d2");
  EXPECT_EQ(Reversed(u"plain text"), u"plain text");
  EXPECT_EQ(Reversed(u"\u05d0\xd83d\xde00\u05d1"), u"\u05d0\xd83d\xde00\u05d1");
  EXPECT_EQ(Reversed(u""), u"");
}

TEST(ReverseRightToLeft, EndsOfTheRanges) {
  // Two of a kind change places only when they are right-to-left. The blocks of each range end in units that
  // stand for nothing else, so a neighbour within serves as the second.
  const auto swaps = [](char16_t unit, char16_t within) {
    const std::u16string text{unit, within};
    return Reversed(text) != text;
  };
  for (const char16_t unit : {u'\u0590', u'\u08ff', u'\ufb50', u'\ufdff', u'\ufe70', u'\ufeff'}) {
    EXPECT_TRUE(swaps(unit, u'\u05d0')) << uint16_t{unit};
  }
  for (const char16_t unit : {u'\u058f', u'\u0900', u'\ufb4f', u'\ufe00', u'\ufe6f', u'\uff00'}) {
    EXPECT_FALSE(swaps(unit, u'\u05d0')) << uint16_t{unit};
  }
}

class TextTest : public testing::Test {
 protected:
  int32_t Plot(std::u16string_view face, std::u16string_view text, const std::vector<double>* advances,
               double tracking = 1) {
    const LOGFONTW font = FontOf(face);
    const HT_Double_Point at{10.5, 20.25};
    return DevText(&plot_.device, &font, &at, text.data(), static_cast<int32_t>(text.size()),
                   advances == nullptr ? nullptr : advances->data(), 12, 0.25, tracking, 0.8);
  }

  RecordedDevice plot_;
  const std::vector<double> widths_ = std::vector<double>(16, 5.0);
};

TEST_F(TextTest, RecordsBehindTheStrokeThatWasPending) {
  plot_.Job().printableHeight = 100;
  plot_.Polyline({{0, 0}, {1, 1}});
  const std::vector<double> advances{1, 2, 3};
  EXPECT_EQ(Plot(u"DejaVu Sans", u"x\u05d0\u05d1", &advances), 1);
  EXPECT_THAT(
      plot_.TakeRecords(),
      ElementsAre("M 0,100", "L 1,99", "STROKE",
                  "TEXT 10.5,79.75 78 5d1 5d0 advances 1 3 2 height 12 oblique 0.25 tracking 1 width 0.8"));
}

TEST_F(TextTest, AnswersWhetherTheTextWillShow) {
  EXPECT_EQ(Plot(u"DejaVu Sans", u"a", nullptr), 0);
  EXPECT_EQ(Plot(u"DejaVu Sans", u"a", &widths_, 1.000001), 1);
  EXPECT_EQ(Plot(u"DejaVu Sans", u"a", &widths_, 1.0001), 0);
  EXPECT_EQ(Plot(u"DejaVu Sans", u"", nullptr), 0);
  EXPECT_EQ(plot_.TakeRecords().size(), 4);  // recorded all the same
  const LOGFONTW font = FontOf(u"DejaVu Sans");
  const HT_Double_Point at{};
  EXPECT_EQ(DevText(&plot_.device, &font, &at, u"a", -1, nullptr, 1, 0, 1, 1), 1);
  plot_.Settings().textAsGeometry = 1;
  EXPECT_EQ(Plot(u"DejaVu Sans", u"z", &widths_), 0);
  EXPECT_THAT(plot_.TakeRecords(), IsEmpty());
}

TEST_F(TextTest, CollectsTheCharactersOfEachFont) {
  (void)Plot(u"DejaVu Sans", u"ab a", &widths_);
  (void)Plot(u"DejaVu Sans Mono", u"a\t", &widths_);
  (void)Plot(u"DejaVu Sans", u"c\u4e2d", &widths_);  // the last one is in another font
  (void)Plot(u"DejaVu Serif", u"", &widths_);
  std::map<std::u16string, std::vector<uint16_t>> usage;
  for (const auto& [name, characters] : plot_.Job().fontUsage) usage[name] = characters.Characters();
  ASSERT_EQ(usage.size(), 3);
  EXPECT_THAT(usage[u"DejaVu Sans"], ElementsAre(' ', 'a', 'b', 'c'));
  EXPECT_THAT(usage[u"DejaVu Sans Mono"], ElementsAre('\t', 'a'));
  EXPECT_THAT(usage.rbegin()->second, ElementsAre(0x4E2D));
}

}  // namespace
}  // namespace hdi
