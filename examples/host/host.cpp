// A complete host: loads the driver PDF.hdi and plots a page with a line, a text that is a link, and an
// image.
//
//   host MODULE OUTPUT.pdf
#include <dlfcn.h>
#include <hdi/border.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace {

using hdi::Position;

constexpr int16_t kDotsPerInch = 600;

// Dots for a length in millimetres. All coordinates are dots from the upper left corner of the printable
// area.
constexpr double Dots(double millimetres) { return millimetres * kDotsPerInch / 25.4; }

std::u16string Widen(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }

// Receives the drivers of the module: one for each device in pdf.ini.
class Drivers final : public hdi::HostDriverList {
 public:
  void HostOwn() override {}
  void AddDriver(hdi::HT_Driver* driver) override {
    if (first == nullptr) first = driver;
  }
  void RemoveDriver(hdi::HT_Driver* driver) override {
    if (first == driver) first = nullptr;
  }

  hdi::HT_Driver* first = nullptr;
};

// A raster of 8 bits a pixel, rows from the bottom. The palette follows the header in memory.
class Checkers final : public hdi::RasterImage {
 public:
  Checkers() {
    block_.header.biSize = sizeof block_.header;
    block_.header.biWidth = block_.header.biHeight = kSide;
    block_.header.biPlanes = 1;
    block_.header.biBitCount = 8;
    block_.palette[0] = 0xFFD7E3F4;  // bytes blue, green, red, alpha
    block_.palette[1] = 0xFF2F5D9B;
    for (int32_t i = 0; i < kSide * kSide; ++i) pixels_[i] = static_cast<uint8_t>((i / kSide + i) % 2);
  }

  const hdi::BITMAPINFOHEADER* GetImageHeader() override { return &block_.header; }
  int32_t GetPixelWidth() override { return kSide; }
  int32_t GetPixelHeight() override { return kSide; }
  int32_t HasAlphaChannel() override { return 0; }
  uint8_t* GetPixelBits() override { return pixels_; }
  // Called for rasters of 32 bits a pixel only, which the driver embeds as the host's JPEG data.
  uint8_t* EncodeToMemory(const char*, int32_t, uint64_t*) override { return nullptr; }
  void FreeEncoded(uint8_t*) override {}

 private:
  static constexpr int32_t kSide = 8;  // a multiple of 4: rows end at 32 bits
  struct {
    hdi::BITMAPINFOHEADER header{};
    uint32_t palette[256]{};
  } block_;
  uint8_t pixels_[kSide * kSide];
};

// Calls the entry of `device` at `position`, a function of the type `Entry`.
template <typename Entry, typename... Arguments>
auto Call(hdi::HostDevice& device, Position position, Arguments... arguments) {
  return device.table->At<Entry>(position)(&device, arguments...);
}

void DrawLine(hdi::HostDevice& device) {
  hdi::EXTLOGPEN32 pen{};
  pen.elpPenStyle = hdi::kPenGeometric | hdi::kPenSolid | hdi::kPenCapRound;
  pen.elpWidth = static_cast<uint32_t>(Dots(0.5));
  pen.elpColor = 0x00A05020;  // bytes red, green, blue, 0
  Call<hdi::entry::SetPen>(device, Position::kSetPen, static_cast<const hdi::EXTLOGPEN32*>(&pen));
  const hdi::HT_Double_Point points[] = {{Dots(20), Dots(50)}, {Dots(120), Dots(50)}};
  Call<hdi::entry::Polyline>(device, Position::kPolyline, points, 2);
}

// What is plotted between the two calls becomes the area of the link.
void DrawLinkedText(hdi::HostDevice& device) {
  const double height = Dots(8);
  hdi::LOGFONTW font{};
  font.lfHeight = -static_cast<int32_t>(height);
  font.lfWeight = 400;
  Widen("Liberation Mono").copy(font.lfFaceName, 31);
  const hdi::LOGBRUSH brush{};
  const std::u16string text = Widen("A linked text");
  const std::vector<double> advances(text.size(),
                                     0.6 * height);  // the host measures: every glyph is 0.6 em wide
  const hdi::HT_Double_Point baseline = {Dots(20), Dots(40)};
  Call<hdi::entry::SetBrush>(device, Position::kSetBrush, &brush);
  Call<hdi::entry::BeginLink>(device, Position::kBeginLink, u"https://example.org/");
  Call<hdi::entry::Text>(device, Position::kText, static_cast<const hdi::LOGFONTW*>(&font), &baseline,
                         text.c_str(), static_cast<int32_t>(text.size()), advances.data(), height, 0.0, 1.0,
                         1.0);
  Call<hdi::entry::EndLink>(device, Position::kEndLink);
}

bool Plot(hdi::HT_Driver& driver, const std::u16string& output) {
  hdi::DriverDevMode* settings = driver.GetDevModePointer();
  settings->dm.dmPrintQuality = kDotsPerInch;
  driver.NormalizeDevMode(settings);
  settings->openAfterPlot = 0;

  hdi::HostDevice device{};
  device.driver = &driver;
  if (driver.OpenDevice(&device) != 1) return false;
  // The image and its record must live until EndDoc has returned.
  Checkers image;
  const double pixel = Dots(5);
  const hdi::HostImageRecord record = {&image, Dots(20), Dots(60), pixel, {}, pixel};

  const hdi::DOCINFOW document = {sizeof document, u"Example", output.c_str(), nullptr, 0};
  bool done = Call<hdi::entry::StartDoc>(device, Position::kStartDoc, &document) == 1;
  if (done) {
    Call<hdi::entry::StartPage>(device, Position::kStartPage,
                                static_cast<const hdi::DriverDevMode*>(settings));
    DrawLine(device);
    DrawLinkedText(device);
    Call<hdi::entry::Bitmap>(device, Position::kBitmap, &record);
    Call<hdi::entry::EndPage>(device, Position::kEndPage);
    done = Call<hdi::entry::EndDoc>(device, Position::kEndDoc) == 1;  // writes the file
  }
  driver.CloseDevice(&device);
  return done;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return std::fputs("usage: host MODULE OUTPUT.pdf\n", stderr), 2;
  void* module = dlopen(argv[1], RTLD_NOW);
  const auto itDriver =
      module == nullptr ? nullptr : reinterpret_cast<hdi::ItDriverFunction*>(dlsym(module, "IT_Driver"));
  if (itDriver == nullptr) return std::fprintf(stderr, "host: %s\n", dlerror()), 1;
  Drivers drivers;
  itDriver(hdi::kCreateDrivers, static_cast<hdi::HostDriverList*>(&drivers));
  if (drivers.first == nullptr)
    return std::fputs("host: pdf.ini names no device; set HDI_APP_DIR\n", stderr), 1;

  const bool done = Plot(*drivers.first, Widen(argv[2]));
  if (!done) std::fprintf(stderr, "host: %s could not be plotted\n", argv[2]);

  hdi::DriverRelease release{&drivers, drivers.first};
  itDriver(hdi::kReleaseDriver, &release);
  return done ? 0 : 1;
}
