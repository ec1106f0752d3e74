#include "hdiplot/system/files.h"

#include <system_error>

namespace hdiplot {

namespace fs = std::filesystem;

FileStream OpenToRead(const fs::path& file) { return FileStream(std::fopen(file.c_str(), "rb")); }

FileStream CreateNew(const fs::path& file) { return FileStream(std::fopen(file.c_str(), "wbx")); }

std::string MoveOver(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::rename(from, to, error);
  return error ? error.message() : "";
}

fs::path WithoutLinks(const fs::path& file) {
  constexpr int kMostLinks = 40;  // the limit of the kernel
  fs::path place = file;
  std::error_code error;
  for (int i = 0; i < kMostLinks && fs::is_symlink(fs::symlink_status(place, error)); ++i) {
    place = place.parent_path() / fs::read_symlink(place, error);
    if (error) break;
  }
  return place;
}

bool LeadToSameFile(const fs::path& a, const fs::path& b) {
  std::error_code error;
  return fs::weakly_canonical(WithoutLinks(a), error) == fs::weakly_canonical(WithoutLinks(b), error) &&
         !error;
}

}  // namespace hdiplot
