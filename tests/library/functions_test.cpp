// Global memory, the device list and number comparison.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "platform/host_library.h"
#include "tests/support/scratch.h"

namespace {

using std::u16string;
using namespace std::string_literals;

TEST(GlobalMemory, IsLockedAndUnlocked) {
  void* handle = GlobalAlloc(0x42, 1244);  // movable and zeroed
  EXPECT_EQ(GlobalSize(handle), 1244U);
  auto* memory = static_cast<uint8_t*>(GlobalLock(handle));
  ASSERT_NE(memory, nullptr);
  EXPECT_NE(memory, handle);
  EXPECT_EQ(std::count(memory, memory + 1244, 0), 1244);
  EXPECT_EQ(GlobalLock(handle), memory);
  for (const int32_t locked : {1, 0, 0}) EXPECT_EQ(GlobalUnlock(handle), locked);
  EXPECT_EQ(GlobalFree(handle), nullptr);

  void* fixed = GlobalAlloc(0, 0);
  EXPECT_EQ(GlobalLock(fixed), fixed);
  EXPECT_EQ(GlobalUnlock(fixed), 1);
  EXPECT_EQ(GlobalFree(fixed), nullptr);

  for (void* unknown : {static_cast<void*>(nullptr), handle}) {
    EXPECT_EQ(GlobalLock(unknown), nullptr);
    EXPECT_EQ(GlobalUnlock(unknown), 0);
    EXPECT_EQ(GlobalSize(unknown), 0U);
    EXPECT_EQ(GlobalFree(unknown), unknown);
  }
}

TEST(DeviceList, ListsSectionsInFileOrder) {
  const scratch::Directory folder;
  folder.Write("list.ini", "; c\n[General]\nx=[y]\n\n[Plotter 2]\n[]\n[general]\n[PDF]\nName=P\n");
  folder.Write("empty.ini", "key=1\n");
  const u16string whole = folder.Path16("list.ini");
  const struct {
    u16string file;
    int32_t needed;
    u16string list;  // in a buffer of as many X
  } kCases[] = {
      {whole, 23, u"General\0Plotter 2\0PDF\0\0"s},
      {whole, 23, u"General\0Plotter 2\0PDF\0\0XX"s},
      {whole, 23, u"General\0Plotter 2\0\0XXX"s},  // names that do not fit are left out
      {whole, 23, u"\0\0XXXXXX"s},
      {folder.Path16("empty.ini"), 0, u"\0\0X"s},
      {folder.Path16("none.ini"), 0, u"\0"s},
      {hdi::ToUtf16(HDI_BUILD_DIR) + u"/pdf.ini", 13, u"General\0PDF\0\0"s},
  };
  for (const auto& [file, needed, list] : kCases) {
    u16string buffer(list.size(), u'X');
    EXPECT_EQ(HT_ListCloseDriver(buffer.data(), static_cast<int32_t>(list.size()), file.c_str()), needed);
    EXPECT_TRUE(buffer == list) << hdi::ToUtf8(list);
    EXPECT_EQ(HT_ListCloseDriver(nullptr, 0, file.c_str()), needed);
  }
}

TEST(IsEqual, IsStrict) {
  EXPECT_TRUE(isEqual(1.0, 1.0 + 9e-6, 1e-5));
  EXPECT_FALSE(isEqual(1.0, 1.5, 0.5));
  EXPECT_FALSE(isEqual(std::nan(""), std::nan(""), 1.0));
}

}  // namespace
