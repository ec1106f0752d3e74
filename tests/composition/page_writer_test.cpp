// Pages, read back from the saved file with qpdf.
#include "composition/page_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "composition/replay.h"
#include "composition/replay_bitmap.h"
#include "tests/support/saved_document.h"
#include "tests/support/scratch.h"

namespace hdi {
namespace {

const std::string kHead = "q\n0 0 0 RG 0 0 0 rg 1 w 0 J 0 j\n/FXE1 gs ";

class PageWriterTest : public testing::Test {
 protected:
  PageWriterTest() {
    EXPECT_TRUE(writer_->OpenOutput(directory_.Path16("plot.pdf")));
    writer_->SetPointScale(72);  // a dot is a point
    writer_->StartDocument(u"test");
  }

  engine::SavedDocument Saved() {
    writer_->Save();
    writer_.reset();
    return engine::SavedDocument(directory_.Read("plot.pdf"));
  }

  void DrawLine(float x1, float y1, float x2, float y2) {
    writer_->MoveTo(x1, y1);
    writer_->LineTo(x2, y2);
    writer_->StrokePath();
  }

  scratch::Directory directory_;
  std::optional<PageWriter> writer_{std::in_place};
};

TEST_F(PageWriterTest, KeepsStateAcrossPagesExceptPathClipAndOrigin) {
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
  writer_->BeginPage(9, 50, 60);  // beyond the last page
  DrawLine(1, 2, 3, 4);
  writer_->FinishPage();
  writer_->BeginPage(3, 50.5, 60);
  writer_->FinishPage();

  engine::SavedDocument saved = Saved();
  ASSERT_EQ(saved.PageCount(), 3U);
  const std::string line = kHead + "1 1 1 rg 1 0 0 RG 1 2 m 3 4 l S\nQ\n";
  const std::vector<std::string> first = {"q 1 0 0.501961 rg 1 0 0 1 0 0 cm  0 0 100 200 re f Q",
                                          "q 1 0 0 1 10 20 cm ", line, " Q"};
  const std::vector<std::string> second = {"q 1 0 0.501961 rg 1 0 0 1 0 0 cm  0 0 50 60 re f Q",
                                           "q 1 0 0 1 0 0 cm ", line, " Q"};
  EXPECT_EQ(saved.PageContents(0), first);
  EXPECT_EQ(saved.PageContents(1), second);
  EXPECT_EQ(saved.Page(2).getKeys(),
            (std::set<std::string>{"/MediaBox", "/Parent", "/Resources", "/Rotate", "/Type"}));
  EXPECT_EQ(saved.Page(2).getKey("/MediaBox").unparse(), "[ 0 0 50.5 60 ]");
}

// Plays records with these opcodes and side data.
int32_t Replay(std::vector<std::pair<uint8_t, void*>> records, PageWriter& writer) {
  std::vector<PlotCommand> list(records.size());
  for (size_t i = 0; i < records.size(); ++i) {
    list[i].opcodeByte = records[i].first | 0x80;
    list[i].data = static_cast<uint8_t*>(records[i].second);
    list[i].next = i + 1 < records.size() ? &list[i + 1] : nullptr;
  }
  return ReplayCommands(list.data(), {}, nullptr, writer);
}

TEST_F(PageWriterTest, ReplaySkipsReservedOpcodes) {
  StartPageData page{.pageNumber = 1,
                     .width = 10,
                     .height = 10,
                     .background = kNoBackground,
                     .marginLeft = 0.5,
                     .marginBottom = 2.4};
  PointData from{1, 1};
  PointData to{2, 3};
  EXPECT_EQ(Replay({{2, nullptr},
                    {OP_START_PAGE, &page},
                    {40, nullptr},
                    {OP_MOVE_TO, &from},
                    {OP_LINE_TO, &to},
                    {OP_STROKE_PATH, nullptr},
                    {OP_END_PAGE, nullptr}},
                   *writer_),
            1);
  EXPECT_EQ(ReplayCommands(nullptr, {}, nullptr, *writer_), 1);
  const std::vector<std::string> expected = {"q 1 0 0 1 1 2 cm ",
                                             kHead + "1 1 1 rg 1 1 1 RG 1 1 m 2 3 l S\nQ\n", " Q"};
  EXPECT_EQ(Saved().PageContents(0), expected);
}

TEST_F(PageWriterTest, SavesOnlyVisibleImages) {
  struct {
    BITMAPINFOHEADER header{};
    uint8_t palette[4] = {1, 2, 3, 4};
  } raster;
  raster.header.biWidth = 1;
  raster.header.biHeight = 1;
  raster.header.biBitCount = 8;
  const uint8_t bits[4] = {};
  // A gray 1 x 1 JPEG, up to what is read of it.
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
  place({1, 2, 3, 1e-50});                         // 0 as an f32
  writer_->PlaceJpeg(plane, plane, {1, 2, 3, 4});  // not a JPEG
  writer_->SetLinkTarget(u"");
  writer_->FinishPage();
  place({1, 2, 3, 4});  // no page any more

  engine::SavedDocument saved = Saved();
  const auto isImage = [](QPDFObjectHandle object) { return object.isStreamOfType("", "/Image"); };
  EXPECT_EQ(std::ranges::count_if(saved.Objects(), isImage), 4);  // two, each with its mask
  EXPECT_EQ(saved.PageContents(0)[1],
            kHead + "q 3 0 0 4 5 6 cm /FXX1 Do Q\nq 3 0 0 4 5 6 cm /FXX2 Do Q\nQ\n");
  // Images that are not visible still extend a link.
  EXPECT_EQ(saved.Page(0).getKey("/Annots").getArrayItem(0).getKey("/Rect").unparse(), "[ 1 2 8 10 ]");
}

// A raster that cannot be encoded any more, has no pixels or has lost its header.
class FadingRaster final : public RasterImage {
 public:
  const BITMAPINFOHEADER* GetImageHeader() override { return header.biBitCount == 0 ? nullptr : &header; }
  int32_t GetPixelWidth() override { return 1; }
  int32_t GetPixelHeight() override { return -1; }
  int32_t HasAlphaChannel() override { return 1; }
  uint8_t* GetPixelBits() override { return hasPixels ? pixel : nullptr; }
  uint8_t* EncodeToMemory(const char*, int32_t, uint64_t*) override { return nullptr; }
  void FreeEncoded(uint8_t*) override { ADD_FAILURE() << "nothing was encoded"; }

  BITMAPINFOHEADER header{};
  uint8_t pixel[4] = {};
  bool hasPixels = true;
};

TEST_F(PageWriterTest, UnavailableRastersAreLeftOutOrEndTheReplay) {
  FadingRaster raster;
  const HostImageRecord image{&raster, 0, 0, 1, {}, 1};
  writer_->BeginPage(1, 10, 10);
  for (const uint16_t bits : {uint16_t{24}, uint16_t{32}}) {
    raster.header.biBitCount = bits;
    EXPECT_EQ(PlayBitmap({&image, 1, 2, 3, 4}, *writer_), BitmapOutcome::kGoOn);
  }
  raster.hasPixels = false;
  for (const uint16_t bits : {uint16_t{1}, uint16_t{8}, uint16_t{32}}) {
    raster.header.biBitCount = bits;
    EXPECT_EQ(PlayBitmap({&image, 1, 2, 3, 4}, *writer_), BitmapOutcome::kGoOn);
  }
  EXPECT_EQ(PlayBitmap({}, *writer_), BitmapOutcome::kGoOn);
  raster.header.biBitCount = 0;
  EXPECT_EQ(PlayBitmap({&image, 1, 2, 3, 4}, *writer_), BitmapOutcome::kRasterIsGone);
  DrawLine(1, 2, 3, 4);
  writer_->FinishPage();

  BitmapData data{&image, 1, 2, 3, 4};
  EXPECT_EQ(Replay({{OP_BITMAP, &data}, {OP_END_PAGE, nullptr}}, *writer_), 0);
  engine::SavedDocument saved = Saved();
  ASSERT_EQ(saved.PageCount(), 1U);
  EXPECT_FALSE(saved.Page(0).getKey("/Resources").hasKey("/XObject"));
}

// A page with one long path, one with many strokes, and small ones.
TEST_F(PageWriterTest, PlotIsTheSameForAnyNumberOfThreads) {
  const auto plot = [this](unsigned workers) {
    writer_->StartDocument(u"test", engine::Compression::kFast, workers);
    for (uint32_t page = 1; page <= 5; ++page) {
      writer_->BeginPage(page, 1000, 1000);
      for (uint32_t i = 0; i < (page < 3 ? 150'000U : 100U); ++i) {
        const auto value = static_cast<float>(i * 2654435761U >> 17);
        if (i == 0 || page == 2) writer_->MoveTo(value, 0);
        writer_->LineTo(0, value);
        if (page == 2) writer_->StrokePath();
      }
      writer_->StrokePath();
      writer_->FinishPage();
    }
    engine::SavedDocument saved = Saved();
    std::vector<std::string> streams;
    for (size_t page = 0; page < saved.PageCount(); ++page) {
      const auto raw = saved.Page(page).getPageContents().at(1).getRawStreamData();
      streams.emplace_back(reinterpret_cast<const char*>(raw->getBuffer()), raw->getSize());
      const std::string text = saved.PageContents(page).at(1);
      EXPECT_EQ(std::ranges::count(text, 'l'), page < 2 ? 150'000 : 100) << page;
    }
    EXPECT_TRUE(writer_.emplace().OpenOutput(directory_.Path16("plot.pdf")));
    return streams;
  };
  const std::vector<std::string> alone = plot(0);
  for (const unsigned workers : {1U, 7U}) EXPECT_TRUE(plot(workers) == alone) << workers;
}

}  // namespace
}  // namespace hdi
