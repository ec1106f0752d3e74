// The module's exported function, and the objects that live from load to unload.
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "driver/pdf_driver.h"
#include "driver/settings_paths.h"
#include "platform/border.h"
#include "platform/host_library.h"
#include "recording/command_list.h"

namespace hdi {
namespace {

// Allocates an arena's first chunk at load and frees what no device close has released at unload.
class ArenaLifetime {
 public:
  explicit ArenaLifetime(CommandArena& arena) : arena_(arena) { arena_.AddChunk(CommandArena::kChunkSize); }
  ArenaLifetime(const ArenaLifetime&) = delete;
  ArenaLifetime& operator=(const ArenaLifetime&) = delete;
  ~ArenaLifetime() { ReleaseChunks(arena_); }

 private:
  CommandArena& arena_;
};

// Constructed at load in this order and destroyed at unload in reverse. The map does not own the drivers; it
// is filled but never read, and keeps the entries of released drivers.
struct ModuleObjects {
  std::map<std::u16string, CPDFDriver*> driverMap;
  ArenaLifetime sideLifetime{sideArena};
  ArenaLifetime recordLifetime{recordArena};
};

ModuleObjects moduleObjects;

// Returns the name after `name` in a list of zero-terminated names that ends with an empty one; null at the
// end.
const char16_t* NextName(const char16_t* name) {
  if (name == nullptr || *name == 0) return nullptr;
  while (*name != 0) ++name;
  ++name;
  return *name == 0 ? nullptr : name;
}

void CreateDrivers(HostDriverList& list) {
  const std::u16string listFile = ListFile();
  const int32_t needed = HT_ListCloseDriver(nullptr, 0, listFile.c_str());
  if (needed < 1) return;
  std::vector<char16_t> names(static_cast<size_t>(needed));
  HT_ListCloseDriver(names.data(), needed, listFile.c_str());

  // The first name is not a device.
  for (const char16_t* name = NextName(names.data()); name != nullptr; name = NextName(name)) {
    auto* driver = new CPDFDriver(listFile, name);  // owned by the host until it hands it back
    list.AddDriver(driver);
    moduleObjects.driverMap[driver->GetName()] = driver;
  }
}

// The host gets the dangling pointer back as a key.
void ReleaseDriver(const DriverRelease& release) {
  constexpr uint32_t kRunDestructorAndFree = 1;
  if (release.driver != nullptr) release.driver->Destroy(kRunDestructorAndFree);
  release.list->RemoveDriver(release.driver);
}

}  // namespace
}  // namespace hdi

#if defined(_WIN32)
#define HDI_MODULE_EXPORT __declspec(dllexport)
#else
#define HDI_MODULE_EXPORT __attribute__((visibility("default")))
#endif

// kCreateDrivers creates a driver for each device of the list file and passes it to the HostDriverList
// `context`. kReleaseDriver destroys the driver of the DriverRelease `context`. Both return 0 for a null
// context; everything else returns 1.
extern "C" HDI_MODULE_EXPORT int64_t IT_Driver(uint64_t code, void* context) {
  if (code != hdi::kCreateDrivers && code != hdi::kReleaseDriver) return 1;
  if (context == nullptr) return 0;
  if (code == hdi::kCreateDrivers) {
    hdi::CreateDrivers(*static_cast<hdi::HostDriverList*>(context));
  } else {
    hdi::ReleaseDriver(*static_cast<const hdi::DriverRelease*>(context));
  }
  return 1;
}
