// The settings record, byte by byte, and the operations that move or edit it.
#include <algorithm>
#include <random>

#include "border.h"

namespace border {
namespace {

class SettingsTest : public BorderTest {};

Record DefaultRecord() {
  Record record{};
  const auto setText = [&](size_t offset, const std::u16string& text) {
    std::memcpy(record.data() + offset, text.data(), text.size() * sizeof(char16_t));
  };
  const auto set16 = [&](size_t offset, int16_t value) { WriteAt(record.data(), offset, value); };
  const auto set32 = [&](size_t offset, uint32_t value) { WriteAt(record.data(), offset, value); };
  setText(0, u"PDF");
  set16(64, 1);
  set16(66, 1);
  set16(68, 220);
  set16(70, 1024);
  set32(72, 0x123);
  set16(76, 1);     // portrait
  set16(78, 9);     // the paper
  set16(80, 2970);  // its length and width
  set16(82, 2100);
  set16(84, 100);  // scale
  set16(90, 600);  // dots per inch
  set16(92, 2);
  set16(94, 1);
  set16(96, 600);
  set16(98, 1);
  setText(440, u"PDF");
  set32(504, 256);
  set32(508, 9);
  set32(512, 2100);
  set32(516, 2970);
  set32(520, 50);
  set32(524, 170);
  set32(528, 50);
  set32(532, 170);
  set32(548, 0xFFFFFFFF);
  set32(560, 32);
  set32(600, 1);
  set32(604, 1);
  set32(612, 1);
  return record;
}

// Names the bytes that differ: a plain comparison would print both records.
testing::AssertionResult Same(const Record& actual, const Record& expected) {
  testing::AssertionResult failure = testing::AssertionFailure();
  bool same = true;
  for (size_t i = 0; i < kRecordSize; ++i) {
    if (actual[i] == expected[i]) continue;
    same = false;
    failure << "byte " << i << ": " << int{actual[i]} << " for " << int{expected[i]} << "; ";
  }
  return same ? testing::AssertionSuccess() : failure;
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

  Record target = RandomRecord(2);
  block.SetContent(target);
  EXPECT_EQ(driver.Call<int32_t>(7, block.Handle()), 1);
  EXPECT_TRUE(Same(block.Content(), record));
  EXPECT_FALSE(block.WasLeftLocked());
}

TEST_F(SettingsTest, BlockWithOtherDriverDataIsRefusedAndStaysLocked) {
  const Driver driver = FirstDriver();
  const Record before = driver.Copy();
  for (const uint16_t extra : {uint16_t{0}, uint16_t{1023}, uint16_t{1025}}) {
    const GlobalBlock block(kRecordSize);
    Record record = RandomRecord(3);
    WriteAt(record.data(), kDriverExtra, extra);
    block.SetContent(record);
    EXPECT_EQ(driver.Call<int32_t>(6, block.Handle()), 0) << extra;
    EXPECT_TRUE(block.WasLeftLocked()) << "set " << extra;
    EXPECT_EQ(driver.Call<int32_t>(7, block.Handle()), 0) << extra;
    EXPECT_TRUE(block.WasLeftLocked()) << "get " << extra;
    EXPECT_TRUE(Same(block.Content(), record));
  }
  EXPECT_TRUE(Same(driver.Copy(), before));
}

TEST_F(SettingsTest, NullHandles) {
  const Driver driver = FirstDriver();
  EXPECT_EQ(driver.Call<int32_t>(7, static_cast<void*>(nullptr)), 1) << "nothing to give is given";
  EXPECT_EQ(driver.Call<int32_t>(6, static_cast<void*>(nullptr)), 0) << "nothing can't be locked";
}

TEST_F(SettingsTest, DefaultBlockIsOneBlockAndHoldsDefaultsAlways) {
  const Driver driver = FirstDriver();
  const GlobalBlock block(kRecordSize);
  block.SetContent(RandomRecord(4));
  ASSERT_EQ(driver.Call<int32_t>(6, block.Handle()), 1);

  void* handle = driver.Call<void*>(12);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(HostFunction<size_t(void*)>("GlobalSize")(handle), kRecordSize);
  void* content = HostFunction<void*(void*)>("GlobalLock")(handle);
  EXPECT_TRUE(Same(ReadAt<Record>(content, 0), DefaultRecord()));
  EXPECT_EQ(HostFunction<int32_t(void*)>("GlobalUnlock")(handle), 0) << "handed out unlocked";

  block.SetContent(RandomRecord(5));
  ASSERT_EQ(driver.Call<int32_t>(6, block.Handle()), 1);
  EXPECT_EQ(driver.Call<void*>(12), handle);
  content = HostFunction<void*(void*)>("GlobalLock")(handle);
  EXPECT_TRUE(Same(ReadAt<Record>(content, 0), DefaultRecord()));
  HostFunction<int32_t(void*)>("GlobalUnlock")(handle);
  EXPECT_NE(list.At(1).Call<void*>(12), handle) << "each driver owns a block";
}

TEST_F(SettingsTest, OptionsKnowTwoIds) {
  struct Case {
    uint32_t id;
    int64_t value;
    size_t offset;  // the field that changes, 0 for none
    int32_t result;
  };
  // The last two values are zero in their low 32 bits only.
  const Case cases[] = {{180, 0, kLayers, 0},
                        {180, 7, kLayers, 1},
                        {189, 0, kOpenAfterPlot, 0},
                        {189, -5, kOpenAfterPlot, 1},
                        {188, 0, 0, 0},
                        {181, 0, 0, 0},
                        {0, 0, 0, 0},
                        {0xFFFFFFFF, 1, 0, 0},
                        {180, 0x100000000, kLayers, 1},
                        {189, 0x100000000, kOpenAfterPlot, 1}};
  list.Create();
  const Driver driver = list.At(0);
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

TEST_F(SettingsTest, PropertiesWithoutTheirModuleSucceed) {
  const Driver driver = FirstDriver();
  const Record before = driver.Copy();
  EXPECT_EQ(driver.Call<int32_t>(4, static_cast<void*>(nullptr)), 1);
  EXPECT_TRUE(Same(driver.Copy(), before));
}

TEST_F(SettingsTest, PaperFileIsJoinedBehindTheUsersDirectory) {
  sandbox.WriteList(
      "[general]\n[A]\nPaperFile=my/papers.ini\n[B]\nPaperFile=\n[C]\nName=C\n"
      "[D]\nPrivateFile=other.ini\nPaperFile=d.ini\nName=D\n");
  list.Create();
  ASSERT_EQ(list.Size(), 4U);
  const std::string user = sandbox.User().string() + "/";
  EXPECT_EQ(Utf8(list.At(0).Text(23)), user + "my/papers.ini");
  EXPECT_EQ(Utf8(list.At(1).Text(23)), user) << "an empty value is a value";
  EXPECT_EQ(Utf8(list.At(2).Text(23)), user + sandbox.App().string() + "/PDF.ini") << "a path behind a path";
  EXPECT_EQ(Utf8(list.At(3).Text(23)), user + "d.ini") << "read from the list file all the same";
  EXPECT_EQ(list.At(3).Text(1), u"D");
}

}  // namespace
}  // namespace border
