// Another process that holds a file open without sharing it, as a viewer does.
#pragma once

#include <windows.h>

#include <filesystem>

namespace border {

// Holds the file from the constructor to Release() or the destructor.
class FileHolder {
 public:
  explicit FileHolder(const std::filesystem::path& file);
  FileHolder(const FileHolder&) = delete;
  FileHolder& operator=(const FileHolder&) = delete;
  ~FileHolder();

  [[nodiscard]] bool IsHeld() const { return held_; }
  void Release();

 private:
  HANDLE process_ = nullptr;
  HANDLE lifeline_ = nullptr;  // the holder ends when it is closed, by this process's end, too
  bool held_ = false;
};

// Whether this process was started as a holder; then it has held its file until it was released.
[[nodiscard]] bool RanAsFileHolder();

}  // namespace border
