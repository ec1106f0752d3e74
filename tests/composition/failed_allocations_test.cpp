// Plots with one failing allocation, each in turn: at most one record is lost.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <new>
#include <set>
#include <utility>

#include "composition/replay.h"
#include "tests/recording/recorded_device.h"
#include "tests/support/log_font.h"
#include "tests/support/saved_document.h"
#include "tests/support/scratch.h"

namespace {

int64_t allocationsLeft = -1;  // the allocation after these fails; none if negative

void* Allocate(size_t size) noexcept {
  if (allocationsLeft >= 0 && allocationsLeft-- == 0) return nullptr;
  return std::malloc(size);
}

void* AllocateOrThrow(size_t size) {
  void* block = Allocate(size);
  return block != nullptr ? block : throw std::bad_alloc();
}

}  // namespace

void* operator new(size_t size) { return AllocateOrThrow(size); }
void* operator new[](size_t size) { return AllocateOrThrow(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, size_t) noexcept { std::free(block); }
void operator delete[](void* block, size_t) noexcept { std::free(block); }

// fxcrt::Observable::AddObserver must not fail: the observing pointer has its target already and would remove
// itself from a list that it is not in.
extern "C" void __real__ZN5fxcrt10Observable11AddObserverEPNS0_13ObserverIfaceE(void* self, void* observer);
extern "C" void __wrap__ZN5fxcrt10Observable11AddObserverEPNS0_13ObserverIfaceE(void* self, void* observer) {
  const int64_t left = std::exchange(allocationsLeft, -1);
  __real__ZN5fxcrt10Observable11AddObserverEPNS0_13ObserverIfaceE(self, observer);
  allocationsLeft = left;
}

namespace hdi {
namespace {

// Runs the steps with the allocation after the first `count` failing; returns whether there was one.
bool RunWithout(int64_t count, const std::function<void()>& steps) {
  allocationsLeft = count;
  steps();
  return std::exchange(allocationsLeft, -1) < 0;
}

// Describes an object and everything it refers to, except its parent.
std::string Describe(QPDFObjectHandle object) {
  std::string text;
  if (object.isStream()) return Describe(object.getDict()) + engine::StreamData(object);
  if (object.isArray()) {
    for (auto& item : object.aitems()) text += Describe(item) + " ";
    return "[" + text + "]";
  }
  if (!object.isDictionary()) return object.unparseResolved();
  for (const auto& [key, value] : object.ditems()) {
    if (key != "/Parent" && key != "/Length") text += key + " " + Describe(value) + "\n";
  }
  return "<<" + text + ">>";
}

// Everything visible to readers, and the number of images and layers, visible or not.
std::string Description(engine::SavedDocument saved) {
  std::string text = Describe(saved.Catalog().getKey("/OCProperties"));
  for (size_t i = 0; i < saved.PageCount(); ++i) text += Describe(saved.Page(i));
  const auto objects = saved.Objects();
  text += std::to_string(std::ranges::count_if(objects, [](QPDFObjectHandle object) {
    return object.isStreamOfType("", "/Image") || object.isDictionaryOfType("/OCG");
  }));
  return text;
}

class SmallRaster final : public RasterImage {
 public:
  explicit SmallRaster(uint16_t bitsPerPixel) {
    content_.header.biWidth = 1;
    content_.header.biHeight = 1;
    content_.header.biBitCount = bitsPerPixel;
  }
  const BITMAPINFOHEADER* GetImageHeader() override { return &content_.header; }
  int32_t GetPixelWidth() override { return 1; }
  int32_t GetPixelHeight() override { return 1; }
  int32_t HasAlphaChannel() override { return 1; }
  uint8_t* GetPixelBits() override { return pixel_; }
  uint8_t* EncodeToMemory(const char*, int32_t, uint64_t* size) override {
    *size = sizeof jpeg_;
    return jpeg_;
  }
  void FreeEncoded(uint8_t*) override {}

 private:
  struct {
    BITMAPINFOHEADER header{};
    uint8_t palette[8] = {255, 255, 255, 255, 0, 0, 0, 255};
  } content_;
  uint8_t pixel_[4] = {};
  // A gray 1 x 1 JPEG, up to what is read of it.
  uint8_t jpeg_[25] = {0xFF, 0xD8, 0xFF, 0xC0, 0, 11, 8, 0, 1, 0, 1,  1, 1,
                       0x11, 0,    0xFF, 0xDA, 0, 8,  1, 1, 0, 0, 63, 0};
};

class FailedAllocations : public testing::Test {
 protected:
  FailedAllocations() {
    plot_.Settings().backgroundColor = 0xFF;
    plot_.Settings().linksEnabled = 1;
    plot_.Settings().layersEnabled = 1;
    plot_.Settings().textAsGeometry = 0;
  }

  // Every kind of record; each text and raster with its own font or format.
  void RecordPages() {
    const std::vector<HT_Double_Point> square = {{0, 0}, {9, 0}, {9, 9}, {0, 9}, {0, 0}};
    const uint32_t count = 5;
    const auto fill = [&] { DevPolyPolygon(device_, square.data(), &count, 1); };
    const ClipPolygon clip{1, nullptr, 4, square.data()};
    EXTLOGPEN32 pen{};
    const LOGBRUSH brush{0, 0x123456, 0};
    const int32_t rectangle[4] = {1, 2, 3, 4};

    DevStartPage(device_, nullptr);
    DevSetClip(device_, &clip);
    DevSetPen(device_, &pen);
    plot_.Polyline({{1, 1}, {2, 5}});
    pen.elpPenStyle = kPenDash;
    DevSetPen(device_, &pen);
    DevPolyBezier(device_, square.data(), 4);
    DevSetLayer(device_, 0, u"A layer with a long name");
    DevSetBrush(device_, &brush);
    fill();
    DevSetLayer(device_, 0, u"B");
    DevSetClip(device_, &clip);
    DevSetFillMode(device_, kFillWinding);
    fill();
    DevSetAlpha(device_, 128);
    DevSetFillMode(device_, kFillAlternate);
    fill();
    DevSetRasterOp(device_, kRasterOpMaskPen);
    DevSetPen(device_, &pen);
    DevSetLayer(device_, 0, u"C");
    DevBeginLink(device_, u"C:\\a path that is not short");
    DevPolygon(device_, square.data(), 3);
    DevStrokeFillPath(device_);
    RecordText(u"Liberation Serif", u"A\u2713");
    const LOGFONTW shapeFont = SystemFontServices().DefaultInterfaceFont().value();
    DevText(device_, &shapeFont, square.data(), u"a", 1, nullptr, 12, 0, 1, 1);
    DevSetAlpha(device_, 255);  // keeps black and white as they are
    for (const HostImageRecord& image : images_) DevBitmap(device_, &image);
    DevEndLink(device_);
    DevShxComment(device_, u"comment", rectangle, 4);
    DevEndPage(device_);
    DevStartPage(device_, nullptr);
    plot_.Polyline({{1, 1}, {2, 5}});
    DevEndPage(device_);
  }

  int32_t RecordText(std::u16string_view face, std::u16string_view text) {
    const double advances[] = {5, 6, 7, 8};
    const LOGFONTW font = MakeLogFont(face, {.weight = 700});
    const HT_Double_Point at{3, 4};
    return DevText(device_, &font, &at, text.data(), static_cast<int32_t>(text.size()), advances, 12, 0, 1,
                   1);
  }

  // Returns what a reader sees if the allocation after the first `count` fails; empty if there are no more
  // than these.
  std::string Replay(int64_t count, const FontUsage& fontUsage) {
    PageWriter writer;
    EXPECT_TRUE(writer.OpenOutput(directory_.Path16("plot.pdf")));
    writer.SetPointScale(72);
    writer.StartDocument(u"test", engine::Compression::kFast, 0);
    const bool hasFailed =
        RunWithout(count, [&] { ReplayCommands(plot_.Job().head, fontUsage, &plot_.Settings(), writer); });
    writer.Save();
    return hasFailed || count < 0 ? Description(engine::SavedDocument(directory_.Read("plot.pdf"))) : "";
  }
  std::string Replay(int64_t count = -1) { return Replay(count, plot_.Job().fontUsage); }

  // Descriptions of the plot without one of its records. Points only count together with their paint record.
  std::set<std::string> OutcomesWithoutARecord() {
    std::set<std::string> outcomes;
    PlotCommand* pathStart = plot_.Job().head;
    for (PlotCommand* before = pathStart; before->next != nullptr; before = before->next) {
      const uint8_t opcode = before->next->OpcodeValue();
      const bool isPoint = opcode == OP_MOVE_TO || opcode == OP_LINE_TO || opcode == OP_CURVE_TO;
      const bool paints = opcode == OP_STROKE_PATH || opcode == OP_FILL_PATH ||
                          opcode == OP_FILL_STROKE_PATH || opcode == OP_CLIP_PATH;
      PlotCommand* from = paints ? pathStart : before;
      PlotCommand* const kept = std::exchange(from->next, before->next->next);
      outcomes.insert(Replay());
      from->next = kept;
      if (!isPoint) pathStart = before->next;
    }
    return outcomes;
  }

  RecordedDevice plot_;
  HostDevice* device_ = &plot_.device;
  SmallRaster rasters_[3] = {SmallRaster(32), SmallRaster(8), SmallRaster(1)};
  HostImageRecord images_[3] = {
      {&rasters_[0], 1, 2, 3, {}, 4}, {&rasters_[1], 1, 2, 3, {}, 4}, {&rasters_[2], 1, 2, 3, {}, 4}};
  scratch::Directory directory_;
};

// Without memory for a font its run is left out, not the text.
TEST_F(FailedAllocations, ReplayLosesAtMostOneRecord) {
  RecordPages();
  std::set<std::string> outcomes = OutcomesWithoutARecord();
  outcomes.insert(Replay());
  for (const auto& [name, characters] : plot_.Job().fontUsage) {
    FontUsage others = plot_.Job().fontUsage;
    others.erase(name);
    outcomes.insert(Replay(-1, others));
  }
  int64_t count = 0;
  for (std::string outcome = Replay(count); !outcome.empty(); outcome = Replay(++count)) {
    ASSERT_TRUE(outcomes.contains(outcome)) << "allocation " << count << ": " << outcome;
  }
  EXPECT_GT(count, 1000);
}

TEST_F(FailedAllocations, EntriesDropTheCallAndReturnOne) {
  struct {
    EXTLOGPEN32 pen{};
    uint32_t moreEntries[3] = {1, 2, 3};
  } dashed;
  dashed.pen.elpPenStyle = kPenUserStyle;
  dashed.pen.elpNumEntries = 4;
  const HT_Double_Point center{5, 5};
  const std::vector<std::function<int32_t()>> entries = {
      [&] { return DevSetPen(device_, &dashed.pen); },
      [&] { return RecordText(u"Liberation Serif", u"A\u2713"); },
      [&] { return DevArc(device_, &center, 1, 2, 0, 0, 1); },
  };
  RecordText(u"DejaVu Sans", u"A");  // the host's library lists the fonts once
  EXPECT_EQ(plot_.TakeRecords(), "TEXT");
  for (const auto& entry : entries) {
    const FontUsage fontUsage = plot_.Job().fontUsage;
    int32_t result = 0;
    int64_t count = 0;
    for (; RunWithout(count, [&] { result = entry(); }); ++count) {
      EXPECT_EQ(result, 1);
      EXPECT_EQ(plot_.TakeRecords(), "");
      EXPECT_EQ(plot_.Job().fontUsage, fontUsage);
    }
    EXPECT_GT(count, 0);
    EXPECT_NE(plot_.TakeRecords(), "");
  }
}

}  // namespace
}  // namespace hdi
