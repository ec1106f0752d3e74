// The images of a job: each file is decoded once, and rasters live until the end of the job.
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

// Must outlive the device's EndDoc, where the driver reads the rasters.
class ImageBook {
 public:
  using Report = std::function<void(const std::string& message)>;

  // `report` gets one message for each file that cannot be used as a whole.
  explicit ImageBook(Report report = {}) : report_(std::move(report)) {}
  ImageBook(const ImageBook&) = delete;
  ImageBook& operator=(const ImageBook&) = delete;

  // The image that a drawing in `folder` names: by an absolute path, one relative to the folder, or, if there
  // is no such file, by its bare name in the folder. Null when it cannot be used. Owned by the book.
  [[nodiscard]] Raster* Find(const std::filesystem::path& folder, const std::string& name,
                             const ImageLook& look, const ImageTurn& turn = {});

  // Adds a derived image.
  [[nodiscard]] Raster& Keep(ImageData image) { return rasters_.emplace_back(std::move(image)); }

  // A record of `raster` with its upper left corner at `corner`; the scales are dots per pixel.
  [[nodiscard]] const hdi::HostImageRecord& Place(Raster& raster, Vec2 corner, double scaleX, double scaleY) {
    return records_.emplace_back(hdi::HostImageRecord{&raster, corner.x, corner.y, scaleX, {}, scaleY});
  }

  // Reports a damaged or missing image. Each message is reported once.
  void ReportUnusable(const std::string& message);

  [[nodiscard]] bool HasUnusable() const { return !unusable_.empty(); }

 private:
  [[nodiscard]] Raster* Decoded(const std::filesystem::path& file);

  Report report_;
  std::deque<Raster> rasters_;  // stable addresses, like the next
  std::deque<hdi::HostImageRecord> records_;
  std::map<std::filesystem::path, Raster*> decoded_;  // null: unusable
  std::map<std::tuple<const Raster*, ImageLook, ImageTurn>, Raster*> changed_;
  std::set<std::string> unusable_;  // the messages
};

}  // namespace hdiplot
