// The scenes and the targets of the driver in each.
#pragma once

#include <array>
#include <string_view>

namespace bench {

struct SceneName {
  std::string_view name;
  std::string_view title;
  double allowedSize;         // our file size as a multiple of the smallest other; 0: no target
  double wantedAgainstMupdf;  // MuPDF's time as a multiple of ours; 0: no target
  double wantedAgainstCairo;
};

inline constexpr std::array<SceneName, 7> kScenes = {{
    {"polylines", "100,000 polylines of 10 segments", 1.01, 7.5, 16},
    {"lines", "1,000,000 single lines", 1.01, 7.5, 16},
    {"polygons", "20,000 filled polygons under 200 clips", 1.01, 5, 12},
    {"curves", "50,000 Bezier curves", 1.01, 10, 40},
    {"texts", "10,000 texts in three fonts", 1.15, 5, 12},
    {"drawing", "200,000 objects of a drawing, on A0", 0, 0, 0},
    {"pages", "200 pages of 1,000 polylines and 1,000 lines", 1.01, 8, 0},
}};

}  // namespace bench
