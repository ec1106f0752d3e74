// The folder for the files of a benchmark program.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace bench {

// A folder with the device list that the driver needs, removed at the end.
class WorkFolder {
 public:
  // `keep` names a folder that is not removed; empty: a temporary one.
  explicit WorkFolder(const std::string& keep) : keep_(!keep.empty()) {
    std::string name = keep_ ? std::filesystem::absolute(keep).string()
                             : (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
    if (!keep_ && mkdtemp(name.data()) == nullptr)
      throw std::runtime_error("cannot create a temporary folder");
    path_ = name;
    std::filesystem::create_directories(path_);
    WriteDeviceList({});
    setenv("HDI_APP_DIR", path_.c_str(), 1);
    setenv("HDI_USER_DIR", path_.c_str(), 1);
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;
  ~WorkFolder() {
    std::error_code ignored;
    if (!keep_) std::filesystem::remove_all(path_, ignored);
  }
  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

  // Sets the device's compression; empty: the driver's default.
  void WriteDeviceList(const std::string& compression) const {
    std::ofstream list(path_ / "pdf.ini");
    list << "[Devices]\nVersion=1\n[PDF]\nName=PDF\n";
    if (!compression.empty()) list << "Compression=" << compression << '\n';
  }

 private:
  bool keep_;
  std::filesystem::path path_;
};

}  // namespace bench
