// A page plotted through positions and byte offsets alone, checked in the saved document, so that no two
// positions or fields can be swapped unnoticed.
#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <functional>
#include <numbers>
#include <qpdf/Pl_String.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <sstream>

#include "tests/border/host_raster.h"

namespace border {
namespace {

constexpr std::array<uint32_t, 8> kDashedPen = {0x11107, 3, 11, 0x0000FF, 13, 2, 30, 10};
constexpr std::array<uint32_t, 6> kSolidPen = {0x10000, 5, 11, 0xFF0000, 13, 9};
constexpr std::array<uint32_t, 4> kGreenBrush = {15, 0x00FF00, 17, 19};
constexpr std::array<uint32_t, 4> kRedBrush = {15, 0x000033, 17, 19};

constexpr std::array<Point, 2> kLine = {{{10, 20}, {30, 40}}};
constexpr std::array<Point, 2> kNextLine = {{{30, 40}, {50, 60}}};
constexpr std::array<Point, 2> kFractions = {{{1.25, 2.5}, {3.75, 5.5}}};
constexpr std::array<Point, 3> kTriangle = {{{1, 2}, {3, 4}, {5, 6}}};
constexpr std::array<Point, 4> kCurve = {{{10, 10}, {20, 30}, {40, 50}, {60, 70}}};
constexpr std::array<Point, 4> kSquare = {{{10, 10}, {90, 10}, {90, 80}, {10, 80}}};
constexpr std::array<Point, 5> kLineAndTriangle = {{{13, 14}, {15, 16}, {17, 18}, {19, 20}, {21, 22}}};

// 144 dots an inch, so a dot is half a point, on a sheet whose six lengths differ. The printable area is 288
// dots high.
class PageTest : public BorderTest {
 protected:
  PageTest() {
    uint8_t* record = driver.Settings();
    WriteAt<int16_t>(record, kPaperChoice, -7);  // not in any list: the sheet stays as it is
    WriteAt<int16_t>(record, kPrintQuality, 144);
    WriteAt(record, kWidth, std::array<int32_t, 6>{2540, 1270, 127, 254, 381, 508});
    WriteAt<uint32_t>(record, kBackground, 0x00003366);
    device.Open();
  }

  template <size_t Count>
  int32_t Plot(size_t position, const std::array<Point, Count>& points) {
    return device.Call(position, points.data(), static_cast<int32_t>(Count));
  }
  int32_t PlotText() {
    std::array<uint8_t, 92> font{};
    WriteAt<int32_t>(font.data(), 8, 900);  // upwards, in tenths of a degree
    font[20] = 1;                           // italic
    WriteAt(font.data(), 28, std::to_array(u"Liberation Sans"));
    const Point position = {100, 100};
    const double advances[] = {10, 21};
    return device.Call(48, font.data(), &position, u"ABC", int32_t{2}, &advances, 12.0, std::atan(0.25), 1.0,
                       0.5);
  }
  void Start() { EXPECT_EQ(device.StartDocument(path.c_str()), 1); }
  // Saves the document and returns its first page.
  QPDFObjectHandle SavedPage() {
    EXPECT_EQ(device.EndDocument(), 1);
    pdf = std::make_unique<QPDF>();
    pdf->processFile(std::filesystem::path(path).c_str());
    return pdf->getAllPages().at(0);
  }
  // Without the codes of texts, which depend on the font subset.
  static std::string ContentOf(const QPDFObjectHandle& page) {
    std::string content;
    Pl_String text("content", nullptr, content);
    QPDFPageObjectHelper(page).pipeContents(&text);
    for (size_t at = 0; (at = content.find('<', at)) != std::string::npos; ++at) {
      content.erase(at + 1, content.find('>', at) - at - 1);
    }
    return content;
  }
  // The value at a path of keys and indexes.
  static std::string ValueAt(QPDFObjectHandle object, const std::string& path) {
    std::istringstream steps(path);
    for (std::string step; std::getline(steps, step, '/');) {
      if (object.isStream()) object = object.getDict();
      object = object.isArray() ? object.getArrayItem(std::stoi(step)) : object.getKey("/" + step);
    }
    return object.unparseResolved();
  }

  Driver driver = FirstDriver();
  Device device{driver};
  std::u16string path = sandbox.OutPath("page.pdf");
  std::unique_ptr<QPDF> pdf;
};

TEST_F(PageTest, EachPositionReturnsAndDraws) {
  const ClipNode second = {2, nullptr, 3, kLineAndTriangle.data()};
  const ClipNode first = {0, &second, 4, kSquare.data()};
  const uint32_t counts[] = {2, 3};
  const int32_t rect[] = {10, 40, 100, 208};
  const Point center = {100, 88};
  constexpr double kQuarter = std::numbers::pi / 2;
  HostRaster indexed(8);
  HostRaster coloured(32);
  struct Row {
    const char* answers;  // without a job, without an output, in a document
    std::function<int32_t()> call;
    size_t option = kRecordSize;  // set in the record before the call
    int32_t value = 0;
  };
  const Row rows[] = {
      {"111", [&] { return device.StartPage(); }},
      {"001", [&] { return device.Call(38, &kDashedPen); }},
      {"001", [&] { return device.Call(39, &kGreenBrush); }},
      {"001", [&] { return Plot(26, kLine); }},
      {"111", [&] { return device.Call(30); }},
      {"001", [&] { return Plot(26, kNextLine); }},
      {"001", [&] { return device.Call(38, &kSolidPen); }},
      {"001", [&] { return Plot(27, kTriangle); }},
      {"111", [&] { return device.Call(33); }},
      {"011", [&] { return device.Call(34, uint32_t{2}); }},
      {"001", [&] { return Plot(27, kTriangle); }},
      {"111", [&] { return device.Call(32); }},
      {"001", [&] { return Plot(26, kLine); }},
      {"111", [&] { return device.Call(31); }},
      {"001", [&] { return Plot(26, kNextLine); }},
      {"111", [&] { return device.Call(33); }},
      {"011", [&] { return device.Call(34, uint32_t{1}); }},
      {"011", [&] { return device.Call(37, uint32_t{128}); }},
      {"111", [&] { return device.Call(28, &kLineAndTriangle, &counts, int32_t{2}); }},
      {"011", [&] { return device.Call(42, uint32_t{9}); }},
      {"001", [&] { return device.Call(39, &kRedBrush); }},
      {"001", [&] { return Plot(26, kLine); }},
      {"011", [&] { return device.Call(42, uint32_t{13}); }},
      {"001", [&] { return device.Call(38, &kSolidPen); }},
      {"001", [&] { return Plot(29, kCurve); }},
      {"111", [&] { return device.Call(30); }},
      {"011", [&] { return device.Call(25, &center, 40.0, 20.0, kQuarter, -kQuarter, 0.0); }},
      {"001", [&] { return device.Call(50, int64_t{7}, u"Wall"); }},
      {"011", [&] { return device.Call(35, u"www.x"); }},
      {"011", [&] { return PlotText(); }},
      {"011", [&] { return device.Call(36); }},
      {"011", [&] { return device.Call(51, indexed.Record()); }},
      {"011", [&] { return device.Call(51, coloured.Record()); }},
      {"001", [&] { return device.Call(43, &first); }},
      {"001", [&] { return device.Call(43, &first); }},
      {"001", [&] { return Plot(26, kLine); }},
      {"011", [&] { return device.Call(52, 0.5); }},
      {"001", [&] { return device.Call(58, u"words", &rect, uint32_t{5}); }},
      {"111", [&] { return device.Call(35, u"off"); }, kLinks, 0},
      {"001", [&] { return Plot(26, kFractions); }, kKeepFractions, 1},
      {"011", [&] { return device.Call(36); }, kLinks, 1},
      {"000", [&] { return device.Call(50, int64_t{7}, u"Off"); }, kLayers, 0},
      {"000", [&] { return PlotText(); }, kTextAsGeometry, 1},
      {"001", [&] { return device.Call(43, static_cast<ClipNode*>(nullptr)); }},
      {"111", [&] { return device.Call(26, static_cast<Point*>(nullptr), int32_t{0}); }},
      {"000", [&] { return device.Call(51, static_cast<void*>(nullptr)); }},
      {"111", [&] { return device.Call(49, static_cast<void*>(nullptr)); }},
      {"111", [&] { return device.EndPage(); }},
  };
  std::array<std::string, std::size(rows)> answers;
  const Record record = driver.Copy();
  const auto ask = [&] {
    for (size_t i = 0; i < std::size(rows); ++i) {
      if (rows[i].option < kRecordSize) WriteAt(driver.Settings(), rows[i].option, rows[i].value);
      answers[i] += std::to_string(rows[i].call());
    }
    WriteAt(driver.Settings(), 0, record);
  };
  std::array<void*, kPositionCount> entries;
  std::copy_n(device.host.table, kPositionCount, entries.begin());
  device.Close();
  std::ranges::copy(entries, device.host.table);
  EXPECT_EQ(device.StartDocument(path.c_str()), 0);
  ask();
  device.Open();
  ask();
  device.Close();
  device.Open();
  Start();
  ask();
  for (size_t i = 0; i < std::size(rows); ++i) EXPECT_EQ(answers[i], rows[i].answers) << "row " << i;

  QPDFObjectHandle page = SavedPage();
  EXPECT_EQ(ContentOf(page) + '\n', ReadFile(HDI_SOURCE_DIR "/tests/border/linux/page.content"));
  const std::pair<const char*, const char*> values[] = {
      {"MediaBox", "[ 0 0 720 360 ]"},
      {"Resources/ExtGState/FXE2", "<< /CA .50196081 /ca .50196081 >>"},
      {"Resources/ExtGState/FXE3", "<< /BM /Darken >>"},
      {"Resources/Properties/FXP1/Name", "(Wall)"},
      {"Resources/Font/FXF1/BaseFont", "/LiberationSans-Italic"},
      {"Resources/XObject/FXX2/Filter", "/DCTDecode"},
      {"VP/0/Measure/X/0/C", "4"},
      {"Annots/0/Rect", "[ 80 238 86 254 ]"},
      {"Annots/0/A/URI", "(http://www.x)"},
      {"Annots/1/Rect", "[ 41 184 56 238 ]"},
      {"Annots/1/Contents", "(words)"},
      {"Annots/1/F", "5"},
  };
  for (const auto& [steps, value] : values) EXPECT_EQ(ValueAt(page, steps), value) << steps;
  EXPECT_EQ(page.getKey("/Annots").getArrayNItems(), 2);
  EXPECT_EQ(coloured.alive, 0) << "encodings are freed";
}

std::string LocalDate() {
  const std::time_t now = std::time(nullptr);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "(D:%Y%m%d%H%M%S)", std::localtime(&now))};
}

TEST_F(PageTest, IsDatedInLocalTime) {
  for (const char* zone : {"UTC+5", "UTC-9"}) {
    sandbox.SetVariable("TZ", zone);
    tzset();
    const std::string before = LocalDate();
    device.SetStarted(0);
    Start();
    device.PlotPage();
    (void)SavedPage();
    const std::string date = ValueAt(pdf->getTrailer(), "Info/CreationDate");
    EXPECT_LE(before, date);
    EXPECT_LE(date, LocalDate());
  }
}

}  // namespace
}  // namespace border
