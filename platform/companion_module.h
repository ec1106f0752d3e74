// The companion module and the parent window of its dialogs, which differ by system.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace hdi {

// The module at a path, loaded for the lifetime of the object.
class CompanionModule {
 public:
  explicit CompanionModule(const std::u16string& path);
  CompanionModule(const CompanionModule&) = delete;
  CompanionModule& operator=(const CompanionModule&) = delete;
  ~CompanionModule();

  [[nodiscard]] bool IsLoaded() const { return handle_ != nullptr; }
  // Null if the module or the function is missing. Function must be its actual type.
  template <typename Function>
  [[nodiscard]] Function* Find(const char* name) const {
    return IsLoaded() ? reinterpret_cast<Function*>(FindSymbol(name)) : nullptr;
  }

 private:
  [[nodiscard]] void* FindSymbol(const char* name) const;

  void* handle_;
};

// Returns what the module's functions take as their parent, valid while it is held: the host's window itself,
// or on Windows the record of platform/windows/parent_window.h.
[[nodiscard]] std::shared_ptr<void> MakeCompanionParent(void* window);

// The parent window if the host has none; null on Linux.
[[nodiscard]] void* DesktopWindow();

// Answers AskReplaceExisting without the module.
[[nodiscard]] bool AskReplaceWithoutCompanion(int32_t& noHint);

}  // namespace hdi
