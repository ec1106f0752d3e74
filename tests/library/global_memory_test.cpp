// The life of global memory blocks.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/host_library.h"

namespace {

constexpr uint32_t kMovableZeroed = 0x42;

TEST(GlobalMemory, MovableBlocksLiveBetweenLockAndUnlock) {
  void* handle = GlobalAlloc(kMovableZeroed, 1244);
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(GlobalSize(handle), 1244U);
  auto* memory = static_cast<uint8_t*>(GlobalLock(handle));
  ASSERT_NE(memory, nullptr);
  EXPECT_NE(memory, handle);
  EXPECT_TRUE(std::all_of(memory, memory + 1244, [](uint8_t byte) { return byte == 0; }));
  std::memset(memory, 0x5A, 1244);
  EXPECT_EQ(GlobalLock(handle), memory);
  EXPECT_EQ(GlobalUnlock(handle), 1);
  EXPECT_EQ(GlobalUnlock(handle), 0);
  EXPECT_EQ(static_cast<uint8_t*>(GlobalLock(handle))[1243], 0x5A);
  EXPECT_EQ(GlobalUnlock(handle), 0);
  EXPECT_EQ(GlobalFree(handle), nullptr);
}

TEST(GlobalMemory, FixedBlocksAreTheirHandleAndUnknownHandlesFail) {
  void* fixed = GlobalAlloc(0, 8);
  EXPECT_EQ(GlobalLock(fixed), fixed);
  EXPECT_EQ(GlobalUnlock(fixed), 1);
  EXPECT_EQ(GlobalFree(fixed), nullptr);

  void* freed = GlobalAlloc(kMovableZeroed, 0);
  EXPECT_EQ(GlobalSize(freed), 0U);
  EXPECT_EQ(GlobalFree(freed), nullptr);
  int own = 0;
  for (void* handle : {static_cast<void*>(nullptr), static_cast<void*>(&own), freed}) {
    EXPECT_EQ(GlobalLock(handle), nullptr);
    EXPECT_EQ(GlobalUnlock(handle), 0);
    EXPECT_EQ(GlobalSize(handle), 0U);
    EXPECT_EQ(GlobalFree(handle), handle);
  }
}

}  // namespace
