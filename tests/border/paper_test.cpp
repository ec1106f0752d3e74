// From a choice of paper to the sheet, and what the host is told of it.
#include "tests/border/border.h"

namespace border {
namespace {

constexpr Sheet kDefaultSheet = {9, 2100, 2970, 50, 170, 50, 170};

class PaperTest : public BorderTest {
 protected:
  // The sheet after a choice.
  Sheet Choose(int32_t paper, int16_t orientation) {
    WriteAt(driver.Settings(), kPaperChoice, static_cast<int16_t>(paper));
    WriteAt(driver.Settings(), kOrientation, orientation);
    driver.Normalize(driver.Settings());
    return SheetOf(driver.Settings());
  }
  [[nodiscard]] bool SnapshotIsFresh() const {
    return std::memcmp(driver.Settings() + kSnapshot, driver.Settings(), kPublicSize) == 0;
  }

  Driver driver = FirstDriver();
};

TEST_F(PaperTest, PapersAreMadeChangedAndRemoved) {
  const auto ask = [](Driver asked, uint16_t capability) {
    return asked.Call<int32_t>(13, capability, static_cast<uint8_t*>(nullptr), asked.Settings());
  };
  const auto change = [&](size_t slot, const Paper& paper) {
    int32_t id = -1;
    EXPECT_EQ(driver.Call<int32_t>(slot, paper.bytes.data(), &id, driver.Settings()), 1);
    return id;
  };
  EXPECT_EQ(ask(driver, 21), 1);
  EXPECT_EQ(ask(driver, 20), 0);
  EXPECT_EQ(ask(driver, 77), -1) << "passed through";
  const int32_t before = ask(driver, 19);
  EXPECT_EQ(ask(driver, 2), before);

  const int32_t id = change(14, Paper(0, u"Strip", 1000, 9000, 11, 12, 13, 14));
  ASSERT_GT(id, 0);
  EXPECT_EQ(ask(driver, 19), before + 1);
  EXPECT_EQ(Choose(id, 1), (Sheet{id, 1000, 9000, 11, 13, 12, 14}));
  EXPECT_EQ(Choose(id, 2), (Sheet{id, 9000, 1000, 13, 12, 14, 11}));
  EXPECT_EQ(Choose(id, 3), (Sheet{id, 1000, 9000, 11, 13, 12, 14})) << "2 alone is landscape";
  const Paper wider(id, u"Strip", 1200, 9000, 21, 22, 23, 24);
  EXPECT_EQ(change(16, wider), id);
  EXPECT_EQ(Choose(id, 2), (Sheet{id, 9000, 1200, 23, 22, 24, 21}));
  EXPECT_EQ(ask(list.At(1), 19), before + 1) << "the paper file is shared";

  EXPECT_EQ(driver.Call<int32_t>(17, id), 1);
  EXPECT_EQ(ask(driver, 19), before);
  EXPECT_EQ(driver.Call<int32_t>(17, id), 0);
  EXPECT_EQ(change(16, wider), 0);
}

TEST_F(PaperTest, DeviceWithoutAPaperFileHasTheBuiltInPapersInSilence) {
  sandbox.WriteList("[general]\n[A]\nName=A\n");
  list.Create();
  const Driver bare = list.At(list.Size() - 1);
  testing::internal::CaptureStderr();
  bare.Normalize(bare.Settings());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(SheetOf(bare.Settings()), kDefaultSheet);
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

  for (const int32_t unknown : {12345, -9}) {
    EXPECT_EQ(Choose(unknown, 2), kDefaultSheet);
    EXPECT_FALSE(SnapshotIsFresh());
  }

  driver.Normalize(nullptr);
  Record other = driver.Copy();
  WriteAt<int16_t>(other.data(), kPaperChoice, 9);
  const Record own = driver.Copy();
  driver.Normalize(other.data());
  EXPECT_EQ(SheetOf(other.data()), (Sheet{9, 2970, 2100, 170, 50, 170, 50})) << "any record will do";
  EXPECT_EQ(driver.Copy(), own);
}

TEST_F(PaperTest, CustomPaperAlwaysTurnsItsMarginsAndIgnoresOrientation) {
  EXPECT_EQ(Choose(0, 1), Sheet{}) << "nothing before it is set";
  EXPECT_EQ(Choose(9, 1), kDefaultSheet);
  EXPECT_EQ(driver.SetCustomPaper(u"Mine", 1234.9, 2345.9, 1.9, -2.9, 3.9, 4.9), 1);
  EXPECT_EQ(SheetOf(driver.Settings()), kDefaultSheet) << "the record waits for the choice";
  // left 1, right -2, top 3, bottom 4, cut toward zero.
  const Sheet custom = {0, 1234, 2345, 3, -2, 4, 1};
  EXPECT_EQ(Choose(0, 1), custom);
  EXPECT_EQ(Choose(0, 2), custom);
  EXPECT_FALSE(SnapshotIsFresh());
  EXPECT_EQ(Choose(9, 1), custom) << "nothing has changed since the snapshot";
  EXPECT_EQ(driver.SetCustomPaper(std::u16string(200, u'x').c_str(), 10, 20, 0, 0, 0, 0), 1);
  EXPECT_EQ(Choose(0, 1), (Sheet{0, 10, 20, 0, 0, 0, 0})) << "seen at once, with a long name";
}

int normalizeCalls = 0;
void CountNormalize(void*, void*) { ++normalizeCalls; }

TEST_F(PaperTest, EveryCapsQueryNormalizesFirst) {
  Device device(driver);
  device.Open();
  WriteAt<int16_t>(driver.Settings(), kOrientation, 2);
  EXPECT_EQ(device.Caps(110), 7015U);
  WriteAt<int16_t>(driver.Settings(), kOrientation, 1);
  EXPECT_EQ(device.Caps(1000), 0U);
  EXPECT_EQ(SheetOf(driver.Settings()), kDefaultSheet) << "an index that is out of range, too";

  SlotPatch patch(driver);
  patch.Set(22, reinterpret_cast<void*>(&CountNormalize));
  EXPECT_EQ(device.Caps(88), 600U);
  EXPECT_EQ(normalizeCalls, 1) << "through the virtual table";
}

TEST_F(PaperTest, CustomPaperTakesThePublicSizesOnlyWhileUnchanged) {
  Device device(driver);
  device.Open();
  driver.SetCustomPaper(u"Mine", 2540, 1270, 10, 20, 30, 40);
  Choose(0, 1);
  EXPECT_EQ(device.Caps(110), 6000U);
  EXPECT_EQ(device.Caps(111), 3000U);
  EXPECT_EQ(device.Caps(8), (2540U - 30 - 40) * 600 / 254) << "margins as turned: left 30, right 40";

  WriteAt<int16_t>(driver.Settings(), kPaperWide, 254);
  WriteAt<int16_t>(driver.Settings(), kPaperLength, -508);
  std::memcpy(driver.Settings() + kSnapshot, driver.Settings(), kPublicSize);
  EXPECT_EQ(device.Caps(110), 600U);
  EXPECT_EQ(device.Caps(111), static_cast<uint32_t>(-1200)) << "read as signed";
  EXPECT_EQ(device.Caps(6), static_cast<uint32_t>((-508 - 20 - 10) / 10)) << "cut toward zero";
}

}  // namespace
}  // namespace border
