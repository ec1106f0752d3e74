// The host's side of the border for the tests: loading, calling, and directories to play in.
#include "border.h"

#include <dlfcn.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace border {
namespace fs = std::filesystem;

Sheet SheetOf(const void* record) {
  Sheet sheet;
  std::memcpy(sheet.data(), static_cast<const std::byte*>(record) + kPaperId, sizeof sheet);
  return sheet;
}

Paper::Paper(int32_t id, const std::u16string& name, int32_t width, int32_t height, int32_t left,
             int32_t right, int32_t top, int32_t bottom) {
  WriteAt(bytes.data(), 0, id);
  std::memcpy(bytes.data() + 4, name.data(), std::min<size_t>(name.size(), 63) * sizeof(char16_t));
  WriteAt(bytes.data(), 132, width);
  WriteAt(bytes.data(), 136, height);
  WriteAt(bytes.data(), 140, top);
  WriteAt(bytes.data(), 144, bottom);
  WriteAt(bytes.data(), 148, left);
  WriteAt(bytes.data(), 152, right);
}

Sandbox::Sandbox() {
  std::string name = (fs::temp_directory_path() / "border-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) std::abort();
  root_ = name;
  for (const char* directory : {"app", "user", "out", "bin"}) fs::create_directory(root_ / directory);
  const char* path = std::getenv("PATH");
  SetVariable("PATH", (root_ / "bin").string() + ":" + (path == nullptr ? "" : path));
  SetVariable("HDI_APP_DIR", App().string());
  SetVariable("HDI_USER_DIR", User().string());
  SetVariable("HDI_TEST_LOG", LogFile().string());
  SetVariable("LC_ALL", "C.UTF-8");
  for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY"}) SetVariable(display, std::nullopt);
  for (const char* tool : {"xdg-open", "zenity"}) {
    AddTool(tool, std::string("echo ") + tool + " \"$@\" >> \"$HDI_TEST_LOG\"\nexit 1\n");
  }
}

Sandbox::~Sandbox() {
  const auto saved = before_;
  for (const auto& [name, value] : saved) SetVariable(name, value);
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

void Sandbox::SetVariable(const std::string& name, const std::optional<std::string>& value) {
  const char* before = std::getenv(name.c_str());
  before_.emplace(name, before == nullptr ? std::nullopt : std::optional<std::string>(before));
  if (value) {
    setenv(name.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name.c_str());
  }
}

void Sandbox::WriteList(const std::string& text) const { std::ofstream(App() / "pdf.ini") << text; }

void Sandbox::AddTool(const std::string& name, const std::string& body) const {
  const fs::path file = root_ / "bin" / name;
  std::ofstream(file) << "#!/bin/sh\n" << body;
  fs::permissions(file, fs::perms::owner_all);
}

std::u16string Sandbox::OutPath(const std::string& name) const { return Utf16((Out() / name).string()); }

std::string Sandbox::Log() const { return ReadFile(LogFile()); }

bool Sandbox::WaitForLog(const std::string& text) const {
  for (int i = 0; i < 100; ++i) {
    if (Log().find(text) != std::string::npos) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return false;
}

Module::Module() {
  handle_ = dlopen(HDI_DRIVER_PATH, RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::abort();
  }
  entry_ = reinterpret_cast<int64_t (*)(uint64_t, void*)>(dlsym(handle_, "IT_Driver"));
  if (entry_ == nullptr) std::abort();
}

Module::~Module() { Unload(); }

void Module::Unload() {
  if (handle_ != nullptr) dlclose(handle_);
  handle_ = nullptr;
}

bool Module::IsLoaded() {
  void* handle = dlopen(HDI_DRIVER_PATH, RTLD_NOW | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

SlotPatch::SlotPatch(Driver driver) : driver_(driver), original_(ReadAt<void**>(driver.Object(), 0)) {
  std::copy_n(original_ - kHead, table_.size(), table_.begin());
  WriteAt(driver_.Object(), 0, table_.data() + kHead);
}

SlotPatch::~SlotPatch() {
  if (driver_.Object() != nullptr) WriteAt(driver_.Object(), 0, original_);
}

DriverList::DriverList(Module& module) : module_(module) {
  static const std::array<void*, 5> kTable = {nullptr, nullptr, reinterpret_cast<void*>(&HostOwn),
                                              reinterpret_cast<void*>(&Add),
                                              reinterpret_cast<void*>(&Remove)};
  face_ = {kTable.data() + 2, this};
}

DriverList::~DriverList() {
  while (!held_.empty()) Release(held_.back());
}

int64_t DriverList::Release(void* driver) {
  struct {
    void* list;
    void* driver;
  } release = {Object(), driver};
  return module_.ItDriver(3, &release);
}

void DriverList::Add(Face* face, void* driver) {
  face->self->calls.emplace_back("add");
  face->self->held_.push_back(driver);
}

void DriverList::Remove(Face* face, void* driver) {
  face->self->calls.emplace_back("remove");
  face->self->removed.push_back(driver);
  std::erase(face->self->held_, driver);
}

Device::Device(Driver driver) : driver_(driver) {
  bytes_.fill(kForeign);
  std::fill_n(bytes_.begin(), 36, uint8_t{0});
  WriteAt(bytes_.data(), 0, driver.Object());
}

Device::~Device() {
  if (open_) Close();
}

int32_t Device::Open() {
  open_ = true;
  return driver_.Call<int32_t>(10, Object());
}

int32_t Device::Close() {
  open_ = false;
  return driver_.Call<int32_t>(11, Object());
}

bool Device::ForeignFieldsUntouched() const {
  return std::all_of(bytes_.begin() + 36, bytes_.end(), [](uint8_t byte) { return byte == kForeign; });
}

int32_t Device::StartDoc(const char16_t* output, const char16_t* docName) {
  struct {
    int32_t size = 40;
    const char16_t* docName;
    const char16_t* output;
    const char16_t* datatype = nullptr;
    uint32_t type = 0;
  } info = {.docName = docName, .output = output};
  static_assert(sizeof info == 40);
  return Call(19, &info);
}

void Device::PlotPage() {
  EXPECT_EQ(StartPage(), 1);
  EXPECT_EQ(Polyline({{10, 10}, {4000, 6000}, {4000, 10}}), 1);
  EXPECT_EQ(EndPage(), 1);
}

void* HostSymbol(const char* name) {
  static void* library = dlopen(HDI_BUILD_DIR "/libHDIDriver.so", RTLD_NOW);
  void* symbol = library == nullptr ? nullptr : dlsym(library, name);
  if (symbol == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::abort();
  }
  return symbol;
}

GlobalBlock::GlobalBlock(size_t size)
    : handle_(HostFunction<void*(uint32_t, size_t)>("GlobalAlloc")(0x42, size)) {}

GlobalBlock::~GlobalBlock() { HostFunction<void*(void*)>("GlobalFree")(handle_); }

Record GlobalBlock::Content() const {
  const auto content = ReadAt<Record>(HostFunction<void*(void*)>("GlobalLock")(handle_), 0);
  HostFunction<int32_t(void*)>("GlobalUnlock")(handle_);
  return content;
}

void GlobalBlock::SetContent(const Record& record) const {
  WriteAt(HostFunction<void*(void*)>("GlobalLock")(handle_), 0, record);
  HostFunction<int32_t(void*)>("GlobalUnlock")(handle_);
}

bool GlobalBlock::WasLeftLocked() const {
  const auto unlock = HostFunction<int32_t(void*)>("GlobalUnlock");
  HostFunction<void*(void*)>("GlobalLock")(handle_);
  const bool locked = unlock(handle_) != 0;
  if (locked) unlock(handle_);
  return locked;
}

std::u16string Utf16(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

std::string ReadFile(const fs::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
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

Driver BorderTest::FirstDriver() {
  if (list.Size() == 0) list.Create();
  WriteAt<int32_t>(list.At(0).Settings(), kOpenAfterPlot, 0);
  return list.At(0);
}

}  // namespace border
