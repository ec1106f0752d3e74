// The interface of a contestant. Each is a program of its own, made of contestant_main.cpp and one
// implementation of this header, so that their libraries share neither symbols nor memory.
#pragma once

#include <functional>
#include <string>

#include "bench/scene.h"

namespace bench {

// Draws `scene` to a PDF file, which is closed on return. Calls `start` after what a program does once
// (loading modules, opening devices). Throws std::runtime_error on failure.
void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start);

// Whether the contestant can express the scene.
[[nodiscard]] bool CanPlot(const Scene& scene);

}  // namespace bench
