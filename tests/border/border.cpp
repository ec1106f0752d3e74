// The host's side of the border for the tests: loading, calling, and directories to play in.
#include "tests/border/border.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <random>

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
  std::random_device random;
  do {
    root_ = fs::temp_directory_path() / ("border-" + std::to_string(random()));
  } while (!fs::create_directory(root_));
  for (const char* directory : {"app", "user", "out"}) fs::create_directory(root_ / directory);
  SetVariable("HDI_APP_DIR", App().string());
  SetVariable("HDI_USER_DIR", User().string());
  SetVariable("HDI_TEST_LOG", LogFile().string());
  SetUpDesktop(*this);
}

Sandbox::~Sandbox() {
  for (const auto& [name, value] : before_) border::SetVariable(name, value);
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

void Sandbox::SetVariable(const std::string& name, const std::optional<std::string>& value) {
  before_.emplace(name, Variable(name));
  border::SetVariable(name, value);
}

void Sandbox::WriteList(const std::string& text) const { std::ofstream(App() / "pdf.ini") << text; }

std::u16string Sandbox::OutPath(const std::string& name) const { return (Out() / name).u16string(); }

std::string Sandbox::Log() const { return ReadText(LogFile()); }

Module::Module() : handle_(LoadModule()) {
  entry_ = reinterpret_cast<int64_t (*)(uint64_t, void*)>(ModuleSymbol(handle_, "IT_Driver"));
  if (entry_ == nullptr) std::abort();
}

Module::~Module() { Unload(); }

void Module::Unload() {
  if (handle_ != nullptr) UnloadModule(handle_);
  handle_ = nullptr;
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

int32_t Device::StartDocument(const char16_t* output, const char16_t* docName) {
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

GlobalBlock::GlobalBlock(size_t size)
    : handle_(MemoryFunction<void*(uint32_t, size_t)>("GlobalAlloc")(0x42, size)) {}

GlobalBlock::~GlobalBlock() { MemoryFunction<void*(void*)>("GlobalFree")(handle_); }

Record GlobalBlock::Content() const {
  const auto content = ReadAt<Record>(MemoryFunction<void*(void*)>("GlobalLock")(handle_), 0);
  MemoryFunction<int32_t(void*)>("GlobalUnlock")(handle_);
  return content;
}

void GlobalBlock::SetContent(const Record& record) const {
  WriteAt(MemoryFunction<void*(void*)>("GlobalLock")(handle_), 0, record);
  MemoryFunction<int32_t(void*)>("GlobalUnlock")(handle_);
}

bool GlobalBlock::WasLeftLocked() const {
  const auto unlock = MemoryFunction<int32_t(void*)>("GlobalUnlock");
  MemoryFunction<void*(void*)>("GlobalLock")(handle_);
  const bool locked = unlock(handle_) != 0;
  if (locked) unlock(handle_);
  return locked;
}

std::string ReadFile(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string ReadText(const fs::path& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

Driver BorderTest::FirstDriver() {
  if (list.Size() == 0) list.Create();
  WriteAt<int32_t>(list.At(0).Settings(), kOpenAfterPlot, 0);
  return list.At(0);
}

}  // namespace border
