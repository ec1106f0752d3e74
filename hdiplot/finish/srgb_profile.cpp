#include "hdiplot/finish/srgb_profile.h"

#include <lcms2.h>

#include <algorithm>
#include <memory>
#include <new>

namespace hdiplot {

namespace {

struct CloseProfile {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};

}  // namespace

std::string SrgbProfile() {
  const std::unique_ptr<void, CloseProfile> profile(cmsCreate_sRGBProfile());
  if (profile == nullptr) throw std::bad_alloc();
  // All readers know version 2.
  cmsSetProfileVersion(profile.get(), 2.1);
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile.get(), nullptr, &size);
  std::string bytes(size, '\0');
  if (size == 0 || cmsSaveProfileToMem(profile.get(), bytes.data(), &size) == 0) throw std::bad_alloc();
  // The header has the time of creation (ISO 15076-1:2010, 7.2.8): 2000-01-01, in six numbers of two bytes.
  constexpr std::string_view kDate("\x07\xD0\0\1\0\1\0\0\0\0\0\0", 12);
  constexpr size_t kDatePosition = 24;
  std::ranges::copy(kDate, bytes.begin() + kDatePosition);
  return bytes;
}

}  // namespace hdiplot
