// A companion module for tests: edits the record it gets, and answers the question about an existing file
// from environment variables. Both functions log their arguments in $HDI_TEST_LOG.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "tests/border/parent.h"

namespace {

void Note(const char* text, uint64_t number) {
  std::ofstream(std::getenv("HDI_TEST_LOG"), std::ios::app) << text << ' ' << number << '\n';
}

// Returns 0 if the variable is not set.
int32_t NumberIn(const char* variable) {
  const char* text = std::getenv(variable);
  return text == nullptr ? 0 : std::atoi(text);
}

}  // namespace

extern "C" {

int32_t InvokeCustomPropertiesDlg(void* parent, void* driver) {
  Note("properties", border::WindowOf(parent));
  void** slots = nullptr;
  std::memcpy(&slots, driver, sizeof slots);
  reinterpret_cast<unsigned char* (*)(void*)>(slots[24])(driver)[548] = 1;
  return 0;
}

int32_t InvokeSaveAsDlg(void* parent, int32_t* noHint) {
  Note("parent", border::WindowOf(parent));
  Note("hint", static_cast<uint64_t>(*noHint));
  *noHint = NumberIn("HDI_TEST_HINT");
  return NumberIn("HDI_TEST_ANSWER");
}

}  // extern "C"
