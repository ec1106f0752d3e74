// The settings record, byte by byte, and the operations that move or edit it.
#include <algorithm>
#include <random>

#include "tests/border/border.h"

namespace border {
namespace {

class SettingsTest : public BorderTest {};

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

// Names the bytes that differ: a plain comparison would print both records.
testing::AssertionResult Same(const Record& actual, const Record& expected) {
  testing::AssertionResult failure = testing::AssertionFailure();
  for (size_t i = 0; i < kRecordSize; ++i) {
    if (actual[i] != expected[i])
      failure << i << ": " << int{actual[i]} << " for " << int{expected[i]} << "; ";
  }
  return actual == expected ? testing::AssertionSuccess() : failure;
}

// A record with something in every byte but the size of the driver data.
Record RandomRecord(uint32_t seed) {
  std::mt19937 random(seed);
  Record record;
  std::generate(record.begin(), record.end(), [&] { return static_cast<uint8_t>(random()); });
  WriteAt<uint16_t>(record.data(), kDriverExtra, 1024);
  return record;
}

TEST_F(SettingsTest, FreshRecordHoldsTheDefaults) {
  list.Create();
  EXPECT_TRUE(Same(list.At(0).Copy(), DefaultRecord()));
  EXPECT_TRUE(Same(list.At(1).Copy(), DefaultRecord()));
  EXPECT_NE(list.At(0).Settings(), list.At(1).Settings());
  EXPECT_EQ(list.At(0).Settings(), list.At(0).Settings()) << "the record itself, not a copy";
}

TEST_F(SettingsTest, RecordCrossesWholeInBothDirections) {
  const Driver driver = FirstDriver();
  const GlobalBlock block(kRecordSize);
  const Record record = RandomRecord(1);
  block.SetContent(record);
  EXPECT_EQ(driver.Call<int32_t>(6, block.Handle()), 1);
  EXPECT_TRUE(Same(driver.Copy(), record));
  EXPECT_FALSE(block.WasLeftLocked());

  block.SetContent(RandomRecord(2));
  EXPECT_EQ(driver.Call<int32_t>(7, block.Handle()), 1);
  EXPECT_TRUE(Same(block.Content(), record));
  EXPECT_FALSE(block.WasLeftLocked());

  EXPECT_EQ(driver.Call<int32_t>(7, static_cast<void*>(nullptr)), 1) << "nothing to give is given";
  EXPECT_EQ(driver.Call<int32_t>(6, static_cast<void*>(nullptr)), 0) << "nothing can't be locked";
}

TEST_F(SettingsTest, BlockWithOtherDriverDataIsRefusedAndStaysLocked) {
  const Driver driver = FirstDriver();
  const Record before = driver.Copy();
  for (const uint16_t extra : {uint16_t{0}, uint16_t{1023}, uint16_t{1025}}) {
    const GlobalBlock block(kRecordSize);
    Record record = RandomRecord(3);
    WriteAt(record.data(), kDriverExtra, extra);
    block.SetContent(record);
    for (const size_t slot : {6U, 7U}) {
      EXPECT_EQ(driver.Call<int32_t>(slot, block.Handle()), 0) << extra;
      EXPECT_TRUE(block.WasLeftLocked()) << slot << ' ' << extra;
    }
    EXPECT_TRUE(Same(block.Content(), record));
  }
  EXPECT_TRUE(Same(driver.Copy(), before));
}

TEST_F(SettingsTest, DefaultBlockIsOneBlockAndHoldsDefaultsAlways) {
  const Driver driver = FirstDriver();
  void* handle = nullptr;
  for (const uint32_t seed : {4U, 5U}) {
    WriteAt(driver.Settings(), 0, RandomRecord(seed));
    void* again = driver.Call<void*>(12);
    ASSERT_NE(again, nullptr);
    EXPECT_TRUE(handle == nullptr || handle == again);
    handle = again;
    EXPECT_GE(MemoryFunction<size_t(void*)>("GlobalSize")(handle), kRecordSize);
    const void* content = MemoryFunction<void*(void*)>("GlobalLock")(handle);
    EXPECT_TRUE(Same(ReadAt<Record>(content, 0), DefaultRecord()));
    EXPECT_EQ(MemoryFunction<int32_t(void*)>("GlobalUnlock")(handle), 0) << "handed out unlocked";
  }
  EXPECT_NE(list.At(1).Call<void*>(12), handle) << "each driver owns a block";
}

TEST_F(SettingsTest, OptionsKnowTwoIds) {
  struct Case {
    uint32_t id;
    int64_t value;
    size_t offset;  // the field that changes, 0 for none
    int32_t result;
  };
  const Case cases[] = {
      {180, 0, kLayers, 0},        {180, 0x100000000, kLayers, 1},  // zero in its low 32 bits only
      {189, 0, kOpenAfterPlot, 0}, {189, -5, kOpenAfterPlot, 1},   {188, 0, 0, 0}, {181, 0, 0, 0},
      {0xFFFFFFFF, 1, 0, 0}};
  const Driver driver = FirstDriver();
  for (const Case& test : cases) {
    Record expected = DefaultRecord();
    WriteAt(driver.Settings(), 0, expected);
    if (test.offset != 0) {
      WriteAt<int32_t>(driver.Settings(), test.offset, 1 - test.result);
      WriteAt(expected.data(), test.offset, test.result);
    }
    EXPECT_EQ(driver.Call<int32_t>(19, test.id, test.value), 1);
    EXPECT_TRUE(Same(driver.Copy(), expected)) << "option " << test.id << " value " << test.value;
  }
}

void* NoSettings(void*) { return nullptr; }

TEST_F(SettingsTest, BackgroundColor) {
  const Driver driver = FirstDriver();
  EXPECT_EQ(driver.Call<uint32_t>(21), 0xFFFFFFFFU) << "fresh: none";
  WriteAt<uint32_t>(driver.Settings(), kBackground, 0);
  EXPECT_EQ(driver.Call<uint32_t>(21), 0xFFFFFFU) << "black is read as white";
  WriteAt<uint32_t>(driver.Settings(), kBackground, 0x123456);
  EXPECT_EQ(driver.Call<uint32_t>(21), 0x123456U);
  SlotPatch patch(driver);
  patch.Set(24, reinterpret_cast<void*>(&NoSettings));
  EXPECT_EQ(driver.Call<uint32_t>(21), 0xFFFFFFU) << "asked through the virtual table, which gave null";
}

TEST_F(SettingsTest, PaperFileIsJoinedBehindTheUsersDirectory) {
  sandbox.WriteList(
      "[general]\n[A]\nPaperFile=my/papers.ini\n[B]\nPaperFile=\n[C]\nName=C\n"
      "[D]\nPrivateFile=other.ini\nPaperFile=d.ini\n");
  list.Create();
  ASSERT_EQ(list.Size(), 4U);
  const std::u16string user = (sandbox.User() / "").u16string();
  const std::u16string second = (sandbox.App() / "PDF.ini").u16string();
  EXPECT_EQ(list.At(0).Text(23), user + u"my/papers.ini");
  EXPECT_EQ(list.At(1).Text(23), user) << "an empty value is a value";
  EXPECT_EQ(list.At(2).Text(23), user + second) << "a path behind a path";
  EXPECT_EQ(list.At(3).Text(23), user + u"d.ini") << "read from the list file all the same";
}

}  // namespace
}  // namespace border
