// The platform's side of the tests on Linux: the desktop is made of scripts at the head of the path.
#include "tests/border/system.h"

#include <dlfcn.h>
#include <malloc.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "tests/border/linux/tools.h"

namespace border {
namespace fs = std::filesystem;
namespace {

// Notes the arguments and answers as the environment says.
constexpr const char* kZenity = R"(
case "$*" in
  *--question*)
    echo question >> "$HDI_TEST_LOG"
    exit "$HDI_TEST_QUESTION" ;;
  *--file-selection*)
    for argument; do
      case $argument in --filename=*) echo "save ${argument#*=}" >> "$HDI_TEST_LOG" ;; esac
    done
    [ -n "$HDI_TEST_CHOICE" ] || exit 1
    echo "$HDI_TEST_CHOICE" ;;
esac
)";

fs::path ToolFolder(const Sandbox& sandbox) { return sandbox.Root() / "bin"; }

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

bool ModuleIsLoaded() {
  void* handle = dlopen(HDI_DRIVER_PATH, RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

void* MemorySymbol(const char* name) {
  static void* library = Loaded(dlopen(HDI_BUILD_DIR "/libHDIDriver.so", RTLD_NOW));
  return ModuleSymbol(library, name);
}

size_t HeapBlockSize(void* block) { return malloc_usable_size(block); }

std::optional<std::string> Variable(const std::string& name) {
  const char* value = std::getenv(name.c_str());
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

void SetVariable(const std::string& name, const std::optional<std::string>& value) {
  if (value) {
    setenv(name.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name.c_str());
  }
}

void SetUpDesktop(Sandbox& sandbox) {
  const fs::path tools = ToolFolder(sandbox);
  fs::create_directory(tools);
  sandbox.SetVariable("PATH", tools.string() + ":" + Variable("PATH").value_or(""));
  sandbox.SetVariable("LC_ALL", "C.UTF-8");
  for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY"}) sandbox.SetVariable(display, std::nullopt);
  for (const char* tool : {"xdg-open", "zenity"}) {
    AddTool(sandbox, tool, std::string("echo ") + tool + " \"$@\" >> \"$HDI_TEST_LOG\"\nexit 1\n");
  }
}

void SetUpUser(Sandbox& sandbox) {
  AddTool(sandbox, "zenity", kZenity);
  sandbox.SetVariable("DISPLAY", ":99");
  sandbox.SetVariable("HDI_TEST_QUESTION", "1");
}

void AddTool(const Sandbox& sandbox, const std::string& name, const std::string& body) {
  const fs::path file = ToolFolder(sandbox) / name;
  std::ofstream(file) << "#!/bin/sh\n" << body;
  fs::permissions(file, fs::perms::owner_all);
}

std::pair<int, std::string> RunCommand(const std::string& command) {
  std::string output;
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return {-1, output};
  std::array<char, 4096> block;
  while (const size_t size = fread(block.data(), 1, block.size(), pipe)) output.append(block.data(), size);
  const int status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

testing::AssertionResult IsSoundPdf(const fs::path& file) {
  const auto [status, output] = RunCommand("qpdf --check '" + file.string() + "'");
  if (status == 0) return testing::AssertionSuccess();
  return testing::AssertionFailure() << file << ": " << output;
}

int PageCount(const fs::path& file) {
  const auto [status, output] = RunCommand("qpdf --show-npages '" + file.string() + "'");
  return status == 0 ? std::atoi(output.c_str()) : -1;
}

}  // namespace border
