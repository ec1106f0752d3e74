// The driver as a host without any of this project's headers knows it: operations by slot, entry points by
// position, settings by offset, all written down a second time so that a change of the headers cannot hide.
// Serves every platform; what differs by platform is behind system.h.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
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
inline constexpr size_t kSlotCount = 26;

// Offsets in the settings record.
inline constexpr size_t kDriverExtra = 70;
inline constexpr size_t kOrientation = 76;
inline constexpr size_t kPaperChoice = 78;
inline constexpr size_t kPaperLength = 80;
inline constexpr size_t kPaperWide = 82;
inline constexpr size_t kSnapshot = 220;
inline constexpr size_t kPaperId = 508;
inline constexpr size_t kWidth = 512;
inline constexpr size_t kBackground = 548;
inline constexpr size_t kLayers = 600;
inline constexpr size_t kOpenAfterPlot = 612;

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

// A base of what must not be copied.
struct Fixed {
  Fixed() = default;
  Fixed(const Fixed&) = delete;
  Fixed& operator=(const Fixed&) = delete;
};

using Record = std::array<uint8_t, kRecordSize>;
using Bytes16 = std::array<uint8_t, 16>;

struct Point {
  double x;
  double y;
};

// A polygon of a clip.
struct ClipNode {
  uint32_t apply;
  const ClipNode* next;
  int32_t count;
  const Point* points;
};

// The record's sheet as paperId, width, height, left, top, right, bottom.
using Sheet = std::array<int32_t, 7>;
[[nodiscard]] Sheet SheetOf(const void* record);

// One paper record by its bytes.
struct Paper {
  alignas(8) std::array<uint8_t, 160> bytes{};
  Paper(int32_t id, const std::u16string& name, int32_t width, int32_t height, int32_t left, int32_t right,
        int32_t top, int32_t bottom);
};

// Directories of their own for one test: app/ with pdf.ini, user/ and out/, and a desktop that notes in a
// file what it is asked to show, so that no test ever opens a window. The environment and the directories are
// put back at the end.
class Sandbox : Fixed {
 public:
  Sandbox();
  ~Sandbox();

  [[nodiscard]] const std::filesystem::path& Root() const { return root_; }
  [[nodiscard]] std::filesystem::path App() const { return root_ / "app"; }
  [[nodiscard]] std::filesystem::path User() const { return root_ / "user"; }
  [[nodiscard]] std::filesystem::path Out() const { return root_ / "out"; }
  [[nodiscard]] std::filesystem::path LogFile() const { return root_ / "log"; }
  [[nodiscard]] std::u16string OutPath(const std::string& name) const;  // in out/

  void WriteList(const std::string& text) const;  // app/pdf.ini
  // Sets a variable of the environment, or takes it away.
  void SetVariable(const std::string& name, const std::optional<std::string>& value);
  // What the desktop and the companion module have written to $HDI_TEST_LOG, which is LogFile().
  [[nodiscard]] std::string Log() const;

 private:
  std::filesystem::path root_;
  std::map<std::string, std::optional<std::string>> before_;
};

// A loaded PDF.hdi.
class Module : Fixed {
 public:
  Module();
  ~Module();

  [[nodiscard]] int64_t ItDriver(uint64_t code, void* context) const { return entry_(code, context); }
  void Unload();

 private:
  void* handle_ = nullptr;
  int64_t (*entry_)(uint64_t, void*) = nullptr;
};

// A driver object: nothing but an address and the slots behind it.
class Driver {
 public:
  explicit Driver(void* object = nullptr) : object_(object) {}
  [[nodiscard]] void* Object() const { return object_; }

  template <typename Result, typename... Arguments>
  Result Call(size_t slot, Arguments... arguments) const {
    void** table = ReadAt<void**>(object_, 0);
    return reinterpret_cast<Result (*)(void*, Arguments...)>(table[slot])(object_, arguments...);
  }

  [[nodiscard]] std::u16string Text(size_t slot) const { return Call<const char16_t*>(slot); }
  [[nodiscard]] uint8_t* Settings() const { return Call<uint8_t*>(24); }
  void Normalize(void* record) const { Call<void, void*>(22, record); }
  int32_t SetCustomPaper(const char16_t* name, double width, double height, double left, double right,
                         double top, double bottom) const {
    return Call<int32_t>(15, name, width, height, left, right, top, bottom);
  }
  [[nodiscard]] Record Copy() const { return ReadAt<Record>(Settings(), 0); }

 private:
  void* object_;
};

// Puts functions of the test into single slots of one driver object, by giving it a copy of its table.
class SlotPatch : Fixed {
 public:
  explicit SlotPatch(Driver driver);
  ~SlotPatch();

  void Set(size_t slot, void* function) { table_[kHead + slot] = function; }
  [[nodiscard]] void* Original(size_t slot) const { return original_[slot]; }
  void Forget() { driver_ = Driver(); }  // the object is gone

 private:
  static constexpr size_t kHead = 2;  // offset to top and type information stand before slot 0
  Driver driver_;
  void** original_;
  std::array<void*, kHead + kSlotCount> table_{};
};

// The host's list of drivers: an object with a table of virtual operations made by hand. Releases what it
// still holds at its end.
class DriverList : Fixed {
 public:
  explicit DriverList(Module& module);
  ~DriverList();

  [[nodiscard]] void* Object() { return &face_; }
  int64_t Create() { return module_.ItDriver(2, Object()); }
  int64_t Release(void* driver);
  void Forget(void* driver) { std::erase(held_, driver); }  // the object is gone
  [[nodiscard]] Driver At(size_t index) const { return Driver(held_.at(index)); }
  [[nodiscard]] size_t Size() const { return held_.size(); }

  // One word a call of the module: "add", "remove", and what a test notes between them.
  std::vector<std::string> calls;
  std::vector<void*> removed;

 private:
  struct Face {
    void* const* table;
    DriverList* self;
  };
  static void HostOwn(Face* face) { face->self->calls.emplace_back("own"); }
  static void Add(Face* face, void* driver);
  static void Remove(Face* face, void* driver);

  Module& module_;
  Face face_;
  std::vector<void*> held_;
};

// The host's device: 40 bytes that the driver knows and some behind them that it must leave alone.
class Device : Fixed {
 public:
  explicit Device(Driver driver);
  ~Device();

  int32_t Open();
  int32_t Close();
  [[nodiscard]] void* Object() { return bytes_.data(); }
  [[nodiscard]] void** Table() const { return ReadAt<void**>(bytes_.data(), 24); }
  [[nodiscard]] void* Job() const { return ReadAt<void*>(bytes_.data(), 16); }
  [[nodiscard]] int32_t Started() const { return ReadAt<int32_t>(bytes_.data(), 32); }
  void SetStarted(int32_t value) { WriteAt(bytes_.data(), 32, value); }
  void SetDefaultOutput(const char16_t* path) { WriteAt(bytes_.data(), 8, path); }
  [[nodiscard]] bool ForeignFieldsUntouched() const;

  template <typename Result = int32_t, typename... Arguments>
  Result Call(size_t position, Arguments... arguments) {
    return reinterpret_cast<Result (*)(void*, Arguments...)>(Table()[position])(Object(), arguments...);
  }

  [[nodiscard]] uint32_t Caps(int32_t index) { return Call<uint32_t>(18, index); }
  int32_t StartDocument(const char16_t* output, const char16_t* docName = nullptr);
  int32_t StartPage(const void* record = nullptr) { return Call<int32_t, const void*>(21, record); }
  int32_t EndPage() { return Call(22); }
  int32_t EndDocument() { return Call(20); }
  int32_t Polyline(const std::vector<Point>& points) {
    return Call(26, points.data(), static_cast<int32_t>(points.size()));
  }
  void PlotPage();  // with a line on it

 private:
  static constexpr uint8_t kForeign = 0xA5;
  alignas(16) std::array<uint8_t, 128> bytes_;
  Driver driver_;
  bool open_ = false;
};

// Functions for global memory by name.
template <typename Function>
Function* MemoryFunction(const char* name) {
  return reinterpret_cast<Function*>(MemorySymbol(name));
}

// A block of global memory.
class GlobalBlock : Fixed {
 public:
  explicit GlobalBlock(size_t size);
  ~GlobalBlock();
  [[nodiscard]] void* Handle() const { return handle_; }
  [[nodiscard]] Record Content() const;
  void SetContent(const Record& record) const;
  // Whether somebody has left the block locked; unlocks it then.
  [[nodiscard]] bool WasLeftLocked() const;

 private:
  void* handle_;
};

// Both are empty when there is no such file; a line of a text ends with a line feed on every platform.
[[nodiscard]] std::string ReadFile(const std::filesystem::path& file);
[[nodiscard]] std::string ReadText(const std::filesystem::path& file);

// Every test gets directories of its own and loads the module afresh. The device list holds two devices that
// do not start a viewer by themselves.
class BorderTest : public testing::Test {
 protected:
  static constexpr const char* kTwoDevices =
      "[Devices]\nVersion=1\n"
      "[First]\nName=First device\nPaperFile=papers.ini\n"
      "[Second]\nName=Second device\nPaperFile=papers.ini\n";

  BorderTest() { sandbox.WriteList(kTwoDevices); }

  // The first driver of the list, made on demand, with its viewer turned off.
  Driver FirstDriver();

  Sandbox sandbox;
  Module module;
  DriverList list{module};
};

}  // namespace border
