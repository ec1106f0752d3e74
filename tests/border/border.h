// The driver as seen by a host that uses none of this project's headers: operations by slot, entry points by
// position, settings by offset. Everything is defined a second time, so that a change of the headers is
// detected. Platform differences are behind system.h.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/border/system.h"

namespace border {

inline constexpr size_t kRecordSize = 1244;
inline constexpr size_t kPublicSize = 220;
inline constexpr size_t kPositionCount = 59;

// Offsets in the settings record.
inline constexpr size_t kOwnSize = 68;
inline constexpr size_t kDriverExtra = 70;
inline constexpr size_t kOrientation = 76;
inline constexpr size_t kPaperChoice = 78;
inline constexpr size_t kPaperLength = 80;
inline constexpr size_t kPaperWide = 82;
inline constexpr size_t kPrintQuality = 90;
inline constexpr size_t kYResolution = 96;
inline constexpr size_t kSnapshot = 220;
inline constexpr size_t kPaperId = 508;
inline constexpr size_t kWidth = 512;
inline constexpr size_t kBackground = 548;
inline constexpr size_t kLayers = 600;
inline constexpr size_t kLinks = 604;
inline constexpr size_t kTextAsGeometry = 608;
inline constexpr size_t kOpenAfterPlot = 612;
inline constexpr size_t kKeepFractions = 616;

template <typename T>
[[nodiscard]] T ReadAt(const void* base, size_t offset) {
  T value;
  std::memcpy(&value, static_cast<const std::byte*>(base) + offset, sizeof value);
  return value;
}

template <typename T>
void WriteAt(void* base, size_t offset, T value) {
  std::memcpy(static_cast<std::byte*>(base) + offset, &value, sizeof value);
}

// Base of classes that must not be copied.
struct Fixed {
  Fixed() = default;
  Fixed(const Fixed&) = delete;
  Fixed& operator=(const Fixed&) = delete;
};

using Record = std::array<uint8_t, kRecordSize>;

struct Point {
  double x, y;
};

// A polygon of a clip list.
struct ClipNode {
  uint32_t apply;
  const ClipNode* next;
  int32_t count;
  const Point* points;
};
static_assert(sizeof(ClipNode) == 32);

// The record's sheet: paperId, width, height, left, top, right, bottom.
using Sheet = std::array<int32_t, 7>;
[[nodiscard]] inline Sheet SheetOf(const void* record) { return ReadAt<Sheet>(record, kPaperId); }

// Empty if the file does not exist. In text mode lines end with a line feed on every platform.
[[nodiscard]] std::string ReadFile(const std::filesystem::path& file,
                                   std::ios::openmode mode = std::ios::binary);

// Directories for one test: app/ with pdf.ini, user/ and out/, and a desktop that records in $HDI_TEST_LOG
// what it is asked to show, so that no test opens a window. Restores the environment and removes the
// directories at the end.
class Sandbox : Fixed {
 public:
  Sandbox();
  ~Sandbox();

  [[nodiscard]] const std::filesystem::path& Root() const { return root_; }
  [[nodiscard]] std::filesystem::path App() const { return root_ / "app"; }
  [[nodiscard]] std::filesystem::path User() const { return root_ / "user"; }
  [[nodiscard]] std::filesystem::path Out() const { return root_ / "out"; }
  [[nodiscard]] std::u16string OutPath(const std::string& name) const { return (Out() / name).u16string(); }
  void WriteList(const std::string& text) const { std::ofstream(App() / "pdf.ini") << text; }
  // Sets an environment variable, or removes it.
  void SetVariable(const std::string& name, const std::optional<std::string>& value);
  // Returns what was logged since the last call.
  [[nodiscard]] std::string Log() const;

 private:
  std::filesystem::path root_;
  std::map<std::string, std::optional<std::string>> before_;
};

// A loaded PDF.hdi.
class Module : Fixed {
 public:
  ~Module() { UnloadModule(handle_); }
  [[nodiscard]] int64_t ItDriver(uint64_t code, void* context) const {
    return reinterpret_cast<int64_t (*)(uint64_t, void*)>(entry_)(code, context);
  }

 private:
  void* handle_ = LoadModule();
  void* entry_ = ModuleSymbol(handle_, "IT_Driver");
};

// A driver object: an address and its slots.
class Driver {
 public:
  explicit Driver(void* object) : object_(object) {}
  [[nodiscard]] void* Object() const { return object_; }

  template <typename Result, typename... Arguments>
  Result Call(size_t slot, Arguments... arguments) const {
    void** table = ReadAt<void**>(object_, 0);
    return reinterpret_cast<Result (*)(void*, Arguments...)>(table[slot])(object_, arguments...);
  }

  [[nodiscard]] std::u16string Text(size_t slot) const { return Call<const char16_t*>(slot); }
  [[nodiscard]] uint8_t* Settings() const { return Call<uint8_t*>(24); }
  [[nodiscard]] Record Copy() const { return ReadAt<Record>(Settings(), 0); }
  void Normalize(void* record) const { Call<void, void*>(22, record); }
  // Replaces a slot of this object only and returns the previous function.
  void* Patch(size_t slot, void* function) const;

 private:
  void* object_;
};

// The host's list of drivers. The module calls the second and third virtual operation. Releases all remaining
// drivers at the end.
class DriverList final : Fixed {
 public:
  explicit DriverList(Module& module) : module_(module) {}
  ~DriverList() {
    while (!held_.empty()) Release(held_.back());
  }

  virtual void Own() { calls.emplace_back("own"); }
  virtual void Add(void* driver) {
    calls.emplace_back("add");
    held_.push_back(driver);
  }
  virtual void Remove(void* driver) {
    calls.emplace_back(driver == nullptr ? "remove null" : "remove");
    Forget(driver);
  }

  int64_t Create() { return module_.ItDriver(2, this); }
  int64_t Release(void* driver) {
    void* release[] = {this, driver};
    return module_.ItDriver(3, release);
  }
  void Forget(void* driver) { std::erase(held_, driver); }
  [[nodiscard]] Driver At(size_t index) const { return Driver(held_.at(index)); }
  [[nodiscard]] size_t Size() const { return held_.size(); }

  // The module's calls, and what tests add between them.
  std::vector<std::string> calls;

 private:
  Module& module_;
  std::vector<void*> held_;
};

// The host's device, followed by bytes that the driver must not touch.
class Device : Fixed {
 public:
  explicit Device(Driver driver) : driver_(driver) { host.driver = driver.Object(); }
  ~Device() {
    if (host.job != nullptr) Close();
  }

  int32_t Open() { return driver_.Call<int32_t>(10, &host); }
  int32_t Close() { return driver_.Call<int32_t>(11, &host); }
  [[nodiscard]] int32_t Started() const { return host.started; }
  void SetStarted(int32_t value) { host.started = value; }

  template <typename Result = int32_t, typename... Arguments>
  Result Call(size_t position, Arguments... arguments) {
    return reinterpret_cast<Result (*)(void*, Arguments...)>(host.table[position])(&host, arguments...);
  }

  [[nodiscard]] uint32_t Caps(int32_t index) { return Call<uint32_t>(18, index); }
  int32_t StartDocument(const char16_t* output, const char16_t* docName = nullptr);
  int32_t StartPage(const void* record = nullptr) { return Call<int32_t, const void*>(21, record); }
  int32_t EndPage() { return Call(22); }
  int32_t EndDocument() { return Call(20); }
  void PlotPage();  // a page with a line
  // Plots a document of one page; 0 if it could not be started.
  int32_t Plot(const std::u16string& output, const char16_t* docName = nullptr);

  struct {
    void* driver = nullptr;
    const char16_t* defaultOutput = nullptr;
    void* job = nullptr;
    void** table = nullptr;
    int32_t started = 0;
    std::array<uint8_t, 92> foreign{};
  } host;
  static_assert(sizeof host == 128);

 private:
  Driver driver_;
};

// A block of global memory.
class GlobalBlock : Fixed {
 public:
  explicit GlobalBlock(size_t size) : handle_(Call<void*>("GlobalAlloc", uint32_t{0x42}, size)) {}
  ~GlobalBlock() { Call<void*>("GlobalFree", handle_); }
  [[nodiscard]] void* Handle() const { return handle_; }
  [[nodiscard]] uint8_t* Lock() const { return Call<uint8_t*>("GlobalLock", handle_); }
  bool Unlock() const { return Call<int32_t>("GlobalUnlock", handle_) != 0; }
  // Whether the block was left locked; unlocks it.
  [[nodiscard]] bool WasLeftLocked() const { return Lock() != nullptr && Unlock() && !Unlock(); }

  template <typename Result, typename... Arguments>
  static Result Call(const char* function, Arguments... arguments) {
    return reinterpret_cast<Result (*)(Arguments...)>(MemorySymbol(function))(arguments...);
  }

 private:
  void* handle_;
};

// Every test has its own directories and loads the module anew.
class BorderTest : public testing::Test {
 protected:
  // The first of two drivers that share a paper file, created on demand, or the last of a device list.
  // Neither opens a viewer.
  Driver FirstDriver();
  Driver LastDriverOf(const std::string& devices);

  Sandbox sandbox;
  Module module;
  DriverList list{module};
};

}  // namespace border
