// The Windows Imaging Component: sessions, objects, and its pixels as those of a raster.
#pragma once

#include <windows.h>
// Needs <windows.h>.
#include <wincodec.h>

#include <cstdint>
#include <memory>
#include <optional>

#include "hdiplot/device/raster.h"

namespace hdiplot {

struct ReleaseObject {
  void operator()(IUnknown* object) const { object->Release(); }
};
template <typename T>
using Object = std::unique_ptr<T, ReleaseObject>;

// The object that `make` stores at the address it is given; null when it fails.
template <typename T, typename Make>
[[nodiscard]] Object<T> MadeBy(const Make& make) {
  T* made = nullptr;
  const HRESULT result = make(&made);
  return Object<T>(SUCCEEDED(result) ? made : nullptr);
}

// This thread may use the component while a session lives. Objects must be released first.
class ImagingSession {
 public:
  ImagingSession();
  ImagingSession(const ImagingSession&) = delete;
  ImagingSession& operator=(const ImagingSession&) = delete;
  ~ImagingSession();

  // Null when the system lacks the component.
  [[nodiscard]] Object<IWICImagingFactory> MakeFactory() const;

 private:
  bool isEntered_;
};

// Bits per pixel of the image's pixel format.
[[nodiscard]] uint64_t BitsOf(IWICImagingFactory& factory, IWICBitmapSource& source);

// As ImageDecoder::Decode returns it.
[[nodiscard]] std::optional<ImageData> ReadPixels(IWICImagingFactory& factory, IWICBitmapSource& source);

}  // namespace hdiplot
