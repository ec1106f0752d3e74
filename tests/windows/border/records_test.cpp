// The border with the records of <windows.h>, whose layout the shared tests know by numbers only.
#include <windows.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <map>

#include "tests/border/host_raster.h"

namespace border {
namespace {

static_assert(sizeof(DEVMODEW) == kPublicSize);
static_assert(offsetof(DEVMODEW, dmDriverExtra) == kDriverExtra);
static_assert(offsetof(DEVMODEW, dmOrientation) == kOrientation);
static_assert(offsetof(DEVMODEW, dmPaperSize) == kPaperChoice);
static_assert(offsetof(DEVMODEW, dmPaperLength) == kPaperLength);
static_assert(offsetof(DEVMODEW, dmPaperWidth) == kPaperWide);

class RecordsTest : public BorderTest {
 protected:
  [[nodiscard]] DEVMODEW& Public() const { return *reinterpret_cast<DEVMODEW*>(driver.Settings()); }

  Driver driver = FirstDriver();
};

TEST_F(RecordsTest, InterfaceByItsIdentifier) {
  const GUID id = {0x5B3A4DFA, 0x540C, 0x4EC3, {0xA4, 0x04, 0x5C, 0x51, 0xAD, 0x31, 0x78, 0x9A}};
  void* found = nullptr;
  EXPECT_EQ(driver.Call<int32_t>(0, &id, &found), 1);
  EXPECT_EQ(found, driver.Object());
}

TEST_F(RecordsTest, RefusedBlockOfGlobalMemoryStaysLocked) {
  for (const size_t slot : {6U, 7U}) {
    const GlobalBlock block(kRecordSize);
    EXPECT_EQ(driver.Call<int32_t>(slot, block.Handle()), 0);
    EXPECT_EQ(GlobalFlags(block.Handle()) & GMEM_LOCKCOUNT, 1U);
    EXPECT_TRUE(block.WasLeftLocked());
  }
  const auto handle = driver.Call<HGLOBAL>(12);
  EXPECT_EQ(GlobalFlags(handle), 0U) << "movable memory, neither locked nor discarded";
  EXPECT_GE(GlobalSize(handle), kRecordSize);
  EXPECT_EQ(driver.Call<HGLOBAL>(12), handle);
}

TEST_F(RecordsTest, CapabilitiesOfTheDefaultSheet) {
  std::map<int, uint32_t> expected = {
      {DRIVERVERSION, 1},     {TECHNOLOGY, 511},      {HORZSIZE, 200},        {VERTSIZE, 263},
      {HORZRES, 4724},        {VERTRES, 6212},        {BITSPIXEL, 32},        {PLANES, 3},
      {NUMBRUSHES, 255},      {NUMPENS, 255},         {NUMFONTS, 255},        {NUMCOLORS, 255},
      {CLIPCAPS, 1},          {LOGPIXELSX, 600},      {LOGPIXELSY, 600},      {PHYSICALWIDTH, 4960},
      {PHYSICALHEIGHT, 7015}, {PHYSICALOFFSETX, 118}, {PHYSICALOFFSETY, 401}, {178, 2}};
  for (const int own : {175, 180, 182, 183, 184, 185, 187, 191}) expected[own] = 1;
  Device device(driver);
  device.Open();
  for (int index = -2; index < 200; ++index) {
    const auto found = expected.find(index);
    EXPECT_EQ(device.Caps(index), found == expected.end() ? 0 : found->second) << index;
  }

  Public().dmPrintQuality = -3;
  EXPECT_EQ(device.Caps(HORZRES), 2362U);
  Public().dmPrintQuality = 600;
  Public().dmYResolution = 300;
  EXPECT_EQ(device.Caps(LOGPIXELSX), 600U);
  EXPECT_EQ(device.Caps(LOGPIXELSY), 300U);
  EXPECT_EQ(device.Caps(PHYSICALHEIGHT), 7015U);
}

// A pen with two entries of a style of its own.
struct StyledPen {
  EXTLOGPEN32 pen;
  DWORD secondEntry;
};

void PlotGeometry(Device& device) {
  constexpr std::array<Point, 4> kPoints = {{{100, 100}, {900, 100}, {900, 800}, {100, 800}}};
  constexpr std::array<uint32_t, 1> kCounts = {4};
  StyledPen pen = {};
  pen.pen.elpPenStyle = PS_GEOMETRIC | PS_USERSTYLE | PS_ENDCAP_FLAT | PS_JOIN_MITER;
  pen.pen.elpWidth = 12;
  pen.pen.elpColor = RGB(255, 0, 0);
  pen.pen.elpNumEntries = 2;
  pen.pen.elpStyleEntry[0] = 40;
  pen.secondEntry = 20;
  LOGBRUSH brush = {};
  brush.lbColor = RGB(0, 255, 0);
  const ClipNode clip = {1, nullptr, 4, kPoints.data()};

  EXPECT_EQ(device.Call(38, &pen), 1);
  EXPECT_EQ(device.Call(39, &brush), 1);
  EXPECT_EQ(device.Call(37, uint32_t{128}), 1);
  EXPECT_EQ(device.Call(42, uint32_t{R2_COPYPEN}), 1);
  EXPECT_EQ(device.Call(34, uint32_t{WINDING}), 1);
  EXPECT_EQ(device.Call(52, 1.0), 1);
  EXPECT_EQ(device.Call(43, &clip), 1);
  EXPECT_EQ(device.Call(26, kPoints.data(), int32_t{4}), 1);
  EXPECT_EQ(device.Call(27, kPoints.data(), int32_t{4}), 1);
  EXPECT_EQ(device.Call(32), 1);
  EXPECT_EQ(device.Call(28, kPoints.data(), kCounts.data(), int32_t{1}), 1);
  EXPECT_EQ(device.Call(29, kPoints.data(), int32_t{4}), 1);
  EXPECT_EQ(device.Call(25, kPoints.data(), 100.0, 50.0, 0.0, 0.0, 3.0), 1);
  EXPECT_EQ(device.Call(33), 1);
  EXPECT_EQ(device.Call(30), 1);
  EXPECT_EQ(device.Call(31), 1);
}

void PlotTexts(Device& device) {
  LOGFONTW font = {};
  font.lfHeight = -100;
  font.lfWeight = FW_NORMAL;
  font.lfCharSet = DEFAULT_CHARSET;
  lstrcpyW(font.lfFaceName, L"Liberation Sans");
  constexpr std::array<double, 4> kAdvances = {60, 60, 60, 60};
  constexpr std::array<int32_t, 4> kRect = {100, 400, 500, 600};
  const Point position = {200, 2000};
  const auto text = [&](const double* advances) {
    return device.Call(48, &font, &position, u"Plot", int32_t{4}, advances, 100.0, 0.0, 1.0, 1.0);
  };
  EXPECT_EQ(text(kAdvances.data()), 1);
  EXPECT_EQ(text(nullptr), 0) << "the host draws it";
  EXPECT_EQ(device.Call(58, u"words", kRect.data(), uint32_t{0}), 1);
}

TEST_F(RecordsTest, WholeJobThroughEveryPosition) {
  const std::u16string path = sandbox.OutPath("whole.pdf");
  HostRaster raster(8);
  const BITMAPINFOHEADER header = {.biSize = sizeof header,
                                   .biWidth = 2,
                                   .biHeight = 2,
                                   .biPlanes = 1,
                                   .biBitCount = 8,
                                   .biCompression = BI_RGB,
                                   .biSizeImage = 8,
                                   .biXPelsPerMeter = 0,
                                   .biYPelsPerMeter = 0,
                                   .biClrUsed = 0,
                                   .biClrImportant = 0};
  std::memcpy(raster.BitmapHeader(), &header, sizeof header);
  Device device(driver);
  ASSERT_EQ(device.Open(), 1);
  EXPECT_EQ(device.Call(49, HWND{nullptr}), 1);
  const DOCINFOW document = {sizeof(DOCINFOW), L"plan.dwg", reinterpret_cast<const wchar_t*>(path.c_str()),
                             nullptr, 0};
  ASSERT_EQ(device.Call(19, &document), 1);
  for (const int orientation : {DMORIENT_PORTRAIT, DMORIENT_LANDSCAPE}) {
    Record page = driver.Copy();
    reinterpret_cast<DEVMODEW*>(page.data())->dmOrientation = static_cast<short>(orientation);
    EXPECT_EQ(device.StartPage(page.data()), 1);
    EXPECT_EQ(device.Call(50, int64_t{0}, u"Walls"), 1);
    EXPECT_EQ(device.Call(35, u"http://example.org/"), 1);
    PlotGeometry(device);
    EXPECT_EQ(device.Call(36), 1);
    PlotTexts(device);
    EXPECT_EQ(device.Call(51, raster.Record()), 1);
    EXPECT_EQ(device.EndPage(), 1);
  }
  EXPECT_EQ(device.EndDocument(), 1);
  EXPECT_EQ(device.Close(), 1);

  const std::filesystem::path file = path;
  const std::string pdf = ReadFile(file);
  EXPECT_TRUE(pdf.starts_with("%PDF-"));
  EXPECT_TRUE(IsSoundPdf(file));
  EXPECT_EQ(PageCount(file), 2);
  for (const char* part : {"/Type/OCG", "/Subtype/Link", "/Subtype/Image", "/FontFile2", "/ToUnicode"}) {
    EXPECT_NE(pdf.find(part), std::string::npos) << part;
  }
}

}  // namespace
}  // namespace border
