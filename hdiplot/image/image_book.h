// The images of a job: every file decoded once, and every raster kept until the job has ended.
#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <tuple>

#include "hdiplot/device/raster.h"
#include "hdiplot/image/image_pixels.h"

namespace hdiplot {

// Must outlive the device's EndDoc, as the driver reads the rasters there.
class ImageBook {
 public:
  using Report = std::function<void(const std::string& message)>;

  // `report` gets one message for each file that cannot be used, or only in part.
  explicit ImageBook(Report report = {}) : report_(std::move(report)) {}
  ImageBook(const ImageBook&) = delete;
  ImageBook& operator=(const ImageBook&) = delete;

  // The image that a drawing in `folder` calls `name`: an absolute path, one from the folder on, or, where
  // neither leads to a file, the bare name in the folder. Null when it cannot be used. The book's own.
  [[nodiscard]] Raster* Find(const std::filesystem::path& folder, const std::string& name,
                             const ImageLook& look, const ImageTurn& turn = {});

  // Takes an image that has been made of one.
  [[nodiscard]] Raster& Keep(ImageData image) { return rasters_.emplace_back(std::move(image)); }

  // `raster` on paper; the upper left corner is (x, y), the scales dots a pixel.
  [[nodiscard]] const hdi::HostImageRecord& Place(Raster& raster, Vec2 corner, double scaleX, double scaleY) {
    return records_.emplace_back(hdi::HostImageRecord{&raster, corner.x, corner.y, scaleX, {}, scaleY});
  }

  // Reports what is missing of an image, or that no file is known for it. Once for each message.
  void ReportUnusable(const std::string& message);

  [[nodiscard]] bool HasUnusable() const { return !unusable_.empty(); }

 private:
  [[nodiscard]] Raster* Decoded(const std::filesystem::path& file);

  Report report_;
  std::deque<Raster> rasters_;  // addresses stay, as of the next
  std::deque<hdi::HostImageRecord> records_;
  std::map<std::filesystem::path, Raster*> decoded_;  // null: cannot be used
  std::map<std::tuple<const Raster*, ImageLook, ImageTurn>, Raster*> changed_;
  std::set<std::string> unusable_;  // the messages
};

}  // namespace hdiplot
