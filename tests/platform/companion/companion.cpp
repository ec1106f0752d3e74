// A companion module that answers by what it is given.
#include <cstdint>

#define EXPORTED extern "C" __attribute__((visibility("default")))

EXPORTED int32_t InvokeSaveAsDlg(void* parent, int32_t* noHint) {
  const bool yes = parent != nullptr && *noHint == 1;
  *noHint = yes ? 5 : 6;
  return yes ? 1 : 2;
}

EXPORTED int32_t InvokeCustomPropertiesDlg(void* parent, void* driver) {
  ++*static_cast<int32_t*>(parent);
  ++*static_cast<int32_t*>(driver);
  return 1;
}
