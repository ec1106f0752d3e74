#include "bench/drawing_trace.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <numbers>
#include <stdexcept>

#include "bench/text_fonts.h"

namespace bench {
namespace {

using nlohmann::json;

uint32_t Number(size_t index) { return static_cast<uint32_t>(index); }

Color ToColor(const json& channels) {
  return {channels.at(0).get<uint8_t>(), channels.at(1).get<uint8_t>(), channels.at(2).get<uint8_t>()};
}

Point ToPoint(const json& pair) { return {pair.at(0).get<double>(), pair.at(1).get<double>()}; }

// Turns calls into steps of the scene's only page.
class TraceReader {
 public:
  explicit TraceReader(Scene& scene) : scene_(scene) {}

  void Read(const json& line) {
    const std::string call = line.value("call", "");
    if (call == "DevSetPen") {
      SetPen(line);
    } else if (call == "DevSetBrush") {
      SetBrush(line);
    } else if (call == "DevPolyline") {
      AddPoints(Step::Kind::kPolyline, line.at("points"));
    } else if (call == "DevPolyBezier") {
      AddPoints(Step::Kind::kCurves, line.at("points"));
    } else if (call == "DevPolyPolygon") {
      AddPolygons(line.at("polygons"));
    } else if (call == "DevArc") {
      AddArc(line);
    } else if (call == "DevText") {
      AddText(line);
    } else if (!IsWithoutInk(line, call)) {
      throw std::runtime_error("scenes cannot express the call " + call);
    }
  }

 private:
  static bool IsWithoutInk(const json& line, const std::string& call) {
    constexpr int kOpaque = 255;
    constexpr int kEvenOdd = 1;
    if (call == "DevSetAlpha") return line.at("alpha") == kOpaque;
    if (call == "DevSetFillMode") return line.at("mode") == kEvenOdd;
    // DevBeginPath separates two paths that meet, which scenes do not join.
    return line.contains("job") || call == "DevBeginPath" || call == "DevStartPage" || call == "DevEndPage" ||
           call == "DevGetCaps" || call == "DevSetLayer" || call == "DevSetLineScale";
  }

  void AddStep(Step::Kind kind, size_t index, size_t count = 0) {
    scene_.pages.front().push_back({kind, Number(index), Number(count)});
  }

  // Solid and custom dashed pens with round caps and joins.
  void SetPen(const json& line) {
    constexpr uint32_t kSolid = 0x10000;
    constexpr uint32_t kDashed = 0x10007;
    const auto style = line.at("style").get<uint32_t>();
    if (style != kSolid && style != kDashed) throw std::runtime_error("scenes cannot express this pen");
    AddStep(Step::Kind::kPen, scene_.pens.size());
    scene_.pens.push_back(
        {line.at("width"), ToColor(line.at("color")), true, line.value("entries", std::vector<uint32_t>())});
  }

  void SetBrush(const json& line) {
    AddStep(Step::Kind::kBrush, scene_.brushes.size());
    scene_.brushes.push_back(ToColor(line.at("color")));
  }

  void AddPoints(Step::Kind kind, const json& points) {
    AddStep(kind, scene_.points.size(), points.size());
    for (const json& point : points) scene_.points.push_back(ToPoint(point));
  }

  void AddPolygons(const json& polygons) {
    AddStep(Step::Kind::kPolygons, scene_.polygons.size());
    Polygons& added = scene_.polygons.emplace_back(Polygons{scene_.points.size(), {}});
    for (const json& polygon : polygons) {
      added.counts.push_back(Number(polygon.size()));
      for (const json& point : polygon) scene_.points.push_back(ToPoint(point));
    }
  }

  // Radii a and b, rotation c, from angle d to angle e, seen with Y up.
  void AddArc(const json& line) {
    const Point center = ToPoint(line.at("center"));
    const double a = line.at("a");
    const double b = line.at("b");
    const double rotation = line.at("c");
    const double begin = line.at("d");
    const double sweep = line.at("e").get<double>() - begin;
    // Maps a point of the unit circle to the ellipse.
    const auto add = [&](double x, double y) {
      scene_.points.push_back({center.x + a * x * std::cos(rotation) - b * y * std::sin(rotation),
                               center.y - a * x * std::sin(rotation) - b * y * std::cos(rotation)});
    };
    const int parts =
        std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / (std::numbers::pi / 2) - 1e-9)));
    const double part = sweep / parts;
    const double handle = 4.0 / 3 * std::tan(part / 4);
    AddStep(Step::Kind::kCurves, scene_.points.size(), 1 + 3 * static_cast<size_t>(parts));
    add(std::cos(begin), std::sin(begin));
    for (int i = 0; i < parts; ++i) {
      const double from = begin + i * part;
      const double to = from + part;
      add(std::cos(from) - handle * std::sin(from), std::sin(from) + handle * std::cos(from));
      add(std::cos(to) + handle * std::sin(to), std::sin(to) - handle * std::cos(to));
      add(std::cos(to), std::sin(to));
    }
  }

  void AddText(const json& line) {
    constexpr int32_t kTurn = 3600;  // tenths of a degree
    const json& font = line.at("font");
    const std::string family = font.at("lfFaceName");
    if (scene_.brushes.empty() || font.value("lfItalic", 0) != 0 || font.value("lfWeight", 0) > 400) {
      throw std::runtime_error("scenes cannot express this text");
    }
    Text text{};
    text.units = FromUtf8(line.at("text").get<std::string>());
    text.start = ToPoint(line.at("position"));
    text.height = static_cast<int32_t>(std::lround(line.at("textHeight").get<double>()));
    text.angle = (font.value("lfEscapement", 0) % kTurn + kTurn) % kTurn;
    const auto found = std::ranges::find(scene_.families, family);
    text.font = static_cast<size_t>(found - scene_.families.begin());
    if (found == scene_.families.end()) scene_.families.push_back(family);
    text.color = scene_.brushes.back();
    AddStep(Step::Kind::kText, scene_.texts.size());
    scene_.texts.push_back(text);
  }

  Scene& scene_;
};

}  // namespace

Scene ReadTrace(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  Scene scene;
  scene.kind = Kind::kMixed;
  scene.pages.resize(1);
  TraceReader reader(scene);
  for (std::string line; std::getline(file, line);) {
    if (!line.empty()) reader.Read(json::parse(line));
  }
  return scene;
}

}  // namespace bench
