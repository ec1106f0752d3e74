// Pens, brushes, pages and the values that go to the page writer at once.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/recording/recorded_device.h"

namespace hdi {
namespace {

using testing::ElementsAre;

EXTLOGPEN32 Pen(uint32_t style, uint32_t width, uint32_t color = 0) {
  EXTLOGPEN32 pen{};
  pen.elpPenStyle = style;
  pen.elpWidth = width;
  pen.elpColor = color;
  return pen;
}

class StateTest : public testing::Test {
 protected:
  std::string RecordOf(const EXTLOGPEN32& pen) {
    EXPECT_EQ(DevSetPen(device_, &pen), 1);
    return plot_.TakeRecords().back();
  }

  RecordedDevice plot_;
  HostDevice* device_ = &plot_.device;
};

TEST_F(StateTest, PenStyles) {
  EXPECT_EQ(RecordOf(Pen(0x10000, 7, 0x030201)), "PEN 7 cap 1 join 1 030201 merge 0");
  EXPECT_EQ(RecordOf(Pen(0x11101, 0)), "PEN 0 cap 2 join 2 000000 merge 0 15 10");
  EXPECT_EQ(RecordOf(Pen(0x12202, 1)), "PEN 1 cap 0 join 0 000000 merge 0 0.5 9.5");
  EXPECT_EQ(RecordOf(Pen(3, 9)), "PEN 1 cap 1 join 1 000000 merge 0 13 6 0.5 5.5");
  for (const uint32_t solid : {4U, 5U, 6U, 8U}) {
    EXPECT_EQ(RecordOf(Pen(solid, 0)), "PEN 1 cap 1 join 1 000000 merge 0");
  }
}

TEST_F(StateTest, UserStyleEntriesBecomePoints) {
  struct {
    EXTLOGPEN32 pen = Pen(0x10007, 2);
    uint32_t secondEntry = 75;
  } words;
  words.pen.elpNumEntries = 2;
  words.pen.elpStyleEntry[0] = 300;
  plot_.Settings().dm.dmPrintQuality = 0;  // counts as 300
  EXPECT_EQ(RecordOf(words.pen), "PEN 2 cap 1 join 1 000000 merge 0 72 18");
  words.pen.elpNumEntries = -1;
  EXPECT_EQ(RecordOf(words.pen), "PEN 2 cap 1 join 1 000000 merge 0");
}

TEST_F(StateTest, ThePageWriterLearnsWidthAndScaleAtOnce) {
  (void)RecordOf(Pen(0x10000, 12));
  EXPECT_EQ(plot_.writer.lineWidth, 12.0F);
  EXPECT_EQ(DevSetLineScale(device_, 2.5), 1);
  EXPECT_EQ(plot_.writer.lineScale, 2.5);
}

TEST_F(StateTest, MergeTravelsWithTheNextPenOrBrush) {
  const LOGBRUSH brush{.lbStyle = 0, .lbColor = 0x00FF00, .lbHatch = 0};
  DevSetRasterOp(device_, 9);
  DevSetBrush(device_, &brush);
  DevSetRasterOp(device_, 13);
  DevSetBrush(device_, &brush);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("BRUSH 00ff00 merge 1", "BRUSH 00ff00 merge 0"));
}

TEST_F(StateTest, APageTakesThePaperOfTheDriversRecord) {
  DevStartPage(device_, nullptr);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("PAGE 1 595.276x841.89 ffffffff 14.1732,48.189"));
  EXPECT_DOUBLE_EQ(plot_.Job().printableHeight, 6212.59842519685);

  DriverDevMode given = plot_.Settings();
  given.dm.dmPaperSize = -7;  // no list holds it: the fields stay as given
  given.paperWidth = 254;
  given.paperHeight = 508;
  given.backgroundColor = 0;
  DevStartPage(device_, &given);
  EXPECT_THAT(plot_.TakeRecords(), ElementsAre("PAGE 2 72x144 ffffff 14.1732,48.189"));
  EXPECT_EQ(plot_.Settings().paperWidth, 254);

  given.paperWidth = 999;
  given.dm.dmDriverExtra = 0;  // only the public part is taken over
  DevStartPage(device_, &given);
  EXPECT_EQ(plot_.Settings().paperWidth, 254);
  EXPECT_EQ(plot_.Settings().dm.dmDriverExtra, 0);
}

TEST_F(StateTest, APathLeftPendingOverAPageStartIsForgotten) {
  plot_.Polyline({{1, 0}, {2, 0}});
  DevStartPage(device_, nullptr);
  DevEndPage(device_);
  const auto records = plot_.TakeRecords();
  ASSERT_EQ(records.size(), 4U);
  EXPECT_EQ(records[1], "L 2,0");
  EXPECT_EQ(records[3], "ENDPAGE");
}

}  // namespace
}  // namespace hdi
