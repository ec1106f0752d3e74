// Arenas and records: chunks, packed layouts, and the effect of opening and closing a job.
#include "recording/command_list.h"

#include <gtest/gtest.h>

#include "tests/recording/recorded_device.h"

namespace hdi {
namespace {

constexpr size_t kChunk = CommandArena::kChunkSize;

class ArenaTest : public testing::Test {
 protected:
  void TearDown() override {
    ReleaseChunks(recordArena);
    ReleaseChunks(sideArena);
  }
};

TEST_F(ArenaTest, RecordFitsTheLast56BytesOfAChunkButNot55) {
  const PlotCommand* first = AllocRecord();
  const ArenaChunk* chunk = recordArena.current;
  EXPECT_EQ(reinterpret_cast<const uint8_t*>(first), chunk->base);
  constexpr size_t kRecordsPerChunk = 37449;
  for (size_t i = 1; i < kRecordsPerChunk; ++i) (void)AllocRecord();
  EXPECT_EQ(recordArena.current, chunk);
  EXPECT_EQ(recordArena.Room(), 8U);
  (void)AllocRecord();
  EXPECT_NE(recordArena.current, chunk);
  EXPECT_EQ(recordArena.current->previous, chunk);
  EXPECT_EQ(recordArena.newest, recordArena.current);

  recordArena.current->cursor = recordArena.current->limit - sizeof(PlotCommand);
  const ArenaChunk* second = recordArena.current;
  (void)AllocRecord();
  EXPECT_EQ(recordArena.current, second);
  EXPECT_EQ(recordArena.Room(), 0U);
}

TEST_F(ArenaTest, SideDataIsPackedAndLargeRequestsGetTheirOwnChunk) {
  const uint8_t* a = AllocSide(17);
  EXPECT_EQ(AllocSide(4), a + 17);
  const uint8_t* whole = AllocSide(kChunk);
  EXPECT_EQ(whole, sideArena.current->base);
  EXPECT_EQ(sideArena.current->limit - sideArena.current->base, static_cast<ptrdiff_t>(kChunk));
  EXPECT_EQ(sideArena.Room(), 0U);
  const uint8_t* large = AllocSide(kChunk + 1);
  EXPECT_EQ(sideArena.current->limit - large, static_cast<ptrdiff_t>(kChunk + 1));
  (void)AllocSide(4);
  EXPECT_EQ(sideArena.Room(), kChunk - 4);

  ReleaseChunks(sideArena);
  EXPECT_EQ(sideArena.newest, nullptr);
  EXPECT_EQ(sideArena.current, nullptr);
  (void)AllocSide(1);
  EXPECT_EQ(sideArena.current->previous, nullptr);
}

TEST(Record, TopTwoBitsOfTheOpcodeByteAreIgnored) {
  PlotCommand record{};
  record.opcodeByte = 0x5B;
  EXPECT_EQ(record.OpcodeValue(), OP_MOVE_TO);
  record.SetOpcode(OP_STROKE_PATH);
  EXPECT_EQ(record.opcodeByte, 0x40 | OP_STROKE_PATH);
  EXPECT_EQ(record.OpcodeValue(), OP_STROKE_PATH);
}

TEST(JobList, StartsWithItsHeadAndASecondOpenKeepsOnlySideData) {
  RecordedDevice first;
  EXPECT_EQ(first.Job().head, first.Job().tail);
  EXPECT_EQ(first.Job().head->OpcodeValue(), OP_LIST_HEAD);
  EXPECT_EQ(first.Job().head->next, nullptr);

  DevSetAlpha(&first.device, 7);
  const ArenaChunk* side = sideArena.current;
  CPDFDriver other(u"other");
  HostDevice device{};
  device.driver = &other;
  other.OpenDevice(&device);
  EXPECT_EQ(recordArena.current->previous, nullptr);
  EXPECT_EQ(recordArena.current->base, reinterpret_cast<const uint8_t*>(device.job->head));
  EXPECT_EQ(sideArena.current, side);
  other.CloseDevice(&device);
  EXPECT_EQ(device.job, nullptr);
  EXPECT_EQ(sideArena.current, nullptr);
}

}  // namespace
}  // namespace hdi
