// A job from the output's name to the finished file, the states in between, and the table of entry points.
#include "tests/border/border.h"

namespace border {
namespace {
namespace fs = std::filesystem;

class JobTest : public BorderTest {
 protected:
  JobTest() { device.Open(); }
  // Starts a document and plots a page, without ending it.
  void Start() {
    EXPECT_EQ(device.StartDocument(path.c_str()), 1);
    device.PlotPage();
  }

  Driver driver = FirstDriver();
  Device device{driver};
  fs::path file = sandbox.Out() / "job.pdf";
  std::u16string path = file.u16string();
};

constexpr std::array<size_t, 34> kFilled = {0,  1,  2,  5,  6,  7,  18, 19, 20, 21, 22, 25,
                                            26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37,
                                            38, 39, 42, 43, 48, 49, 50, 51, 52, 58};

std::vector<size_t> steps;
std::array<void*, kPositionCount> real;

// Records the call of an entry and forwards it.
template <size_t kPosition>
void* Spy(void* device) {
  steps.push_back(kPosition);
  return reinterpret_cast<void* (*)(void*)>(real[kPosition])(device);
}
constexpr size_t kNormalize = 1022;  // slot 22 of the driver
void SpyNormalize(void*, void*) { steps.push_back(kNormalize); }

TEST_F(JobTest, TableIsFilledWhileOpenAndEmptyOtherwise) {
  void** table = device.host.table;
  for (size_t position = 0; position < kPositionCount; ++position) {
    EXPECT_EQ(table[position] != nullptr, std::ranges::count(kFilled, position) == 1) << position;
  }
  EXPECT_EQ(device.Started(), 0);
  EXPECT_EQ(device.Plot(path), 1);
  EXPECT_NE(device.host.job, nullptr);
  real[1] = std::exchange(table[1], reinterpret_cast<void*>(&Spy<1>));
  EXPECT_EQ(device.Close(), 1);
  EXPECT_EQ(std::exchange(steps, {}), std::vector<size_t>{1}) << "closing uses the table";
  EXPECT_EQ(device.host.table, table) << "the pointer stays";
  EXPECT_EQ(device.host.driver, driver.Object());
  EXPECT_EQ(device.host.job, nullptr);
  EXPECT_EQ(device.Started(), 1) << "cleared only by the host";
  EXPECT_EQ(std::ranges::count(device.host.foreign, 0), 92) << "not touched";

  table[3] = real[1];
  Device next(driver);
  EXPECT_EQ(next.Open(), 1);
  EXPECT_EQ(next.host.table, table);
  EXPECT_EQ(table[3], real[1]) << "opening leaves other positions alone";
  EXPECT_EQ(next.Close(), 1);
  EXPECT_EQ(std::count(table, table + kPositionCount, nullptr), 59) << "closing clears every position";
}

TEST_F(JobTest, StartUsesTheTableAndEndDoesNot) {
  std::copy_n(device.host.table, kPositionCount, real.begin());
  void* object = &device.host;
  for (const size_t position : {5U, 6U}) {
    EXPECT_EQ(reinterpret_cast<int32_t (*)(void**)>(real[position])(&object), 1);
  }
  EXPECT_EQ(device.Started(), 0) << "no effect before the start";

  for (const auto& [position, spy] : {std::pair(2, &Spy<2>), {5, &Spy<5>}, {6, &Spy<6>}, {7, &Spy<7>}}) {
    device.host.table[position] = reinterpret_cast<void*>(spy);
  }
  driver.Patch(22, reinterpret_cast<void*>(&SpyNormalize));
  EXPECT_EQ(device.StartDocument(path.c_str()), 1);
  EXPECT_EQ(std::exchange(steps, {}), (std::vector<size_t>{2, 7, kNormalize, 5}));
  EXPECT_EQ(device.StartPage(), 1);
  EXPECT_TRUE(steps.empty()) << "without a record the sheet is used as it is";
  const Record page = driver.Copy();
  EXPECT_EQ(device.StartPage(page.data()), 1);
  EXPECT_EQ(std::exchange(steps, {}), std::vector<size_t>{kNormalize});
  EXPECT_EQ(device.Caps(88), 600U);
  EXPECT_EQ(std::exchange(steps, {}), std::vector<size_t>{kNormalize});
  EXPECT_EQ(device.EndPage(), 1);
  EXPECT_EQ(device.EndDocument(), 1);
  EXPECT_TRUE(steps.empty());
  EXPECT_TRUE(IsSoundPdf(file));
}

TEST_F(JobTest, OutputNames) {
  const fs::path before = fs::current_path();
  fs::current_path(sandbox.Out());
  device.Close();
  const char16_t* none = nullptr;
  for (const auto& [output, name] : {std::pair(+u"b", +u"b.pdf"),
                                     {u"c.PDF", u"c.PDF"},
                                     {u"d.pDf", u"d.pDf"},
                                     {u"e.pdfx", u"e.pdfx.pdf"},
                                     {u"gpdf", u"gpdf.pdf"},
                                     {u".pdf", u".pdf"},
                                     {none, u"as it is"},
                                     {u"", u"as it is"},
                                     {u"Plän \U0001F4D0", u"Plän \U0001F4D0.pdf"}}) {
    Device other(driver);
    other.Open();
    other.host.defaultOutput = u"as it is";
    EXPECT_EQ(other.StartDocument(output), 1) << fs::path(name);
    EXPECT_EQ(other.EndDocument(), 1);
    EXPECT_TRUE(fs::remove(name)) << fs::path(name);
    EXPECT_TRUE(fs::is_empty("."));
  }
  fs::current_path(before);
}

TEST_F(JobTest, CompressionIsASettingOfTheDevice) {
  device.Close();
  const auto sizeWith = [this](const std::string& keys) {
    Device other(LastDriverOf("[general]\n[A]\n" + keys));
    other.Open();
    other.StartDocument(path.c_str());
    other.StartPage();
    std::vector<Point> points(3000);
    for (int i = 0; i < 3000; ++i) {
      points[static_cast<size_t>(i)] = {i % 61 * 50.0 + i % 7, i * i % 2999 * 1.0};
    }
    other.Call(26, points.data(), static_cast<int32_t>(points.size()));
    other.EndPage();
    other.EndDocument();
    return fs::file_size(file);
  };
  const uintmax_t normal = sizeWith("");
  EXPECT_LT(normal, sizeWith("Compression=fast\n"));
  EXPECT_GT(normal, sizeWith("Compression=small\n"));
  EXPECT_EQ(normal, sizeWith("Compression=no such word\n"));
  std::ofstream(sandbox.App() / "own.ini") << "[General]\nCompression=fast\n";
  EXPECT_LT(normal, sizeWith("PrivateFile=own.ini\nCompression=small\n"));
  sandbox.SetVariable("HDI_COMPRESSION", "small");
  EXPECT_GT(normal, sizeWith("Compression=fast\n"));
}

TEST_F(JobTest, FileIsEmptyUntilTheEndAndReplacesAnOldOne) {
  SetUpUser(sandbox);
  std::ofstream(file) << std::string(100000, 'x');
  Start();
  EXPECT_EQ(fs::file_size(file), 0U);
  EXPECT_TRUE(fs::is_directory(sandbox.Root() / "ORVANE-PORT")) << "in the temporary directory";
  EXPECT_EQ(device.EndDocument(), 1);
  EXPECT_LT(fs::file_size(file), 100000U);
  EXPECT_TRUE(IsSoundPdf(file));
  EXPECT_EQ(sandbox.Log(), "");
}

TEST_F(JobTest, OneDocumentPerOpening) {
  EXPECT_EQ(device.Plot(path), 1);
  EXPECT_EQ(device.Plot(sandbox.OutPath("two")), 0);
  EXPECT_FALSE(fs::exists(sandbox.Out() / "two.pdf"));

  device.SetStarted(0);
  EXPECT_EQ(device.Plot(path), 1);
  EXPECT_EQ(PageCount(file), 2) << "the list still holds the first plot";
  device.Close();

  Device other(driver);
  other.Open();
  EXPECT_EQ(other.Plot(path), 1);
  EXPECT_EQ(PageCount(file), 1) << "a new device has an empty list";
}

TEST_F(JobTest, EndsOnlyAStartedJob) {
  Start();
  device.SetStarted(0);
  EXPECT_EQ(device.EndDocument(), 1);
  EXPECT_EQ(fs::file_size(file), 0U);
  device.SetStarted(1);
  EXPECT_EQ(device.EndDocument(), 1);
  EXPECT_EQ(PageCount(file), 2) << "replayed into the same document";
}

TEST_F(JobTest, ClosingEarlyLeavesAnEmptyFileAndTheNextJobIntact) {
  static void* abandoned = nullptr;  // the writer: leaked on purpose
  Start();
  abandoned = device.Call<void*>(7);
  EXPECT_NE(abandoned, nullptr) << "the output already open";
  EXPECT_EQ(device.Close(), 1);
  EXPECT_EQ(fs::file_size(file), 0U);

  Device next(driver);
  next.Open();
  EXPECT_EQ(next.Plot(sandbox.OutPath("next")), 1);
  EXPECT_EQ(fs::file_size(file), 0U);
  EXPECT_EQ(PageCount(sandbox.Out() / "next.pdf"), 1);
}

TEST_F(JobTest, PageCopiesItsRecordByBothSizes) {
  struct Case {
    uint16_t ownSize, ownExtra, extra;
    bool orientation, background;  // which parts are copied
  };
  Start();
  uint8_t* own = driver.Settings();
  for (const Case& test :
       {Case{220, 1024, 1024, true, true}, Case{220, 1024, 0, true, false}, Case{220, 0, 1024, true, false},
        Case{220, 0, 0, true, false}, Case{76, 1024, 0, false, false}, Case{76, 1024, 1024, true, true},
        Case{65535, 1024, 1024, true, true}}) {
    Record page = driver.Copy();
    WriteAt(page.data(), kDriverExtra, test.extra);
    WriteAt<int16_t>(page.data(), kOrientation, 2);
    WriteAt<uint32_t>(page.data(), kBackground, 0xF0E0D0);
    WriteAt(own, kOwnSize, test.ownSize);
    WriteAt(own, kDriverExtra, test.ownExtra);
    WriteAt<int16_t>(own, kOrientation, 1);
    WriteAt<uint32_t>(own, kBackground, 0x010203);
    EXPECT_EQ(device.StartPage(page.data()), 1);
    EXPECT_EQ(SheetOf(own)[1], test.orientation ? 2970 : 2100);
    EXPECT_EQ(ReadAt<uint32_t>(own, kBackground), test.background ? 0xF0E0D0U : 0x010203U);
    EXPECT_EQ(ReadAt<uint16_t>(own, kDriverExtra), test.extra) << "copied, too";
  }
  EXPECT_EQ(device.EndDocument(), 1);
}

}  // namespace
}  // namespace border
