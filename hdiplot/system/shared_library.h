// Loading modules at run time.
#pragma once

#include <filesystem>
#include <memory>

namespace hdiplot {

// A loaded module; the destructor unloads it.
class SharedLibrary {
 public:
  // The file itself, without a search. Throws std::runtime_error with the system's reason.
  explicit SharedLibrary(const std::filesystem::path& file);

  // The address of an exported function, or null.
  template <typename Function>
  [[nodiscard]] Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(Address(name));
  }

 private:
  using Anything = void();
  struct Unload {
    void operator()(void* library) const;
  };

  [[nodiscard]] Anything* Address(const char* name) const;

  std::unique_ptr<void, Unload> library_;
};

}  // namespace hdiplot
