// A companion module for the tests: edits the record it is handed, and answers the question about an existing
// file as the environment says. Both note what they were given in $HDI_TEST_LOG.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

void Note(const char* text, uint64_t number) {
  std::ofstream(std::getenv("HDI_TEST_LOG"), std::ios::app) << text << ' ' << number << '\n';
}

}  // namespace

EXPORTED int32_t InvokeCustomPropertiesDlg(void* parent, void* driver) {
  Note("properties", reinterpret_cast<uintptr_t>(parent));
  void** slots = nullptr;
  std::memcpy(&slots, driver, sizeof slots);
  reinterpret_cast<unsigned char* (*)(void*)>(slots[24])(driver)[548] = 1;
  return 0;
}

EXPORTED int32_t InvokeSaveAsDlg(void* parent, int32_t* noHint) {
  Note("parent", reinterpret_cast<uintptr_t>(parent));
  Note("hint", static_cast<uint64_t>(*noHint));
  *noHint = std::atoi(std::getenv("HDI_TEST_HINT"));
  return std::atoi(std::getenv("HDI_TEST_ANSWER"));
}
