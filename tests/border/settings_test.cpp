// The settings record, byte by byte, the operations that move or edit it, and the paper that it chooses.
#include <algorithm>
#include <numeric>

#include "tests/border/border.h"

namespace border {
namespace {

constexpr Sheet kDefaultSheet = {9, 2100, 2970, 50, 170, 50, 170};

class SettingsTest : public BorderTest {
 protected:
  // The sheet after a choice.
  Sheet Choose(int32_t paper, int16_t orientation) {
    WriteAt(record, kPaperChoice, static_cast<int16_t>(paper));
    WriteAt(record, kOrientation, orientation);
    driver.Normalize(record);
    return SheetOf(record);
  }
  [[nodiscard]] bool SnapshotIsFresh() const {
    return std::memcmp(record + kSnapshot, record, kPublicSize) == 0;
  }
  int32_t SetCustomPaper(const std::u16string& name, double width, double height, double left, double right,
                         double top, double bottom) {
    return driver.Call<int32_t>(15, name.c_str(), width, height, left, right, top, bottom);
  }

  Driver driver = FirstDriver();
  uint8_t* record = driver.Settings();
};

Record DefaultRecord() {
  Record record{};
  for (const size_t name : {0U, 440U}) std::memcpy(record.data() + name, u"PDF", 6);
  const std::pair<size_t, int16_t> shorts[] = {{64, 1}, {66, 1},    {68, 220},  {70, 1024}, {76, 1},
                                               {78, 9}, {80, 2970}, {82, 2100}, {84, 100},  {90, 600},
                                               {92, 2}, {94, 1},    {96, 600},  {98, 1}};
  for (const auto& [offset, value] : shorts) WriteAt(record.data(), offset, value);
  const std::pair<size_t, int32_t> longs[] = {{72, 0x123}, {504, 256}, {508, 9},  {512, 2100}, {516, 2970},
                                              {520, 50},   {524, 170}, {528, 50}, {532, 170},  {548, -1},
                                              {560, 32},   {600, 1},   {604, 1},  {612, 1}};
  for (const auto& [offset, value] : longs) WriteAt(record.data(), offset, value);
  return record;
}

// The size of the record when there is none.
size_t FirstDifference(const void* actual, const Record& expected) {
  const auto record = ReadAt<Record>(actual, 0);
  return static_cast<size_t>(std::ranges::mismatch(record, expected).in1 - record.begin());
}

// A record with something in every byte but the size of the driver data.
Record FullRecord(uint8_t first, uint16_t driverExtra = 1024) {
  Record record;
  std::iota(record.begin(), record.end(), first);
  WriteAt(record.data(), kDriverExtra, driverExtra);
  return record;
}

TEST_F(SettingsTest, FreshRecordHoldsTheDefaults) {
  EXPECT_EQ(FirstDifference(list.At(1).Settings(), DefaultRecord()), kRecordSize);
  EXPECT_NE(list.At(0).Settings(), list.At(1).Settings());
  EXPECT_EQ(list.At(0).Settings(), list.At(0).Settings()) << "the record itself, not a copy";
}

TEST_F(SettingsTest, RecordCrossesWholeInBothDirections) {
  const GlobalBlock block(kRecordSize);
  uint8_t* content = block.Lock();
  block.Unlock();
  WriteAt(content, 0, FullRecord(1));
  EXPECT_EQ(driver.Call<int32_t>(6, block.Handle()), 1);
  EXPECT_EQ(FirstDifference(record, FullRecord(1)), kRecordSize);
  EXPECT_FALSE(block.WasLeftLocked());

  WriteAt(content, 0, FullRecord(2));
  EXPECT_EQ(driver.Call<int32_t>(7, block.Handle()), 1);
  EXPECT_EQ(FirstDifference(content, FullRecord(1)), kRecordSize);
  EXPECT_FALSE(block.WasLeftLocked());

  EXPECT_EQ(driver.Call<int32_t>(7, static_cast<void*>(nullptr)), 1) << "nothing to give is given";
  EXPECT_EQ(driver.Call<int32_t>(6, static_cast<void*>(nullptr)), 0) << "nothing can't be locked";

  // Other sizes of driver data are refused, in a block that stays locked.
  for (const uint16_t extra : {uint16_t{0}, uint16_t{1023}, uint16_t{1025}}) {
    WriteAt(content, 0, FullRecord(3, extra));
    for (const size_t slot : {6U, 7U}) {
      EXPECT_EQ(driver.Call<int32_t>(slot, block.Handle()), 0) << extra;
      EXPECT_TRUE(block.WasLeftLocked()) << slot << ' ' << extra;
    }
    EXPECT_EQ(FirstDifference(content, FullRecord(3, extra)), kRecordSize);
  }
  EXPECT_EQ(FirstDifference(record, FullRecord(1)), kRecordSize);
}

TEST_F(SettingsTest, DefaultBlockIsOneBlockAndHoldsDefaultsAlways) {
  void* handle = driver.Call<void*>(12);
  WriteAt(record, 0, FullRecord(4));
  EXPECT_EQ(driver.Call<void*>(12), handle);
  EXPECT_GE(GlobalBlock::Call<size_t>("GlobalSize", handle), kRecordSize);
  EXPECT_EQ(FirstDifference(GlobalBlock::Call<void*>("GlobalLock", handle), DefaultRecord()), kRecordSize);
  EXPECT_EQ(GlobalBlock::Call<int32_t>("GlobalUnlock", handle), 0) << "handed out unlocked";
  EXPECT_NE(list.At(1).Call<void*>(12), handle) << "each driver owns a block";
}

TEST_F(SettingsTest, OptionsKnowTwoIds) {
  struct Case {
    uint32_t id;
    int64_t value;
    int32_t layers, open;  // behind it, 7 before
  };
  for (const Case& test : {Case{180, 0, 0, 7}, Case{180, 0x100000000, 1, 7}, Case{189, 0, 7, 0},
                           Case{189, -5, 7, 1}, Case{188, 0, 7, 7}, Case{181, 0, 7, 7}}) {
    for (const size_t offset : {kLayers, kOpenAfterPlot}) WriteAt<int32_t>(record, offset, 7);
    EXPECT_EQ(driver.Call<int32_t>(19, test.id, test.value), 1);
    EXPECT_EQ(ReadAt<int32_t>(record, kLayers), test.layers) << test.id;
    EXPECT_EQ(ReadAt<int32_t>(record, kOpenAfterPlot), test.open) << test.id;
  }
}

void* NoSettings(void*) { return nullptr; }

TEST_F(SettingsTest, BackgroundColor) {
  for (const auto& [set, read] :
       {std::pair(0xFFFFFFFFU, 0xFFFFFFFFU), {0U, 0xFFFFFFU}, {0x123456U, 0x123456U}}) {
    WriteAt(record, kBackground, set);
    EXPECT_EQ(driver.Call<uint32_t>(21), read);
  }
  driver.Patch(24, reinterpret_cast<void*>(&NoSettings));
  EXPECT_EQ(driver.Call<uint32_t>(21), 0xFFFFFFU) << "asked through the virtual table, which gave null";
}

TEST_F(SettingsTest, PaperFileIsJoinedBehindTheUsersDirectory) {
  const std::u16string user = (sandbox.User() / "").u16string();
  const std::u16string second = (sandbox.App() / "PDF.ini").u16string();
  const std::pair<const char*, std::u16string> cases[] = {{"PaperFile=my/papers.ini", u"my/papers.ini"},
                                                          {"PaperFile=", u""},
                                                          {"Name=C", second},  // a path behind a path
                                                          {"PrivateFile=x.ini\nPaperFile=d.ini", u"d.ini"}};
  for (const auto& [keys, path] : cases) {
    EXPECT_EQ(LastDriverOf(std::string("[general]\n[A]\n") + keys + "\n").Text(23), user + path);
  }
  testing::internal::CaptureStderr();
  const Driver bare = LastDriverOf("[general]\n[A]\n");
  bare.Normalize(bare.Settings());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "the built-in papers serve, in silence";
  EXPECT_EQ(SheetOf(bare.Settings()), kDefaultSheet);
}

TEST_F(SettingsTest, PapersAreMadeChangedAndRemoved) {
  alignas(8) std::array<uint8_t, 160> paper{};
  int32_t id = -1;
  const auto change = [&](size_t slot, std::array<int32_t, 6> lengths) {
    WriteAt(paper.data(), 0, id);
    WriteAt(paper.data(), 132, lengths);  // width, height, top, bottom, left, right
    EXPECT_EQ(driver.Call<int32_t>(slot, paper.data(), &id, record), 1);
  };
  const auto count = [](Driver asked) {
    return asked.Call<int32_t>(13, uint16_t{19}, static_cast<uint8_t*>(nullptr), asked.Settings());
  };
  const int32_t before = count(driver);
  change(14, {1000, 9000, 13, 14, 11, 12});
  ASSERT_EQ(id, 256);
  EXPECT_EQ(Choose(id, 1), (Sheet{id, 1000, 9000, 11, 13, 12, 14}));
  EXPECT_EQ(Choose(id, 2), (Sheet{id, 9000, 1000, 13, 12, 14, 11}));
  EXPECT_EQ(Choose(id, 3), (Sheet{id, 1000, 9000, 11, 13, 12, 14})) << "2 alone is landscape";
  change(16, {1200, 9000, 23, 24, 21, 22});
  ASSERT_EQ(id, 256);
  EXPECT_EQ(Choose(id, 2), (Sheet{id, 9000, 1200, 23, 22, 24, 21}));
  EXPECT_EQ(count(list.At(1)), before + 1) << "the paper file is shared";
  for (const int32_t removed : {1, 0}) EXPECT_EQ(driver.Call<int32_t>(17, id), removed);
  EXPECT_EQ(count(driver), before);
  change(16, {1200, 9000, 23, 24, 21, 22});
  EXPECT_EQ(id, 0);
}

TEST_F(SettingsTest, PaperIsResolvedOnceUntilSomethingChanges) {
  EXPECT_FALSE(SnapshotIsFresh());
  driver.Normalize(record);
  EXPECT_EQ(SheetOf(record), kDefaultSheet);
  EXPECT_TRUE(SnapshotIsFresh());

  WriteAt<int32_t>(record, kWidth, 4711);
  driver.Normalize(record);
  EXPECT_EQ(ReadAt<int32_t>(record, kWidth), 4711) << "nothing has changed: left alone";
  for (const size_t offset : {size_t{0}, kPublicSize - 1}) {
    WriteAt<int32_t>(record, kWidth, 4711);
    WriteAt<uint8_t>(record, offset, 'Q');
    driver.Normalize(record);
    EXPECT_EQ(SheetOf(record), kDefaultSheet) << "any byte of the public part counts";
    EXPECT_TRUE(SnapshotIsFresh());
  }
  for (const int32_t unknown : {12345, -9}) {
    EXPECT_EQ(Choose(unknown, 2), kDefaultSheet);
    EXPECT_FALSE(SnapshotIsFresh());
  }

  driver.Normalize(nullptr);
  Record other = driver.Copy();
  WriteAt<int16_t>(other.data(), kPaperChoice, 9);
  driver.Normalize(other.data());
  EXPECT_EQ(SheetOf(other.data()), (Sheet{9, 2970, 2100, 170, 50, 170, 50})) << "any record will do";
  EXPECT_EQ(SheetOf(record), kDefaultSheet);
}

TEST_F(SettingsTest, CustomPaperAlwaysTurnsItsMarginsAndIgnoresOrientation) {
  EXPECT_EQ(Choose(0, 1), Sheet{}) << "nothing before it is set";
  EXPECT_EQ(Choose(9, 1), kDefaultSheet);
  EXPECT_EQ(SetCustomPaper(u"Mine", 1234.9, 2345.9, 1.9, -2.9, 3.9, 4.9), 1);
  EXPECT_EQ(SheetOf(record), kDefaultSheet) << "the record waits for the choice";
  // left 1, right -2, top 3, bottom 4, cut toward zero.
  const Sheet custom = {0, 1234, 2345, 3, -2, 4, 1};
  EXPECT_EQ(Choose(0, 1), custom);
  EXPECT_EQ(Choose(0, 2), custom);
  EXPECT_FALSE(SnapshotIsFresh());
  EXPECT_EQ(Choose(9, 1), custom) << "nothing has changed since the snapshot";
  EXPECT_EQ(SetCustomPaper(std::u16string(200, u'x'), 10, 20, 0, 0, 0, 0), 1);
  EXPECT_EQ(Choose(0, 1), (Sheet{0, 10, 20, 0, 0, 0, 0})) << "seen at once, with a long name";
}

class CapsTest : public SettingsTest {
 protected:
  CapsTest() { device.Open(); }
  std::vector<int32_t> Caps(std::initializer_list<int32_t> indexes) {
    std::vector<int32_t> values;
    for (const int32_t index : indexes) values.push_back(static_cast<int32_t>(device.Caps(index)));
    return values;
  }

  Device device{driver};
};

TEST_F(CapsTest, OfTheDefaultSheet) {
  std::map<int32_t, uint32_t> expected = {{0, 1},      {2, 511},    {4, 200},   {6, 263},   {8, 4724},
                                          {10, 6212},  {12, 32},    {14, 3},    {16, 255},  {18, 255},
                                          {22, 255},   {24, 255},   {36, 1},    {88, 600},  {90, 600},
                                          {110, 4960}, {111, 7015}, {112, 118}, {113, 401}, {178, 2}};
  for (const int32_t own : {175, 180, 182, 183, 184, 185, 187, 191}) expected[own] = 1;
  for (int32_t index = -2; index < 200; ++index) {
    EXPECT_EQ(device.Caps(index), expected.contains(index) ? expected[index] : 0) << index;
  }
}

TEST_F(CapsTest, FollowTheRecord) {
  for (const auto& [quality, yResolution, expected] : {std::tuple(1, -300, std::vector<int32_t>{1, 1, 7}),
                                                       {0, 0, {300, 300, 2362}},
                                                       {-3, 1, {300, 1, 2362}},
                                                       {600, 300, {600, 300, 4724}}}) {
    WriteAt(record, kPrintQuality, static_cast<int16_t>(quality));
    WriteAt(record, kYResolution, static_cast<int16_t>(yResolution));
    EXPECT_EQ(Caps({88, 90, 8}), expected);
  }
  WriteAt<int16_t>(record, kOrientation, 2);
  EXPECT_EQ(device.Caps(110), 7015U);
  WriteAt<int16_t>(record, kOrientation, 1);
  EXPECT_EQ(device.Caps(1000), 0U);
  EXPECT_EQ(SheetOf(record), kDefaultSheet) << "an index that is out of range makes it up to date, too";

  SetCustomPaper(u"Mine", 2540, 1270, 10, 20, 30, 40);
  WriteAt<int16_t>(record, kPaperChoice, 0);
  // Margins as turned: left 30, top 20, right 40, bottom 10.
  EXPECT_EQ(Caps({110, 111, 8, 112, 113}), (std::vector{6000, 3000, (2540 - 30 - 40) * 600 / 254, 70, 47}));

  // The public sizes are taken only while nothing has changed.
  WriteAt<int16_t>(record, kPaperWide, 254);
  WriteAt<int16_t>(record, kPaperLength, -508);
  std::memcpy(record + kSnapshot, record, kPublicSize);
  EXPECT_EQ(Caps({110, 111, 6}), (std::vector{600, -1200, (-508 - 20 - 10) / 10}));
}

}  // namespace
}  // namespace border
