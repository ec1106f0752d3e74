// The host's side of the border: loading, calling and temporary directories.
#include "tests/border/border.h"

#include <deque>
#include <random>

namespace border {
namespace fs = std::filesystem;

std::string ReadFile(const fs::path& file, std::ios::openmode mode) {
  std::ifstream stream(file, mode);
  return {std::istreambuf_iterator<char>(stream), {}};
}

Sandbox::Sandbox() {
  std::random_device random;
  do {
    root_ = fs::temp_directory_path() / ("border-" + std::to_string(random()));
  } while (!fs::create_directory(root_));
  for (const char* directory : {"app", "user", "out"}) fs::create_directory(root_ / directory);
  SetVariable("HDI_APP_DIR", App().string());
  SetVariable("HDI_USER_DIR", User().string());
  SetVariable("HDI_TEST_LOG", (root_ / "log").string());
  for (const char* temporary : {"TMPDIR", "TMP"}) SetVariable(temporary, root_.string());
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

std::string Sandbox::Log() const {
  std::string log = ReadFile(root_ / "log", std::ios::in);
  fs::remove(root_ / "log");
  return log;
}

void* Driver::Patch(size_t slot, void* function) const {
  constexpr size_t kHead = 2;  // offset to top and type information precede slot 0
  constexpr size_t kSlotCount = 26;
  static std::deque<std::array<void*, kHead + kSlotCount>> tables;  // outlive their drivers
  auto& table = tables.emplace_back();
  std::copy_n(ReadAt<void**>(object_, 0) - kHead, table.size(), table.begin());
  WriteAt(object_, 0, table.data() + kHead);
  return std::exchange(table[kHead + slot], function);
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
  constexpr std::array<Point, 3> kLine = {{{10, 10}, {4000, 6000}, {4000, 10}}};
  EXPECT_EQ(StartPage(), 1);
  EXPECT_EQ(Call(26, kLine.data(), int32_t{3}), 1);
  EXPECT_EQ(EndPage(), 1);
}

int32_t Device::Plot(const std::u16string& output, const char16_t* docName) {
  if (StartDocument(output.c_str(), docName) != 1) return 0;
  PlotPage();
  return EndDocument();
}

Driver BorderTest::FirstDriver() {
  if (list.Size() == 0) {
    sandbox.WriteList("[Devices]\n[First]\nPaperFile=papers.ini\n[Second]\nPaperFile=papers.ini\n");
    list.Create();
  }
  WriteAt<int32_t>(list.At(0).Settings(), kOpenAfterPlot, 0);
  return list.At(0);
}

Driver BorderTest::LastDriverOf(const std::string& devices) {
  sandbox.WriteList(devices);
  list.Create();
  const Driver last = list.At(list.Size() - 1);
  WriteAt<int32_t>(last.Settings(), kOpenAfterPlot, 0);
  return last;
}

}  // namespace border
