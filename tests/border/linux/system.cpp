// Platform functions of the tests on Linux. The desktop consists of scripts at the front of PATH.
#include "tests/border/system.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <qpdf/QPDF.hh>

#include "tests/border/border.h"

namespace border {
namespace fs = std::filesystem;
namespace {

constexpr const char* kViewer = "#!/bin/sh\necho \"viewer $# [$1]\" >> \"$HDI_TEST_LOG\"\n";

// Answers every question with no.
constexpr const char* kZenity = R"(#!/bin/sh
case "$*" in *--question*) exit 1 ;; esac
for argument; do
  case $argument in --filename=*) echo "save ${argument#*=}" >> "$HDI_TEST_LOG" ;; esac
done
[ -n "$HDI_TEST_CHOICE" ] || exit 1
echo "$HDI_TEST_CHOICE"
)";

template <typename Value>
Value* Loaded(Value* value) {
  if (value == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::abort();
  }
  return value;
}

}  // namespace

void* LoadModule() { return Loaded(dlopen(HDI_DRIVER_PATH, RTLD_NOW | RTLD_LOCAL)); }
void UnloadModule(void* module) { dlclose(module); }
void* ModuleSymbol(void* module, const char* name) { return Loaded(dlsym(module, name)); }

void* MemorySymbol(const char* name) {
  static void* library = Loaded(dlopen(HDI_BUILD_DIR "/libHDIDriver.so", RTLD_NOW));
  return ModuleSymbol(library, name);
}

std::optional<std::string> Variable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

void SetVariable(const std::string& name, const std::optional<std::string>& value) {
  value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
}

void SetUpDesktop(Sandbox& sandbox) {
  const fs::path tools = sandbox.Root() / "bin";
  fs::create_directory(tools);
  for (const auto& [tool, script] : {std::pair("xdg-open", kViewer), std::pair("zenity", kZenity)}) {
    std::ofstream(tools / tool) << script;
    fs::permissions(tools / tool, fs::perms::owner_all);
  }
  sandbox.SetVariable("PATH", tools.string() + ":" + Variable("PATH").value_or(""));
  sandbox.SetVariable("LC_ALL", "C.UTF-8");
  for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY"}) sandbox.SetVariable(display, std::nullopt);
}

void SetUpUser(Sandbox& sandbox) { sandbox.SetVariable("DISPLAY", ":99"); }

testing::AssertionResult IsSoundPdf(const fs::path& file) {
  const std::string command = "qpdf --check '" + file.string() + "'";
  return testing::AssertionResult(std::system(command.c_str()) == 0) << command;
}

int PageCount(const fs::path& file) {
  QPDF pdf;
  pdf.processFile(file.c_str());
  return static_cast<int>(pdf.getAllPages().size());
}

}  // namespace border
