// What one contestant of the comparison provides. Each is a program of its own, made of contestant_main.cpp
// and one implementation of this header, so that their libraries share neither symbols nor memory.
#pragma once

#include <functional>
#include <string>

#include "bench/scene.h"

namespace bench {

// Draws `scene` as a PDF file. Everything that a program does once (loading modules, opening
// devices) comes before `start` is called; the file is closed on return. Throws std::runtime_error on
// failure.
void PlotScene(const Scene& scene, const std::string& path, const std::function<void()>& start);

// Whether the contestant can express the scene at all.
[[nodiscard]] bool CanPlot(const Scene& scene);

}  // namespace bench
