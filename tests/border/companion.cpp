// A companion module for the tests: edits the record it is handed, and answers the question about an existing
// file as the environment says. Both note what they were given in $HDI_TEST_LOG.
//
// Built a second time with BORDER_COMPANION_IS_EMPTY, as a module that has neither function.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#if !defined(BORDER_COMPANION_IS_EMPTY)

namespace {

const char* Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

void Note(const char* text, uint64_t number) {
  if (FILE* log = std::fopen(Variable("HDI_TEST_LOG"), "a")) {
    std::fprintf(log, "%s %llu\n", text, static_cast<unsigned long long>(number));
    std::fclose(log);
  }
}

}  // namespace

extern "C" __attribute__((visibility("default"))) int32_t InvokeCustomPropertiesDlg(void* parent,
                                                                                    void* driver) {
  Note("properties", reinterpret_cast<uintptr_t>(parent));
  void** slots = nullptr;
  std::memcpy(&slots, driver, sizeof slots);
  auto* record = reinterpret_cast<unsigned char* (*)(void*)>(slots[24])(driver);
  record[548] = 1;
  return 0;
}

extern "C" __attribute__((visibility("default"))) int32_t InvokeSaveAsDlg(void* parent, int32_t* noHint) {
  Note("parent", reinterpret_cast<uintptr_t>(parent));
  Note("hint", static_cast<uint64_t>(*noHint));
  *noHint = std::atoi(Variable("HDI_TEST_HINT"));
  return std::atoi(Variable("HDI_TEST_ANSWER"));
}

#endif
