// The checks of each file with --check.
#pragma once

#include <filesystem>
#include <string>

#include "bench/scene.h"

namespace bench {

// Throws std::runtime_error if qpdf finds a fault, or mutool does not find exactly the scene's texts.
void CheckFile(const std::filesystem::path& file, const Scene& scene);

// Renders the first and the last page in grey at 72 dots per inch. Empty if the file cannot be read.
[[nodiscard]] std::string PictureOf(const std::filesystem::path& file, const Scene& scene);

// Throws std::runtime_error if the pictures differ.
void CheckPicture(const std::filesystem::path& file, const std::string& wanted, const Scene& scene);

}  // namespace bench
