// What the comparison asks of every file with --check.
#pragma once

#include <filesystem>

#include "bench/scene.h"

namespace bench {

// Throws std::runtime_error when qpdf finds fault with the file, or mutool does not find exactly the
// scene's texts.
void CheckFile(const std::filesystem::path& file, const Scene& scene);

// Throws std::runtime_error when the scene's first or last page does not look in one file as it does in the
// other.
void CheckPicture(const std::filesystem::path& file, const std::filesystem::path& other, const Scene& scene);

}  // namespace bench
