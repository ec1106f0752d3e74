// The table of entry points by position: what is filled, when, and what an entry answers in each state of a
// job.
#include <algorithm>
#include <array>
#include <set>

#include "tests/border/border.h"

namespace border {
namespace {

constexpr std::array<size_t, 34> kFilled = {0,  1,  2,  5,  6,  7,  18, 19, 20, 21, 22, 25,
                                            26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37,
                                            38, 39, 42, 43, 48, 49, 50, 51, 52, 58};

constexpr std::array<uint32_t, 6> kPen = {0x10000, 3, 0, 0x0000FF, 0, 0};
constexpr std::array<uint32_t, 4> kBrush = {0, 0x00FF00, 0, 0};
constexpr std::array<Point, 4> kPoints = {{{100, 100}, {900, 100}, {900, 800}, {100, 800}}};

class TableTest : public BorderTest {
 protected:
  Driver driver = FirstDriver();
  Device device{driver};
};

int closes = 0;
void* realClose = nullptr;
int32_t SpyClose(void* device) {
  ++closes;
  return reinterpret_cast<int32_t (*)(void*)>(realClose)(device);
}

TEST_F(TableTest, FilledWhileOpenAndEmptyOtherwise) {
  EXPECT_EQ(device.Open(), 1);
  void** table = device.Table();
  ASSERT_NE(table, nullptr);
  const auto* object = static_cast<const std::byte*>(driver.Object());
  const auto* first = reinterpret_cast<const std::byte*>(table);
  EXPECT_TRUE(first > object &&
              first + kPositionCount * sizeof(void*) <= object + HeapBlockSize(driver.Object()))
      << "the table lies inside the driver object";
  for (size_t position = 0; position < kPositionCount; ++position) {
    EXPECT_EQ(table[position] != nullptr, std::ranges::count(kFilled, position) == 1) << position;
  }
  realClose = std::exchange(table[1], reinterpret_cast<void*>(&SpyClose));
  EXPECT_EQ(device.Close(), 1);
  EXPECT_EQ(closes, 1) << "closing goes through the table";
  EXPECT_EQ(device.Table(), table) << "the pointer stays";
  EXPECT_EQ(std::count(table, table + kPositionCount, nullptr), 59);

  table[3] = reinterpret_cast<void*>(&SpyClose);
  Device next(driver);
  EXPECT_EQ(next.Open(), 1);
  EXPECT_EQ(next.Table(), table);
  EXPECT_EQ(table[3], reinterpret_cast<void*>(&SpyClose)) << "opening touches no other position";
  EXPECT_EQ(next.Close(), 1);
  EXPECT_EQ(std::count(table, table + kPositionCount, nullptr), 59) << "closing clears every position";
}

TEST_F(TableTest, FieldsOfTheHostsDevice) {
  EXPECT_EQ(device.Open(), 1);
  EXPECT_NE(device.Job(), nullptr);
  EXPECT_EQ(device.Started(), 0);
  EXPECT_EQ(device.StartDocument(sandbox.OutPath("a.pdf").c_str()), 1);
  EXPECT_EQ(device.Started(), 1);
  EXPECT_EQ(device.EndDocument(), 1);
  EXPECT_NE(device.Job(), nullptr);
  EXPECT_EQ(device.Close(), 1);
  EXPECT_EQ(device.Job(), nullptr);
  EXPECT_EQ(device.Started(), 1) << "cleared by nobody but the host";
  EXPECT_EQ(ReadAt<void*>(device.Object(), 0), driver.Object());
  EXPECT_TRUE(device.ForeignFieldsUntouched());
}

// The names of the entries that answered 1, in a given state of the job; every other one must answer 0.
using Willing = std::set<std::string>;

// Asks through `table`, which may be a copy of what an open device had.
Willing AskAll(void* const* table, void* device) {
  Willing willing;
  const auto ask = [&]<typename... Arguments>(const char* name, size_t position, Arguments... arguments) {
    const int32_t answer =
        reinterpret_cast<int32_t (*)(void*, Arguments...)>(table[position])(device, arguments...);
    EXPECT_TRUE(answer == 0 || answer == 1) << name << ": " << answer;
    if (answer != 0) willing.insert(name);
  };
  const uint32_t counts[] = {3};
  const ClipNode node = {1, nullptr, 4, kPoints.data()};
  ask("pen", 38, kPen.data());
  ask("brush", 39, kBrush.data());
  ask("alpha", 37, uint32_t{255});
  ask("raster op", 42, uint32_t{13});
  ask("fill mode", 34, uint32_t{1});
  ask("polyline", 26, kPoints.data(), int32_t{4});
  ask("polyline of 0", 26, kPoints.data(), int32_t{0});
  ask("polyline of -1", 26, kPoints.data(), int32_t{-1});
  ask("polygon", 27, kPoints.data(), int32_t{4});
  ask("fill path", 32);
  ask("poly polygon", 28, kPoints.data(), static_cast<const uint32_t*>(counts), int32_t{1});
  ask("bezier", 29, kPoints.data(), int32_t{4});
  ask("arc", 25, kPoints.data(), 100.0, 50.0, 0.0, 0.0, 3.0);
  ask("begin path", 30);
  ask("end path", 31);
  ask("stroke fill path", 33);
  ask("clip", 43, &node);
  ask("no clip", 43, static_cast<const ClipNode*>(nullptr));
  ask("window", 49, static_cast<void*>(nullptr));
  ask("end page", 22);
  return willing;
}

TEST_F(TableTest, AnswersInEachStateOfAJob) {
  Willing expected = {"polyline of 0", "polyline of -1",   "poly polygon", "begin path", "end path",
                      "fill path",     "stroke fill path", "window",       "end page"};
  device.Open();
  std::array<void*, kPositionCount> entries;
  std::copy_n(device.Table(), kPositionCount, entries.begin());
  device.Close();
  ASSERT_EQ(device.Job(), nullptr);
  EXPECT_EQ(AskAll(entries.data(), device.Object()), expected) << "without a job";
  const auto polyline = reinterpret_cast<int32_t (*)(void*, const Point*, int32_t)>(entries[26]);
  EXPECT_EQ(polyline(nullptr, nullptr, 0), 1) << "nothing to draw needs nothing";
  EXPECT_EQ(polyline(nullptr, kPoints.data(), 2), 0);

  Device other(driver);
  other.Open();
  expected.insert({"alpha", "raster op", "fill mode", "arc"});
  EXPECT_EQ(AskAll(other.Table(), other.Object()), expected) << "without an output";
  ASSERT_EQ(other.StartDocument(sandbox.OutPath("all.pdf").c_str()), 1);
  ASSERT_EQ(other.StartPage(), 1);
  EXPECT_EQ(AskAll(other.Table(), other.Object()).size(), 20U) << "in a document";
  EXPECT_EQ(other.EndDocument(), 1);
  EXPECT_TRUE(IsSoundPdf(sandbox.Out() / "all.pdf"));
}

TEST_F(TableTest, PageTakesAWholeRecordOrItsPublicPart) {
  device.Open();
  ASSERT_EQ(device.StartDocument(sandbox.OutPath("pages.pdf").c_str()), 1);
  Record page = driver.Copy();
  WriteAt<int16_t>(page.data(), kOrientation, 2);
  WriteAt<uint32_t>(page.data(), kBackground, 0x00F0E0D0);
  EXPECT_EQ(device.StartPage(page.data()), 1);
  EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{9, 2970, 2100, 170, 50, 170, 50}));
  EXPECT_EQ(ReadAt<uint32_t>(driver.Settings(), kBackground), 0x00F0E0D0U);
  device.EndPage();

  WriteAt<int16_t>(page.data(), kOrientation, 1);
  WriteAt<uint32_t>(page.data(), kBackground, 0x00010203);
  WriteAt<uint16_t>(page.data(), kDriverExtra, 0);
  EXPECT_EQ(device.StartPage(page.data()), 1);
  EXPECT_EQ(SheetOf(driver.Settings()), (Sheet{9, 2100, 2970, 50, 170, 50, 170}));
  EXPECT_EQ(ReadAt<uint32_t>(driver.Settings(), kBackground), 0x00F0E0D0U) << "the driver's own stays";
  EXPECT_EQ(ReadAt<uint16_t>(driver.Settings(), kDriverExtra), 0U) << "part of what was copied";
  device.EndPage();
  EXPECT_EQ(device.EndDocument(), 1);
}

}  // namespace
}  // namespace border
