// The companion module and the parent window of its dialogs, which differ by system.
#pragma once

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

// What the module's functions take as their parent, valid for one call: the host's window itself, or on
// Windows the record of platform/windows/parent_window.h.
class CompanionParent {
 public:
  explicit CompanionParent(void* window);
  CompanionParent(const CompanionParent&) = delete;
  CompanionParent& operator=(const CompanionParent&) = delete;
  ~CompanionParent();

  [[nodiscard]] void* Get() const { return parent_; }

 private:
  void* parent_;
};

// The parent window if the host has none; null on Linux.
[[nodiscard]] void* DesktopWindow();

// Answers AskReplaceExisting without the module.
[[nodiscard]] bool AskReplaceWithoutCompanion(int32_t& noHint);

}  // namespace hdi
