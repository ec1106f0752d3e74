// The Windows Imaging Component, and owning its objects.
#pragma once

#include <windows.h>
// Needs what stands above.
#include <wincodec.h>

#include <memory>

namespace hdiplot {

struct ReleaseObject {
  void operator()(IUnknown* object) const { object->Release(); }
};
template <typename T>
using Object = std::unique_ptr<T, ReleaseObject>;

// What `make`, which takes the place for an object's address, has made; null when it failed.
template <typename T, typename Make>
[[nodiscard]] Object<T> MadeBy(const Make& make) {
  T* made = nullptr;
  const HRESULT result = make(&made);
  return Object<T>(SUCCEEDED(result) ? made : nullptr);
}

// While it lives this thread may use the component. Its objects must be gone before.
class ImagingSession {
 public:
  ImagingSession();
  ImagingSession(const ImagingSession&) = delete;
  ImagingSession& operator=(const ImagingSession&) = delete;
  ~ImagingSession();

  // Null when the system has no such component.
  [[nodiscard]] Object<IWICImagingFactory> MakeFactory() const;

 private:
  bool isEntered_;
};

}  // namespace hdiplot
