// What the comparison asks of every file with --check.
#pragma once

#include <filesystem>
#include <string>

#include "bench/scene.h"

namespace bench {

// Throws std::runtime_error when qpdf finds fault with the file, or mutool does not find exactly the
// scene's texts.
void CheckFile(const std::filesystem::path& file, const Scene& scene);

// Gray pixels of the first and the last page of a file of the scene. Empty when it cannot be read.
[[nodiscard]] std::string PictureOf(const std::filesystem::path& file, const Scene& scene);

// Throws std::runtime_error when the file does not look like `wanted`.
void CheckPicture(const std::filesystem::path& file, const std::string& wanted, const Scene& scene);

}  // namespace bench
