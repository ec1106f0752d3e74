#include "hdiplot/image/windows/wic.h"

#include <objbase.h>

namespace hdiplot {

// Short sessions leave the thread to a dialog of the driver, which takes an apartment of its own.
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

}  // namespace hdiplot
