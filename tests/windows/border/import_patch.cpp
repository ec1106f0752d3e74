// The import table of a module in memory, as the Portable Executable format lays it out.
#include "tests/windows/border/import_patch.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace border {
namespace {

template <typename T>
T* At(HMODULE module, uint64_t address) {
  return reinterpret_cast<T*>(reinterpret_cast<std::byte*>(module) + address);
}

const IMAGE_IMPORT_DESCRIPTOR* FirstDescriptor(HMODULE module) {
  const auto* dos = At<IMAGE_DOS_HEADER>(module, 0);
  const auto* headers = At<IMAGE_NT_HEADERS64>(module, static_cast<uint64_t>(dos->e_lfanew));
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  return At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress);
}

// The slot through which the module calls the function, null when it imports no such one.
uint64_t* FindSlot(HMODULE module, const IMAGE_IMPORT_DESCRIPTOR& library, const char* function) {
  const auto* name = At<IMAGE_THUNK_DATA64>(module, library.OriginalFirstThunk);
  auto* slot = At<IMAGE_THUNK_DATA64>(module, library.FirstThunk);
  for (; name->u1.AddressOfData != 0; ++name, ++slot) {
    if (IMAGE_SNAP_BY_ORDINAL64(name->u1.Ordinal)) continue;
    const auto* import = At<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData);
    if (std::strcmp(reinterpret_cast<const char*>(import->Name), function) == 0) {
      return reinterpret_cast<uint64_t*>(&slot->u1.Function);
    }
  }
  return nullptr;
}

}  // namespace

void ReplaceImport(HMODULE module, const char* library, const char* function, void* replacement) {
  for (const auto* entry = FirstDescriptor(module); entry->Name != 0; ++entry) {
    if (_stricmp(At<char>(module, entry->Name), library) != 0) continue;
    uint64_t* slot = FindSlot(module, *entry, function);
    if (slot == nullptr) continue;
    DWORD before = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
    *slot = reinterpret_cast<uint64_t>(replacement);
    VirtualProtect(slot, sizeof *slot, before, &before);
    return;
  }
  std::fprintf(stderr, "%s is not imported from %s\n", function, library);
  std::abort();
}

}  // namespace border
