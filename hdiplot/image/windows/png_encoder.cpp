// PNG through the Windows Imaging Component.
#include "hdiplot/image/png_encoder.h"

#include <new>

#include "hdiplot/image/windows/wic.h"

namespace hdiplot {

namespace {

void Require(bool isDone) {
  if (!isDone) throw std::bad_alloc();
}

std::vector<uint8_t> BytesOf(IStream& stream) {
  LARGE_INTEGER none{};
  ULARGE_INTEGER size{};
  Require(SUCCEEDED(stream.Seek(none, STREAM_SEEK_END, &size)));
  Require(SUCCEEDED(stream.Seek(none, STREAM_SEEK_SET, nullptr)));
  std::vector<uint8_t> bytes(size.QuadPart);
  ULONG got = 0;
  Require(SUCCEEDED(stream.Read(bytes.data(), static_cast<ULONG>(bytes.size()), &got)));
  Require(got == bytes.size());
  return bytes;
}

}  // namespace

std::vector<uint8_t> EncodePng(const BgrPixels& pixels, int dotsPerInch) {
  const ImagingSession session;
  const auto factory = session.MakeFactory();
  const auto stream =
      MadeBy<IStream>([](IStream** made) { return CreateStreamOnHGlobal(nullptr, TRUE, made); });
  Require(factory && stream);
  const auto encoder = MadeBy<IWICBitmapEncoder>([&](IWICBitmapEncoder** made) {
    return factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, made);
  });
  Require(encoder && SUCCEEDED(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache)));
  const auto frame = MadeBy<IWICBitmapFrameEncode>(
      [&](IWICBitmapFrameEncode** made) { return encoder->CreateNewFrame(made, nullptr); });
  WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
  auto* bytes = const_cast<uint8_t*>(pixels.bytes.data());  // which are only read
  Require(frame && SUCCEEDED(frame->Initialize(nullptr)) &&
          SUCCEEDED(frame->SetSize(static_cast<UINT>(pixels.width), static_cast<UINT>(pixels.height))) &&
          SUCCEEDED(frame->SetResolution(dotsPerInch, dotsPerInch)) &&
          SUCCEEDED(frame->SetPixelFormat(&format)) && format == GUID_WICPixelFormat24bppBGR &&
          SUCCEEDED(frame->WritePixels(static_cast<UINT>(pixels.height), static_cast<UINT>(pixels.stride),
                                       static_cast<UINT>(pixels.bytes.size()), bytes)) &&
          SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder->Commit()));
  return BytesOf(*stream);
}

}  // namespace hdiplot
