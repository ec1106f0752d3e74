// DWG drawings, by way of a converter that the user has.
#pragma once

#include <filesystem>
#include <string>

namespace hdiplot {

// By the file's first bytes.
[[nodiscard]] bool IsDwg(const std::filesystem::path& file);

// The DXF of a DWG, in a directory of its own that goes with the object.
class ConvertedDwg {
 public:
  // Runs the converter `command`, whose {in} and {out} stand for the files; empty: that in HDI_DWG_CONVERTER,
  // or dwg2dxf. Throws FileError, with what to install if there is no converter.
  ConvertedDwg(const std::filesystem::path& dwg, const std::string& command);
  ConvertedDwg(const ConvertedDwg&) = delete;
  ConvertedDwg& operator=(const ConvertedDwg&) = delete;
  ~ConvertedDwg();

  [[nodiscard]] const std::filesystem::path& Dxf() const { return dxf_; }

 private:
  void Convert(const std::filesystem::path& dwg, const std::string& command) const;

  std::filesystem::path directory_;
  std::filesystem::path dxf_;
};

}  // namespace hdiplot
