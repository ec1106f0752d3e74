// Where the programs of the benchmarks put their files.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace bench {

// A folder that goes away at the end, with the device list that the driver asks for.
class WorkFolder {
 public:
  // `keep` names the folder, which then stays; empty: one of its own.
  explicit WorkFolder(const std::string& keep) : keep_(!keep.empty()) {
    std::string name = keep_ ? std::filesystem::absolute(keep).string()
                             : (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
    if (!keep_ && mkdtemp(name.data()) == nullptr) throw std::runtime_error("cannot make a temporary folder");
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

  // Names the device's compression in its settings; empty: leaves it to the driver.
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
