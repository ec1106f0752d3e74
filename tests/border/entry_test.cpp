// The exported function and the identity of driver objects.
#include <limits>
#include <new>

#include "tests/border/border.h"

namespace border {
namespace {

using EntryTest = BorderTest;

TEST_F(EntryTest, CodesHave64BitsAndUnknownOnesDoNothing) {
  for (const uint64_t code : {uint64_t{0}, uint64_t{1}, uint64_t{4}, uint64_t{0x100000002},
                              uint64_t{0x100000003}, std::numeric_limits<uint64_t>::max()}) {
    EXPECT_EQ(module.ItDriver(code, nullptr), 1) << code;
    EXPECT_EQ(module.ItDriver(code, &list), 1) << code;
  }
  EXPECT_TRUE(list.calls.empty());
  EXPECT_EQ(module.ItDriver(2, nullptr), 0);
  EXPECT_EQ(module.ItDriver(3, nullptr), 0);
}

TEST_F(EntryTest, CreatesADriverPerSectionAfterTheFirst) {
  for (const char* text : {"", "; nothing\n", "[Only]\nName=Only\n"}) {
    sandbox.WriteList(text);
    EXPECT_EQ(list.Create(), 1) << text;
  }
  EXPECT_TRUE(list.calls.empty());

  sandbox.WriteList(
      "[general]\n[A]\nPaperFile=a.ini\n[B]\nName=\n[C]\nName=Same\n[D]\nName=Same\n[E]\nName=" +
      std::string(300, 'n') + "\n");
  EXPECT_EQ(list.Create(), 1);
  ASSERT_EQ(list.calls, std::vector<std::string>(5, "add"));
  EXPECT_EQ(list.At(0).Text(1), u"DWG to PDF 1.0") << "no key: the default";
  EXPECT_EQ(list.At(1).Text(1), u"") << "an empty value is a value";
  EXPECT_EQ(list.At(2).Text(1), u"Same");
  EXPECT_EQ(list.At(3).Text(1), u"Same") << "equal names are separate drivers";
  EXPECT_EQ(list.At(4).Text(1), std::u16string(255, u'n')) << "values are truncated";
  EXPECT_EQ(list.Create(), 1) << "a second call creates a second set";
  EXPECT_EQ(list.Size(), 10U);
}

TEST_F(EntryTest, IdentityAndReservedOperations) {
  const Driver driver = FirstDriver();
  EXPECT_EQ(driver.Text(2), u"PDF.hdi");
  EXPECT_EQ(driver.Text(3), u"4.00");
  const Record before = driver.Copy();
  for (const size_t slot : {5U, 8U, 9U}) EXPECT_EQ(driver.Call<int32_t>(slot), 1) << slot;
  EXPECT_EQ(driver.Call<int32_t>(18), 0);
  driver.Call<void>(20);
  EXPECT_EQ(driver.Copy(), before);
}

TEST_F(EntryTest, QueryInterfaceKnowsOneInterface) {
  const Driver driver = FirstDriver();
  const std::array<uint8_t, 16> id = {0xFA, 0x4D, 0x3A, 0x5B, 0x0C, 0x54, 0xC3, 0x4E,
                                      0xA4, 0x04, 0x5C, 0x51, 0xAD, 0x31, 0x78, 0x9A};
  void* out = nullptr;
  EXPECT_EQ(driver.Call<int32_t>(0, &id, &out), 1);
  EXPECT_EQ(out, driver.Object());
  EXPECT_EQ(driver.Call<int32_t>(0, &id, static_cast<void**>(nullptr)), 1);
  for (const size_t i : {0U, 15U}) {
    auto other = id;
    other[i] ^= 1;
    void* untouched = &other;
    EXPECT_EQ(driver.Call<int32_t>(0, &other, &untouched), 0) << "byte " << i;
    EXPECT_EQ(untouched, &other);
  }
}

DriverList* destroyList = nullptr;

void* SpyDestroy(void* object, uint32_t flags) {
  destroyList->calls.push_back("destroy " + std::to_string(flags));
  return object;
}

TEST_F(EntryTest, ReleaseDestroysBeforeTellingTheHost) {
  const Driver driver = FirstDriver();
  destroyList = &list;
  void* destroy = driver.Patch(25, reinterpret_cast<void*>(&SpyDestroy));
  EXPECT_EQ(list.Release(driver.Object()), 1);
  EXPECT_EQ(list.Size(), 1U);
  EXPECT_EQ(list.Release(nullptr), 1) << "the host is also told about null";
  EXPECT_EQ(list.calls, (std::vector<std::string>{"add", "add", "destroy 1", "remove", "remove null"}));
  driver.Patch(25, destroy);
  EXPECT_EQ(driver.Call<void*>(25, uint32_t{1}), driver.Object());
}

TEST_F(EntryTest, DestroyFreesTheObjectOnRequest) {
  const auto size = [](void* handle) { return GlobalBlock::Call<size_t>("GlobalSize", handle); };
  for (const uint32_t flags : {2U, 3U}) {
    const Driver driver = list.Size() == 0 ? FirstDriver() : list.At(0);
    void* defaults = driver.Call<void*>(12);
    EXPECT_NE(size(defaults), 0U);
    EXPECT_EQ(driver.Call<void*>(25, flags), driver.Object());
    EXPECT_EQ(size(defaults), 0U) << "freed with the driver";
    list.Forget(driver.Object());
    if (flags == 2) ::operator delete(driver.Object());  // a second free would be detected
  }
  EXPECT_EQ(list.calls, std::vector<std::string>(2, "add")) << "only the exported function tells the host";
}

}  // namespace
}  // namespace border
