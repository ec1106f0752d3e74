// The settings record byte by byte, the operations that copy or edit it, and its paper.
#include <algorithm>
#include <numeric>

#include "tests/border/border.h"

namespace border {
namespace {

constexpr Sheet kDefaultSheet = {9, 2100, 2970, 50, 170, 50, 170};

class SettingsTest : public BorderTest {
 protected:
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

// Returns the record's size if there is no difference.
size_t FirstDifference(const void* actual, const Record& expected) {
  const auto record = ReadAt<Record>(actual, 0);
  return static_cast<size_t>(std::ranges::mismatch(record, expected).in1 - record.begin());
}

// A record without zero bytes except for the size of the driver data.
Record FullRecord(uint8_t first, uint16_t driverExtra = 1024) {
  Record record;
  std::iota(record.begin(), record.end(), first);
  WriteAt(record.data(), kDriverExtra, driverExtra);
  return record;
}

TEST_F(SettingsTest, NewRecordHoldsTheDefaults) {
  EXPECT_EQ(FirstDifference(list.At(1).Settings(), DefaultRecord()), kRecordSize);
  EXPECT_NE(list.At(0).Settings(), list.At(1).Settings());
  EXPECT_EQ(list.At(0).Settings(), list.At(0).Settings()) << "the record itself, not a copy";
}

TEST_F(SettingsTest, RecordIsCopiedCompletelyInBothDirections) {
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

  EXPECT_EQ(driver.Call<int32_t>(7, static_cast<void*>(nullptr)), 1) << "null is accepted";
  EXPECT_EQ(driver.Call<int32_t>(6, static_cast<void*>(nullptr)), 0) << "null cannot be locked";

  // Other sizes of driver data are rejected; the block stays locked.
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

TEST_F(SettingsTest, DefaultBlockIsUniqueAndAlwaysHoldsDefaults) {
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
    int32_t layers, open;  // afterwards; 7 before
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
  EXPECT_EQ(driver.Call<uint32_t>(21), 0xFFFFFFU) << "through the patched slot, which returns null";
}

TEST_F(SettingsTest, PaperFileIsBelowTheUserDirectory) {
  const std::u16string user = (sandbox.User() / "").u16string();
  const std::u16string second = (sandbox.App() / "PDF.ini").u16string();
  const std::pair<const char*, std::u16string> cases[] = {{"PaperFile=my/papers.ini", u"my/papers.ini"},
                                                          {"PaperFile=", u""},
                                                          {"Name=C", second},  // a path appended to a path
                                                          {"PrivateFile=x.ini\nPaperFile=d.ini", u"d.ini"}};
  for (const auto& [keys, path] : cases) {
    EXPECT_EQ(LastDriverOf(std::string("[general]\n[A]\n") + keys + "\n").Text(23), user + path);
  }
  std::ofstream(sandbox.User() / "d.ini") << "[Papers]\nFormat=1\n[Paper 9]\nWidth=10\nHeight=20\n";
  const Driver one = LastDriverOf("[general]\n[A]\nPaperFile=d.ini\n");
  one.Normalize(one.Settings());
  EXPECT_EQ(SheetOf(one.Settings()), (Sheet{9, 10, 20})) << "the only paper of the file";

  testing::internal::CaptureStderr();
  const Driver bare = LastDriverOf("[general]\n[A]\n");
  bare.Normalize(bare.Settings());
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "uses the built-in papers silently";
  EXPECT_EQ(SheetOf(bare.Settings()), kDefaultSheet);
}

TEST_F(SettingsTest, PapersAreCreatedChangedAndRemoved) {
  alignas(8) std::array<uint8_t, 160> paper{};
  int32_t id = -1;
  const auto change = [&](size_t slot, std::array<int32_t, 6> lengths) {
    WriteAt(paper.data(), 0, id);
    WriteAt(paper.data(), 132, lengths);  // width, height, top, bottom, left, right
    EXPECT_EQ(driver.Call<int32_t>(slot, paper.data(), &id, record), 1);
    return id;
  };
  const auto count = [](Driver asked) {
    return asked.Call<int32_t>(13, uint16_t{19}, static_cast<uint8_t*>(nullptr), asked.Settings());
  };
  const int32_t before = count(driver);
  EXPECT_EQ(change(14, {5, 6, 0, 0, 0, 0}), 256);
  EXPECT_EQ(change(16, {1200, 9000, 23, 24, 21, 22}), 256);
  EXPECT_EQ(count(list.At(1)), before + 1) << "the paper file is shared";
  WriteAt<int16_t>(record, kPaperChoice, 256);
  driver.Normalize(record);
  EXPECT_EQ(SheetOf(record), (Sheet{256, 1200, 9000, 21, 23, 22, 24}));
  for (const int32_t removed : {1, 0}) EXPECT_EQ(driver.Call<int32_t>(17, id), removed);
  EXPECT_EQ(count(driver), before);
  EXPECT_EQ(change(16, {1200, 9000, 23, 24, 21, 22}), 0);
}

TEST_F(SettingsTest, ChosenPaperBecomesTheSheet) {
  const Sheet landscape = {9, 2970, 2100, 170, 50, 170, 50};
  const Sheet custom = {0, 1234, 2345, 3, -2, 4, 1};  // rotated, and truncated towards zero
  EXPECT_EQ(SetCustomPaper(u"Mine", 1234.9, 2345.9, 1.9, -2.9, 3.9, 4.9), 1);
  struct Step {
    size_t offset;
    int16_t value;
    Sheet sheet;
    bool isFresh;  // whether the snapshot is up to date
  };
  const Step steps[] = {
      {kOrientation, 1, kDefaultSheet, true},
      {kOrientation, 2, landscape, true},
      {kOrientation, 3, kDefaultSheet, true},                   // only 2 is landscape
      {kWidth, 4711, {9, 4711, 2970, 50, 170, 50, 170}, true},  // unchanged public part: left alone
      {0, u'Q', kDefaultSheet, true},                           // any byte of the public part counts
      {kWidth, 4711, {9, 4711, 2970, 50, 170, 50, 170}, true},
      {kPublicSize - 2, 0x100, kDefaultSheet, true},
      {kPaperChoice, 12345, kDefaultSheet, false},  // not in any list
      {kPaperChoice, -9, kDefaultSheet, false},
      {kPaperChoice, 0, custom, false},
      {kPaperChoice, 9, custom, true},  // unchanged since the snapshot
      {kOrientation, 2, landscape, true},
      {kPaperChoice, 0, custom, false},
      {kOrientation, 1, custom, false},
  };
  for (const auto& [offset, value, sheet, isFresh] : steps) {
    WriteAt(record, offset, value);
    driver.Normalize(record);
    EXPECT_EQ(SheetOf(record), sheet) << offset << ' ' << value;
    EXPECT_EQ(std::memcmp(record + kSnapshot, record, kPublicSize) == 0, isFresh) << offset << ' ' << value;
  }
  EXPECT_EQ(SetCustomPaper(std::u16string(200, u'x'), 10, 20, 0, 0, 0, 0), 1);
  Record other = driver.Copy();
  driver.Normalize(other.data());
  EXPECT_EQ(SheetOf(other.data()), (Sheet{0, 10, 20, 0, 0, 0, 0})) << "any record, and a long name";
  EXPECT_EQ(SheetOf(record), custom);
  driver.Normalize(nullptr);
}

TEST_F(SettingsTest, CapabilitiesOfTheDefaultSheet) {
  std::map<int32_t, uint32_t> expected = {{0, 1},      {2, 511},    {4, 200},   {6, 263},   {8, 4724},
                                          {10, 6212},  {12, 32},    {14, 3},    {16, 255},  {18, 255},
                                          {22, 255},   {24, 255},   {36, 1},    {88, 600},  {90, 600},
                                          {110, 4960}, {111, 7015}, {112, 118}, {113, 401}, {178, 2}};
  for (const int32_t own : {175, 180, 182, 183, 184, 185, 187, 191}) expected[own] = 1;
  Device device(driver);
  device.Open();
  for (int32_t index = -2; index < 200; ++index) {
    EXPECT_EQ(device.Caps(index), expected.contains(index) ? expected[index] : 0) << index;
  }
}

TEST_F(SettingsTest, CapabilitiesFollowTheRecord) {
  SetCustomPaper(u"Mine", 2540, 1270, 10, 20, 30, 40);
  Device device(driver);
  device.Open();
  WriteAt<int16_t>(record, kOrientation, 2);
  EXPECT_EQ(device.Caps(1000), 0U);
  EXPECT_EQ(SheetOf(record)[1], 2970) << "an index out of range also updates the sheet";
  struct Step {
    size_t offset;
    int16_t value;
    int32_t index, result;
  };
  const Step steps[] = {
      {kPrintQuality, 1, 8, 10},
      {kPrintQuality, 0, 8, 3106},
      {kPrintQuality, -3, 88, 300},
      {kYResolution, 0, 90, 300},
      {kYResolution, -1, 90, 300},
      {kYResolution, 1, 90, 1},
      {kPrintQuality, 600, 88, 600},
      {kYResolution, 300, 90, 300},
      {kOrientation, 1, 110, 4960},
      // Margins as rotated: left 30, top 20, right 40, bottom 10.
      {kPaperChoice, 0, 110, 6000},
      {kPaperChoice, 0, 111, 3000},
      {kPaperChoice, 0, 112, 70},
      {kPaperChoice, 0, 113, 47},
      {kPaperChoice, 0, 8, 5834},
  };
  for (const auto& [offset, value, index, result] : steps) {
    WriteAt(record, offset, value);
    EXPECT_EQ(static_cast<int32_t>(device.Caps(index)), result) << offset << ' ' << value << ' ' << index;
  }
  // The public sizes are only used while nothing has changed.
  WriteAt<int16_t>(record, kPaperWide, 254);
  WriteAt<int16_t>(record, kPaperLength, -508);
  std::memcpy(record + kSnapshot, record, kPublicSize);
  for (const auto& [index, result] : {std::pair(110, 600), {111, -1200}, {6, (-508 - 20 - 10) / 10}}) {
    EXPECT_EQ(static_cast<int32_t>(device.Caps(index)), result) << index;
  }
}

}  // namespace
}  // namespace border
