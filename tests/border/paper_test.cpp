// From a choice of paper to the sheet, and what the host is told of it.
#include <algorithm>
#include <limits>

#include "border.h"

namespace border {
namespace {

constexpr Sheet kDefaultSheet = {9, 2100, 2970, 50, 170, 50, 170};

class PaperTest : public BorderTest {
 protected:
  void Choose(int16_t paper, int16_t orientation) {
    WriteAt(driver.Settings(), kPaperChoice, paper);
    WriteAt(driver.Settings(), kOrientation, orientation);
  }
  void TakeSnapshot() { std::memcpy(driver.Settings() + kSnapshot, driver.Settings(), kPublicSize); }
  [[nodiscard]] bool SnapshotIsFresh() {
    return std::memcmp(driver.Settings() + kSnapshot, driver.Settings(), kPublicSize) == 0;
  }
  // Adds a paper through the driver and gives its id.
  int32_t Add(const Paper& paper) {
    int32_t id = -1;
    EXPECT_EQ(driver.Call<int32_t>(14, paper.bytes.data(), &id, driver.Settings()), 1);
    return id;
  }

  Driver driver = FirstDriver();
};

TEST_F(PaperTest, BuiltInListHoldsA4) {
  const std::vector<Paper> papers = driver.Papers();
  ASSERT_GT(papers.size(), 1U);
  const auto a4 = std::find_if(papers.begin(), papers.end(), [](const Paper& p) { return p.At(0) == 9; });
  ASSERT_NE(a4, papers.end());
  EXPECT_EQ(a4->At(132), 2100);
  EXPECT_EQ(a4->At(136), 2970);
  EXPECT_EQ(a4->At(140), 170) << "top";
  EXPECT_EQ(a4->At(144), 170) << "bottom";
  EXPECT_EQ(a4->At(148), 50) << "left";
  EXPECT_EQ(a4->At(152), 50) << "right";
}

TEST_F(PaperTest, Capabilities) {
  uint8_t output[16] = {7, 7, 7};
  const auto ask = [&](uint16_t capability) {
    return driver.Call<int32_t>(13, capability, static_cast<uint8_t*>(output), driver.Settings());
  };
  EXPECT_EQ(ask(21), 1);
  EXPECT_EQ(ask(20), 0);
  EXPECT_EQ(output[0], 7);
  EXPECT_EQ(ask(77), -1) << "passed through";
  const auto count = driver.Call<int32_t>(13, uint16_t{2}, static_cast<uint8_t*>(nullptr), driver.Settings());
  EXPECT_EQ(static_cast<size_t>(count), driver.Papers().size());
}

TEST_F(PaperTest, PapersAreMadeChangedAndRemoved) {
  const size_t before = driver.Papers().size();
  const int32_t id = Add(Paper(0, u"Strip", 1000, 9000, 11, 12, 13, 14));
  ASSERT_GT(id, 0);
  EXPECT_EQ(driver.Papers().size(), before + 1);
  Choose(static_cast<int16_t>(id), 1);
  driver.Normalize(driver.Settings());
  EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{id, 1000, 9000, 11, 13, 12, 14}));

  int32_t changed = -1;
  const Paper wider(id, u"Strip", 1200, 9000, 21, 22, 23, 24);
  EXPECT_EQ(driver.Call<int32_t>(16, wider.bytes.data(), &changed, driver.Settings()), 1);
  EXPECT_EQ(changed, id);
  Choose(static_cast<int16_t>(id), 2);
  driver.Normalize(driver.Settings());
  EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{id, 9000, 1200, 23, 22, 24, 21}));

  DriverList others(module);
  others.Create();
  EXPECT_EQ(others.At(1).Papers().size(), before + 1) << "the paper file is shared and kept";

  EXPECT_EQ(driver.Call<int32_t>(17, id), 1);
  EXPECT_EQ(driver.Papers().size(), before);
  EXPECT_EQ(driver.Call<int32_t>(17, id), 0) << "the library's answer";
  EXPECT_EQ(driver.Call<int32_t>(16, wider.bytes.data(), &changed, driver.Settings()), 1);
  EXPECT_EQ(changed, 0) << "the library's answer";
}

TEST_F(PaperTest, ResolvesThePaperOnceUntilSomethingChanges) {
  EXPECT_FALSE(SnapshotIsFresh());
  driver.Normalize(driver.Settings());
  EXPECT_EQ(SheetOf(driver.Settings()), kDefaultSheet);
  EXPECT_TRUE(SnapshotIsFresh());

  WriteAt<int32_t>(driver.Settings(), kWidth, 4711);
  driver.Normalize(driver.Settings());
  EXPECT_EQ(ReadAt<int32_t>(driver.Settings(), kWidth), 4711) << "nothing has changed: left alone";
  WriteAt<char16_t>(driver.Settings(), 0, u'Q');
  driver.Normalize(driver.Settings());
  EXPECT_EQ(SheetOf(driver.Settings()), kDefaultSheet) << "any byte of the public part counts";
  EXPECT_TRUE(SnapshotIsFresh());
}

TEST_F(PaperTest, LandscapeTurnsTheMarginsAlong) {
  const auto id = static_cast<int16_t>(Add(Paper(0, u"Uneven", 2000, 3000, 1, 2, 3, 4)));
  Choose(id, 1);
  driver.Normalize(driver.Settings());
  EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{id, 2000, 3000, 1, 3, 2, 4}));
  Choose(id, 2);
  driver.Normalize(driver.Settings());
  EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{id, 3000, 2000, 3, 2, 4, 1}));
  Choose(id, 3);
  driver.Normalize(driver.Settings());
  EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{id, 2000, 3000, 1, 3, 2, 4})) << "2 alone is landscape";
}

TEST_F(PaperTest, UnknownPaperChangesNothing) {
  driver.Normalize(driver.Settings());
  for (const int16_t paper : {int16_t{12345}, int16_t{-9}}) {
    Choose(paper, 2);
    const Record before = driver.Copy();
    driver.Normalize(driver.Settings());
    EXPECT_EQ(driver.Copy(), before) << paper;
  }
}

TEST_F(PaperTest, CustomPaperAlwaysTurnsItsMarginsAndIgnoresOrientation) {
  const Record before = driver.Copy();
  EXPECT_EQ(driver.SetCustomPaper(u"Mine", 1234.9, 2345.9, 1.9, -2.9, 3.9, 4.9), 1);
  EXPECT_EQ(driver.Copy(), before) << "the record waits for the choice";
  for (const int16_t orientation : {int16_t{1}, int16_t{2}}) {
    Choose(0, orientation);
    const Record chosen = driver.Copy();
    driver.Normalize(driver.Settings());
    // left 1, right -2, top 3, bottom 4, cut toward zero.
    EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{0, 1234, 2345, 3, -2, 4, 1})) << orientation;
    EXPECT_EQ(std::memcmp(driver.Settings() + kSnapshot, chosen.data() + kSnapshot, kPublicSize), 0)
        << "the snapshot is left alone";
  }
  EXPECT_EQ(driver.SetCustomPaper(std::u16string(200, u'x').c_str(), 10, 20, 0, 0, 0, 0), 1);
  driver.Normalize(driver.Settings());
  EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{0, 10, 20, 0, 0, 0, 0})) << "seen at once, with a long name";
}

TEST_F(PaperTest, CustomPaperIsNothingBeforeItIsSet) {
  Choose(0, 1);
  driver.Normalize(driver.Settings());
  EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(PaperTest, ReturningToAnUnchangedPaperKeepsTheCustomSizes) {
  driver.Normalize(driver.Settings());
  driver.SetCustomPaper(u"Mine", 1000, 2000, 1, 2, 3, 4);
  Choose(0, 1);
  driver.Normalize(driver.Settings());
  Choose(9, 1);
  driver.Normalize(driver.Settings());
  EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{0, 1000, 2000, 3, 2, 4, 1}));
}

TEST_F(PaperTest, AnyRecordCanBeNormalized) {
  driver.Normalize(nullptr);
  Record other = driver.Copy();
  WriteAt<int16_t>(other.data(), kOrientation, 2);
  const Record own = driver.Copy();
  driver.Normalize(other.data());
  EXPECT_EQ(SheetOf(other.data()), (Sheet{9, 2970, 2100, 170, 50, 170, 50}));
  EXPECT_EQ(driver.Copy(), own);
}

class CapsTest : public PaperTest {
 protected:
  CapsTest() { device.Open(); }
  Device device{driver};
};

TEST_F(CapsTest, AnswersOfTheDefaultRecord) {
  std::map<int32_t, uint32_t> expected = {{0, 1},      {2, 511},    {4, 200},   {6, 263},   {8, 4724},
                                          {10, 6212},  {12, 32},    {14, 3},    {16, 255},  {18, 255},
                                          {22, 255},   {24, 255},   {36, 1},    {88, 600},  {90, 600},
                                          {110, 4960}, {111, 7015}, {112, 118}, {113, 401}, {178, 2}};
  for (const int32_t index : {175, 180, 182, 183, 184, 185, 187, 191}) expected[index] = 1;
  for (int32_t index = -300; index <= 300; ++index) {
    EXPECT_EQ(device.Caps(index), expected.contains(index) ? expected[index] : 0) << index;
  }
  EXPECT_EQ(device.Caps(std::numeric_limits<int32_t>::min()), 0U);
  EXPECT_EQ(device.Caps(std::numeric_limits<int32_t>::max()), 0U);
}

TEST_F(CapsTest, Resolution) {
  struct Case {
    int16_t quality;
    int16_t yResolution;
    std::map<int32_t, uint32_t> expected;
  };
  const Case cases[] = {
      {0, 600, {{8, 2362}, {10, 3106}, {88, 300}, {90, 600}}},
      {-3, 0, {{8, 2362}, {88, 300}, {90, 300}, {112, 59}}},
      {600, 0, {{88, 600}, {90, 600}}},
      {600, -1, {{88, 600}, {90, 600}}},
      {600, 300, {{8, 4724}, {10, 6212}, {88, 600}, {90, 300}, {110, 4960}, {111, 7015}, {113, 401}}},
      {1, 1, {{8, 7}, {10, 10}, {88, 1}, {90, 1}, {112, 0}}},
  };
  for (const Case& test : cases) {
    WriteAt(driver.Settings(), kPrintQuality, test.quality);
    WriteAt(driver.Settings(), kYResolution, test.yResolution);
    for (const auto& [index, value] : test.expected) {
      EXPECT_EQ(device.Caps(index), value) << test.quality << " " << test.yResolution << " " << index;
    }
  }
}

TEST_F(CapsTest, EveryQueryNormalizesFirst) {
  Choose(9, 2);
  EXPECT_EQ(device.Caps(110), 7015U);
  EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{9, 2970, 2100, 170, 50, 170, 50}));
  Choose(9, 1);
  EXPECT_EQ(device.Caps(1000), 0U);
  EXPECT_EQ(SheetOf(driver.Settings()), kDefaultSheet) << "an index that is out of range, too";
}

int normalizeCalls = 0;
void CountNormalize(void*, void*) { ++normalizeCalls; }

TEST_F(CapsTest, NormalizesThroughTheVirtualTable) {
  SlotPatch patch(driver);
  patch.Set(22, reinterpret_cast<void*>(&CountNormalize));
  normalizeCalls = 0;
  EXPECT_EQ(device.Caps(88), 600U);
  EXPECT_EQ(normalizeCalls, 1);
}

TEST_F(CapsTest, CustomPaperTakesThePublicSizesOnlyWhileUnchanged) {
  driver.SetCustomPaper(u"Mine", 2540, 1270, 10, 20, 30, 40);
  Choose(0, 1);
  EXPECT_EQ(device.Caps(110), 6000U);
  EXPECT_EQ(device.Caps(111), 3000U);
  EXPECT_EQ(device.Caps(8), (2540U - 30 - 40) * 600 / 254) << "margins as turned: left 30, right 40";
  EXPECT_EQ(device.Caps(10), (1270U - 20 - 10) * 600 / 254);

  // Nothing has changed since the snapshot, so the public part's own sizes count.
  WriteAt<int16_t>(driver.Settings(), kPaperWide, 254);
  WriteAt<int16_t>(driver.Settings(), kPaperLength, -508);
  TakeSnapshot();
  EXPECT_EQ(device.Caps(110), 600U);
  EXPECT_EQ(device.Caps(111), static_cast<uint32_t>(-1200)) << "read as signed";
  EXPECT_EQ(device.Caps(4), (254U - 30 - 40) / 10);
  EXPECT_EQ(device.Caps(6), static_cast<uint32_t>((-508 - 20 - 10) / 10)) << "cut toward zero";
}

TEST_F(CapsTest, OffsetsAreTheMargins) {
  driver.SetCustomPaper(u"Mine", 2540, 1270, 10, 254, 508, 40);
  Choose(0, 1);
  EXPECT_EQ(device.Caps(112), 1200U) << "the custom top margin stands on the left";
  EXPECT_EQ(device.Caps(113), 600U) << "and the right one on top";
}

}  // namespace
}  // namespace border
