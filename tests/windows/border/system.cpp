// Platform functions of the tests on Windows.
#include "tests/border/system.h"

#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "tests/border/border.h"

namespace border {
namespace fs = std::filesystem;
namespace {

template <typename Value>
Value Found(Value value, const char* what) {
  if (value == nullptr) {
    std::fprintf(stderr, "%s: error %lu\n", what, GetLastError());
    std::abort();
  }
  return value;
}

void* FunctionOf(HMODULE module, const char* name) {
  return Found(reinterpret_cast<void*>(GetProcAddress(module, name)), name);
}

}  // namespace

// The module finds the host's library in its own directory.
void* LoadModule() {
  const fs::path file = fs::absolute(HDI_DRIVER_PATH).make_preferred();
  return Found(LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH), HDI_DRIVER_PATH);
}

void UnloadModule(void* module) { FreeLibrary(static_cast<HMODULE>(module)); }
void* ModuleSymbol(void* module, const char* name) { return FunctionOf(static_cast<HMODULE>(module), name); }
void* MemorySymbol(const char* name) { return FunctionOf(GetModuleHandleW(L"KERNEL32.dll"), name); }

// The standard library treats narrow names as UTF-8, whatever the system's code page.
std::optional<std::string> Variable(const std::string& name) {
  const wchar_t* value = _wgetenv(fs::path(name).c_str());
  return value == nullptr ? std::nullopt : std::optional<std::string>(fs::path(value).string());
}

// An empty value removes the variable, which reads the same.
void SetVariable(const std::string& name, const std::optional<std::string>& value) {
  _wputenv_s(fs::path(name).c_str(), fs::path(value.value_or("")).c_str());
}

// These tests ask nothing and show nothing.
void SetUpDesktop(Sandbox&) {}
void SetUpUser(Sandbox&) {}

// The comparison of plots reads the PDFs; here it is enough that a file is complete.
testing::AssertionResult IsSoundPdf(const fs::path& file) {
  const std::string pdf = ReadFile(file);
  if (pdf.starts_with("%PDF-") && pdf.find("%%EOF", pdf.size() - 8) != pdf.npos) {
    return testing::AssertionSuccess();
  }
  return testing::AssertionFailure() << file << ": " << pdf.size() << " bytes";
}

int PageCount(const fs::path& file) {
  const std::string pdf = ReadFile(file);
  const size_t count = pdf.find("/Count ");
  return count == pdf.npos ? -1 : std::atoi(pdf.c_str() + count + std::string("/Count ").size());
}

}  // namespace border
