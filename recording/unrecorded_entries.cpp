// The entries of rasters, links, layers and comments, which nothing records yet.
#include "recording/path.h"
#include "recording/plot_entries.h"

namespace hdi {
namespace {

int32_t FlushAndRefuse(const HostDevice* device) {
  FlushPath(device);
  return 0;
}

}  // namespace

int32_t DevBeginLink(HostDevice* device, const char16_t* /*target*/) { return FlushAndRefuse(device); }

int32_t DevEndLink(HostDevice* device) { return FlushAndRefuse(device); }

int32_t DevSetLayer(HostDevice* device, int64_t /*reserved*/, const char16_t* /*name*/) {
  return FlushAndRefuse(device);
}

int32_t DevBitmap(HostDevice* device, const HostImageRecord* /*image*/) { return FlushAndRefuse(device); }

int32_t DevShxComment(HostDevice* device, const char16_t* /*text*/, const int32_t* /*rect*/,
                      uint32_t /*flags*/) {
  return FlushAndRefuse(device);
}

}  // namespace hdi
