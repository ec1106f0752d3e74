#include "hdiplot/image/windows/wic.h"

#include <objbase.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "hdiplot/image/pixel_rows.h"

namespace hdiplot {

namespace {

// Pixels that are numbers: palette indexes, or grays from black to white.
struct NumberForm {
  const GUID& format;
  int32_t bits;
  bool hasPalette;
};

const NumberForm kNumberForms[] = {
    {GUID_WICPixelFormat1bppIndexed, 1, true}, {GUID_WICPixelFormat2bppIndexed, 2, true},
    {GUID_WICPixelFormat4bppIndexed, 4, true}, {GUID_WICPixelFormat8bppIndexed, 8, true},
    {GUID_WICPixelFormatBlackWhite, 1, false}, {GUID_WICPixelFormat2bppGray, 2, false},
    {GUID_WICPixelFormat4bppGray, 4, false},   {GUID_WICPixelFormat8bppGray, 8, false},
    {GUID_WICPixelFormat16bppGray, 16, false},
};

constexpr size_t kNoChannel = SIZE_MAX;

// Pixels of 16 bits a channel, of which the upper 8 are kept.
struct DeepForm {
  const GUID& format;
  size_t channels;
  size_t blue, green, red, alpha;
};

const DeepForm kDeepForms[] = {
    {GUID_WICPixelFormat48bppRGB, 3, 2, 1, 0, kNoChannel},
    {GUID_WICPixelFormat48bppBGR, 3, 0, 1, 2, kNoChannel},
    {GUID_WICPixelFormat64bppRGB, 4, 2, 1, 0, kNoChannel},
    {GUID_WICPixelFormat64bppRGBA, 4, 2, 1, 0, 3},
    {GUID_WICPixelFormat64bppBGRA, 4, 0, 1, 2, 3},
};

template <typename Form, size_t count>
const Form* FindForm(const Form (&forms)[count], const GUID& format) {
  for (const Form& form : forms) {
    if (form.format == format) return &form;
  }
  return nullptr;
}

struct Rows {
  size_t bytes = 0;  // a row, of whole 32-bit words
  std::vector<uint8_t> pixels;
};

// The pixels as stored in the source.
std::optional<Rows> CopyRows(IWICBitmapSource& source, const ImageData& size, int32_t bits) {
  Rows rows;
  rows.bytes = RowBytes(size.width, bits);
  rows.pixels.resize(rows.bytes * static_cast<size_t>(size.height));
  const HRESULT result = source.CopyPixels(nullptr, static_cast<UINT>(rows.bytes),
                                           static_cast<UINT>(rows.pixels.size()), rows.pixels.data());
  return SUCCEEDED(result) ? std::optional(std::move(rows)) : std::nullopt;
}

// Calls `take` with each pixel in `rows`, of `bytes` bytes, and the same one of the image.
template <typename Take>
void TakeEach(const Rows& rows, size_t bytes, ImageData& image, const Take& take) {
  const auto taken = static_cast<size_t>(image.bitCount) / 8;
  const size_t rowBytes = RowBytes(image.width, image.bitCount);
  image.pixels.resize(rowBytes * static_cast<size_t>(image.height));
  for (size_t y = 0; y < static_cast<size_t>(image.height); ++y) {
    for (size_t x = 0; x < static_cast<size_t>(image.width); ++x) {
      take(&rows.pixels[y * rows.bytes + x * bytes], &image.pixels[y * rowBytes + x * taken]);
    }
  }
}

std::optional<std::vector<PixelColor>> PaletteOf(IWICImagingFactory& factory, IWICBitmapSource& source) {
  const auto palette = MadeBy<IWICPalette>([&](IWICPalette** made) { return factory.CreatePalette(made); });
  std::array<WICColor, 256> words{};
  UINT count = 0;
  if (!palette || FAILED(source.CopyPalette(palette.get())) ||
      FAILED(palette->GetColors(static_cast<UINT>(words.size()), words.data(), &count))) {
    return std::nullopt;
  }
  std::vector<PixelColor> colors;
  for (UINT i = 0; i < count; ++i) {
    const WICColor word = words[i];
    colors.push_back({static_cast<uint8_t>(word), static_cast<uint8_t>(word >> 8),
                      static_cast<uint8_t>(word >> 16), static_cast<uint8_t>(word >> 24)});
  }
  return colors;
}

std::optional<ImageData> ReadNumbers(IWICImagingFactory& factory, IWICBitmapSource& source,
                                     const NumberForm& form, ImageData image) {
  auto palette = form.hasPalette ? PaletteOf(factory, source) : Grays(std::min(form.bits, 8));
  auto rows = CopyRows(source, image, form.bits);
  if (!palette || !rows) return std::nullopt;
  image.bitCount = form.bits == 1 ? 1 : 8;
  image.palette = std::move(*palette);
  if (form.bits == 16) {
    TakeEach(*rows, 2, image, [](const uint8_t* from, uint8_t* to) { *to = from[1]; });
  } else if (form.bits == image.bitCount) {
    image.pixels = std::move(rows->pixels);
  } else {
    image.pixels.resize(RowBytes(image.width, 8) * static_cast<size_t>(image.height));
    for (int32_t y = 0; y < image.height; ++y) {
      Unpack(&rows->pixels[static_cast<size_t>(y) * rows->bytes], form.bits, image.width, RowOf(image, y));
    }
  }
  return image;
}

std::optional<ImageData> ReadDeep(IWICBitmapSource& source, const DeepForm& form, ImageData image) {
  const auto rows = CopyRows(source, image, static_cast<int32_t>(form.channels) * 16);
  if (!rows) return std::nullopt;
  image.bitCount = 32;
  TakeEach(*rows, form.channels * 2, image, [&form](const uint8_t* from, uint8_t* to) {
    const auto upper = [from](size_t channel) { return from[channel * 2 + 1]; };
    to[0] = upper(form.blue);
    to[1] = upper(form.green);
    to[2] = upper(form.red);
    to[3] = form.alpha == kNoChannel ? uint8_t{255} : upper(form.alpha);
  });
  return image;
}

// Ignores colour profiles; 255 is full ink.
std::optional<ImageData> ReadInks(IWICBitmapSource& source, ImageData image) {
  const auto rows = CopyRows(source, image, 32);
  if (!rows) return std::nullopt;
  image.bitCount = 32;
  TakeEach(*rows, 4, image, [](const uint8_t* from, uint8_t* to) {
    std::ranges::copy(ColorOfInks(from[0], from[1], from[2], from[3]), to);
  });
  return image;
}

std::optional<ImageData> ReadColors(IWICBitmapSource& source, ImageData image) {
  auto rows = CopyRows(source, image, 32);
  if (!rows) return std::nullopt;
  image.bitCount = 32;
  image.pixels = std::move(rows->pixels);
  return image;
}

std::optional<ImageData> ReadConverted(IWICImagingFactory& factory, IWICBitmapSource& source,
                                       ImageData image) {
  const auto converter = MadeBy<IWICFormatConverter>(
      [&](IWICFormatConverter** made) { return factory.CreateFormatConverter(made); });
  if (!converter ||
      FAILED(converter->Initialize(&source, GUID_WICPixelFormat32bppBGRA, WICBitmapDitherTypeNone, nullptr, 0,
                                   WICBitmapPaletteTypeCustom))) {
    return std::nullopt;
  }
  return ReadColors(*converter, std::move(image));
}

}  // namespace

// Sessions are short, as a dialog of the driver needs an apartment of its own in the same thread.
ImagingSession::ImagingSession() : isEntered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}

ImagingSession::~ImagingSession() {
  if (isEntered_) CoUninitialize();
}

Object<IWICImagingFactory> ImagingSession::MakeFactory() const {
  return MadeBy<IWICImagingFactory>([](IWICImagingFactory** made) {
    return CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                            reinterpret_cast<void**>(made));
  });
}

uint64_t BitsOf(IWICImagingFactory& factory, IWICBitmapSource& source) {
  constexpr uint64_t kUsual = 32;
  WICPixelFormatGUID format{};
  if (FAILED(source.GetPixelFormat(&format))) return kUsual;
  const auto component = MadeBy<IWICComponentInfo>(
      [&](IWICComponentInfo** made) { return factory.CreateComponentInfo(format, made); });
  if (!component) return kUsual;
  const auto info = MadeBy<IWICPixelFormatInfo>([&](IWICPixelFormatInfo** made) {
    return component->QueryInterface(IID_IWICPixelFormatInfo, reinterpret_cast<void**>(made));
  });
  UINT bits = 0;
  return info && SUCCEEDED(info->GetBitsPerPixel(&bits)) ? bits : kUsual;
}

std::optional<ImageData> ReadPixels(IWICImagingFactory& factory, IWICBitmapSource& source) {
  WICPixelFormatGUID format{};
  UINT width = 0;
  UINT height = 0;
  if (FAILED(source.GetPixelFormat(&format)) || FAILED(source.GetSize(&width, &height))) return std::nullopt;
  ImageData image;
  image.width = static_cast<int32_t>(width);
  image.height = static_cast<int32_t>(height);
  if (const auto* form = FindForm(kNumberForms, format)) {
    return ReadNumbers(factory, source, *form, std::move(image));
  }
  if (const auto* form = FindForm(kDeepForms, format)) return ReadDeep(source, *form, std::move(image));
  if (format == GUID_WICPixelFormat32bppCMYK) return ReadInks(source, std::move(image));
  if (format == GUID_WICPixelFormat32bppBGRA) return ReadColors(source, std::move(image));
  return ReadConverted(factory, source, std::move(image));
}

}  // namespace hdiplot
