// Pages, as another library reads them back from the saved file.
#include "composition/page_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include "composition/replay.h"
#include "composition/replay_bitmap.h"
#include "platform/unicode.h"

namespace hdi {
namespace {

class PageWriterTest : public testing::Test {
 protected:
  PageWriterTest()
      : file_(std::filesystem::temp_directory_path() /
              (std::string("hdi_page_writer_") + TestName() + ".pdf")) {
    EXPECT_TRUE(writer_->OpenOutput(ToUtf16(file_.string())));
    writer_->SetPointScale(72);  // a dot is a point
    writer_->StartDocument(u"test");
  }
  ~PageWriterTest() override { std::filesystem::remove(file_); }

  static std::string TestName() { return testing::UnitTest::GetInstance()->current_test_info()->name(); }

  std::vector<QPDFPageObjectHelper> SavedPages() {
    writer_->Save();
    writer_.reset();
    saved_.processFile(file_.c_str());
    return QPDFPageDocumentHelper(saved_).getAllPages();
  }

  void DrawLine(float x1, float y1, float x2, float y2) {
    writer_->MoveTo(x1, y1);
    writer_->LineTo(x2, y2);
    writer_->StrokePath();
  }

  static std::vector<std::string> Contents(QPDFPageObjectHelper& page) {
    std::vector<std::string> streams;
    for (auto& stream : page.getPageContents()) {
      const auto data = stream.getStreamData();
      streams.emplace_back(reinterpret_cast<const char*>(data->getBuffer()), data->getSize());
    }
    return streams;
  }

  std::filesystem::path file_;
  std::optional<PageWriter> writer_{std::in_place};
  QPDF saved_;
};

TEST_F(PageWriterTest, StateSurvivesAPageAndPathsClipsAndOriginsDoNot) {
  writer_->BeginPage(1, 100, 200);
  writer_->SetOrigin(10, 20);
  writer_->SetStrokeColor({255, 0, 0}, BlendMode::kNormal);
  writer_->SetBackground({255, 0, 128});
  DrawLine(1, 2, 3, 4);
  writer_->MoveTo(0, 0);
  writer_->LineTo(9, 9);
  writer_->MakeClipFromPath();
  writer_->MoveTo(5, 5);  // never painted
  writer_->FinishPage();
  DrawLine(7, 7, 8, 8);  // no page
  writer_->FinishPage();
  writer_->BeginPage(9, 50, 60);  // the number runs ahead
  DrawLine(1, 2, 3, 4);
  writer_->FinishPage();
  writer_->BeginPage(3, 50.5, 60);
  writer_->FinishPage();

  auto pages = SavedPages();
  ASSERT_EQ(pages.size(), 3U);
  const std::string head = "q\n0 0 0 RG 0 0 0 rg 1 w 0 J 0 j\n/FXE1 gs 1 1 1 rg 1 0 0 RG ";
  EXPECT_EQ(Contents(pages[0]),
            (std::vector<std::string>{"q 1 0 0.501961 rg 1 0 0 1 0 0 cm  0 0 100 200 re f Q",
                                      "q 1 0 0 1 10 20 cm ", head + "1 2 m 3 4 l S\nQ\n", " Q"}));
  EXPECT_EQ(Contents(pages[1])[1], "q 1 0 0 1 0 0 cm ");
  EXPECT_EQ(Contents(pages[1])[2], head + "1 2 m 3 4 l S\nQ\n");
  EXPECT_FALSE(pages[2].getObjectHandle().hasKey("/Contents"));
  EXPECT_EQ(pages[2].getObjectHandle().getKey("/MediaBox").unparse(), "[ 0 0 50.5 60 ]");
  EXPECT_FALSE(pages[0].getObjectHandle().hasKey("/Annots"));
}

TEST_F(PageWriterTest, ALinkCoversWhatIsDrawnWhileItIsOpen) {
  writer_->BeginPage(1, 100, 100);
  DrawLine(0, 0, 99, 99);
  writer_->SetLinkTarget(u"http://\u00e9\U0001F600");
  DrawLine(10.2F, 20.2F, 30.4F, 40.4F);
  writer_->MoveTo(5, 50);
  writer_->CurveTo(6, 61, 7, 62, 8, 50);  // control points count
  writer_->StrokePath();
  writer_->SetLinkTarget(u"");
  writer_->SetLinkTarget(u"nothing");
  writer_->SetLinkTarget(u"");  // an empty area writes nothing
  writer_->FinishPage();

  auto pages = SavedPages();
  auto annotations = pages[0].getObjectHandle().getKey("/Annots");
  ASSERT_EQ(annotations.getArrayNItems(), 1);
  auto link = annotations.getArrayItem(0);
  EXPECT_EQ(link.getKey("/Rect").unparse(), "[ 5 20 31 62 ]");
  EXPECT_EQ(link.getKey("/Border").unparse(), "[ 0 0 0 ]");
  EXPECT_EQ(link.getKeys(), (std::set<std::string>{"/A", "/Border", "/Rect", "/Subtype", "/Type"}));
  EXPECT_EQ(link.getKey("/A").getKey("/S").getName(), "/URI");
  EXPECT_EQ(link.getKey("/A").getKey("/URI").getStringValue(), "http://\xC3\xA9\xED\xA0\xBD\xED\xB8\x80");
}

TEST_F(PageWriterTest, TheReplayPassesOverReservedOpcodesAndPlaysLinks) {
  // A list by hand: opcode 2 is reserved, 40 unknown, and the link's characters stand unaligned behind their
  // count.
  struct [[gnu::packed]] {
    uint32_t count = 1;
    char16_t unit = u'x';
  } target;
  LinkData noTarget{0};
  StartPageData page{.pageNumber = 1,
                     .width = 10,
                     .height = 10,
                     .background = kNoBackground,
                     .marginLeft = 0.5,
                     .marginBottom = 2.4};
  PointData from{1, 1};
  PointData to{2, 3};
  const std::vector<std::pair<uint8_t, void*>> records = {{2, nullptr},
                                                          {OP_START_PAGE, &page},
                                                          {40, nullptr},
                                                          {OP_LINK, &target},
                                                          {OP_MOVE_TO, &from},
                                                          {OP_LINE_TO, &to},
                                                          {OP_STROKE_PATH, nullptr},
                                                          {OP_LINK, &noTarget},
                                                          {OP_END_PAGE, nullptr}};
  std::vector<PlotCommand> list(records.size());
  for (size_t i = 0; i < records.size(); ++i) {
    list[i].opcodeByte = records[i].first | 0x80;
    list[i].data = static_cast<uint8_t*>(records[i].second);
    list[i].next = i + 1 < records.size() ? &list[i + 1] : nullptr;
  }
  EXPECT_EQ(ReplayCommands(list.data(), {}, nullptr, *writer_), 1);
  EXPECT_EQ(ReplayCommands(nullptr, {}, nullptr, *writer_), 1);

  auto pages = SavedPages();
  ASSERT_EQ(pages.size(), 1U);
  EXPECT_EQ(Contents(pages[0])[0], "q 1 0 0 1 1 2 cm ");
  EXPECT_EQ(pages[0].getObjectHandle().getKey("/Annots").getArrayItem(0).getKey("/Rect").unparse(),
            "[ 2 3 3 5 ]");
}

TEST_F(PageWriterTest, OnlyImagesThatShowAreSaved) {
  struct {
    BITMAPINFOHEADER header{};
    uint8_t palette[4] = {1, 2, 3, 4};
  } raster;
  raster.header.biWidth = 1;
  raster.header.biHeight = 1;
  raster.header.biBitCount = 8;
  const uint8_t bits[4] = {};
  // Gray, 1 x 1: as much of a JPEG as is read.
  const std::vector<uint8_t> jpeg = {0xFF, 0xD8, 0xFF, 0xC0, 0, 11, 8, 0, 1, 0, 1,  1, 1,
                                     0x11, 0,    0xFF, 0xDA, 0, 8,  1, 1, 0, 0, 63, 0};
  const uint8_t plane[1] = {9};
  const auto place = [&](const ImageBox& box) {
    writer_->PlaceIndexedBitmap(bits, &raster.header, box);
    writer_->PlaceJpeg(jpeg, plane, box);
  };
  place({1, 2, 3, 4});  // no page yet
  writer_->BeginPage(1, 10, 10);
  writer_->SetLinkTarget(u"x");
  place({5, 6, 3, 4});
  place({1, 2, 0, 4});
  place({1, 2, 3, 1e-50});  // 0 as a page's number
  writer_->SetLinkTarget(u"");
  writer_->FinishPage();
  place({1, 2, 3, 4});  // no page any more

  auto pages = SavedPages();
  const auto isImage = [](QPDFObjectHandle object) {
    return object.isStream() && object.getDict().getKey("/Subtype").isNameAndEquals("/Image");
  };
  EXPECT_EQ(std::ranges::count_if(saved_.getAllObjects(), isImage), 4);  // two, each with its mask
  EXPECT_EQ(Contents(pages[0])[1],
            "q\n0 0 0 RG 0 0 0 rg 1 w 0 J 0 j\n/FXE1 gs "
            "q 3 0 0 4 5 6 cm /FXX1 Do Q\nq 3 0 0 4 5 6 cm /FXX2 Do Q\nQ\n");
  // What doesn't show takes its place in a link all the same.
  EXPECT_EQ(pages[0].getObjectHandle().getKey("/Annots").getArrayItem(0).getKey("/Rect").unparse(),
            "[ 1 2 8 10 ]");
}

// A raster that can be encoded no more, or has even lost its header.
class FadingRaster final : public RasterImage {
 public:
  const BITMAPINFOHEADER* GetImageHeader() override { return header.biBitCount == 0 ? nullptr : &header; }
  int32_t GetPixelWidth() override { return 1; }
  int32_t GetPixelHeight() override { return -1; }
  int32_t HasAlphaChannel() override { return 1; }
  uint8_t* GetPixelBits() override { return pixel; }
  uint8_t* EncodeToMemory(const char*, int32_t, uint64_t*) override { return nullptr; }
  void FreeEncoded(uint8_t*) override { ADD_FAILURE() << "nothing was encoded"; }

  BITMAPINFOHEADER header{};
  uint8_t pixel[4] = {};
};

TEST_F(PageWriterTest, RastersThatAreGoneAreLeftOutOrEndTheReplay) {
  FadingRaster raster;
  const HostImageRecord image{&raster, 0, 0, 1, {}, 1};
  writer_->BeginPage(1, 10, 10);
  for (const uint16_t bits : {uint16_t{24}, uint16_t{32}}) {
    raster.header.biBitCount = bits;
    EXPECT_EQ(PlayBitmap({&image, 1, 2, 3, 4}, *writer_), BitmapOutcome::kGoOn);
  }
  EXPECT_EQ(PlayBitmap({}, *writer_), BitmapOutcome::kGoOn);
  raster.header.biBitCount = 0;
  EXPECT_EQ(PlayBitmap({&image, 1, 2, 3, 4}, *writer_), BitmapOutcome::kRasterIsGone);
  DrawLine(1, 2, 3, 4);
  writer_->FinishPage();

  BitmapData data{&image, 1, 2, 3, 4};
  PlotCommand end{.next = nullptr, .opcodeByte = OP_END_PAGE, .data = nullptr, .unused = {}};
  PlotCommand bitmap{
      .next = &end, .opcodeByte = OP_BITMAP, .data = reinterpret_cast<uint8_t*>(&data), .unused = {}};
  EXPECT_EQ(ReplayCommands(&bitmap, {}, nullptr, *writer_), 0);
  auto pages = SavedPages();
  ASSERT_EQ(pages.size(), 1U);
  EXPECT_FALSE(pages[0].getObjectHandle().getKey("/Resources").hasKey("/XObject"));
}

}  // namespace
}  // namespace hdi
