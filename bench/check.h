// What the comparison asks of every file with --check.
#pragma once

#include <filesystem>

#include "bench/scene.h"

namespace bench {

// Throws std::runtime_error when qpdf finds fault with the file, or mutool does not find exactly the
// scene's texts.
void CheckFile(const std::filesystem::path& file, const Scene& scene);

}  // namespace bench
