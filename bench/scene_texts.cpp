#include "bench/scene_texts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <string_view>

#include "bench/random.h"

namespace bench {
namespace {

constexpr auto kLatinWords = std::to_array<std::u16string_view>(
    {u"Bedroom",    u"Kitchen", u"Corridor", u"Level",    u"Section", u"Detail",  u"Elevation",
     u"North",      u"scale",   u"sheet",    u"Pump",     u"Valve",   u"DN",      u"PN",
     u"RC",         u"beam",    u"column",   u"slab",     u"see",     u"drawing", u"typ.",
     u"min.",       u"max.",    u"approx.",  u"existing", u"new",     u"Ø",       u"±",
     u"galvanised", u"weld",    u"all",      u"round",    u"HEB",     u"Geländer"});
constexpr auto kGreekWords = std::to_array<std::u16string_view>(
    {u"Κάτοψη", u"Τομή", u"Όροφος", u"Υπόγειο", u"Σκάλα", u"Κλίμαξ", u"γωνία", u"δοκός"});
constexpr auto kCyrillicWords = std::to_array<std::u16string_view>(
    {u"План", u"Разрез", u"Этаж", u"Лист", u"Узел", u"Балка", u"Колонна", u"подвал"});
constexpr std::array kColors = {Color{192, 0, 0}, Color{0, 96, 0}, Color{0, 0, 192}, Color{128, 128, 128}};

// 8 to 30 characters.
constexpr size_t kShortest = 8;
constexpr int32_t kSpread = 23;
constexpr int32_t kLowest = 20;
constexpr int32_t kHighest = 80;
// Upper bound of the width of the vocabulary's characters in the fonts, in ems.
constexpr double kWidest = 1.0;

// An integer, or a number with two decimals.
std::u16string Number(Random& random) {
  const std::string digits = std::to_string(random.Below(20'000));
  std::u16string number(digits.begin(), digits.end());
  if (number.size() > 2 && random.Below(2) == 0) number.insert(number.size() - 2, 1, u'.');
  return number;
}

std::u16string Units(Random& random) {
  const auto length = kShortest + static_cast<size_t>(random.Below(kSpread));
  const int32_t script = random.Below(100);
  const auto word = [&] {
    if (random.Below(5) < 2) return Number(random);
    if (script < 10) return std::u16string(random.OneOf(kGreekWords));
    if (script < 20) return std::u16string(random.OneOf(kCyrillicWords));
    return std::u16string(random.OneOf(kLatinWords));
  };
  std::u16string units = word();
  while (units.size() < length) units += u' ' + word();
  units.resize(length);
  if (units.back() == u' ') units.back() = u'.';
  return units;
}

// Most texts are horizontal, a quarter vertical, and some at any angle.
int32_t Angle(Random& random) {
  const int32_t kind = random.Below(20);
  if (kind < 5) return 900;
  return kind < 8 ? random.Below(3600) : 0;
}

// A random coordinate such that `low` to `high` relative to it stay within 0 to `size`.
double Inside(Random& random, double low, double high, int32_t size) {
  const auto first = static_cast<int32_t>(std::ceil(-low));
  const auto last = size - static_cast<int32_t>(std::ceil(high));
  return first + random.Below(std::max(1, last - first));
}

Point Place(Random& random, const Text& text) {
  const double length = kWidest * text.height * static_cast<double>(text.units.size());
  const double x = DirectionOf(text).x * length;
  const double y = DirectionOf(text).y * length;
  const double height = text.height;
  return {Inside(random, std::min(x, 0.0) - height, std::max(x, 0.0) + height, kA4.areaWidth),
          Inside(random, std::min(y, 0.0) - height, std::max(y, 0.0) + height, kA4.areaHeight)};
}

}  // namespace

Point DirectionOf(const Text& text) {
  constexpr int32_t kQuarter = 900;
  constexpr std::array<Point, 4> kQuarters = {{{1, 0}, {0, -1}, {-1, 0}, {0, 1}}};
  if (text.angle % kQuarter == 0) return kQuarters[static_cast<size_t>(text.angle / kQuarter % 4)];
  const double angle = text.angle * std::numbers::pi / (2 * kQuarter);
  return {std::cos(angle), -std::sin(angle)};
}

Scene RandomTexts(size_t count) {
  Random random(20240609);
  Scene scene;
  scene.kind = Kind::kTexts;
  scene.families = {"DejaVu Sans", "Liberation Serif", "DejaVu Sans Mono"};
  scene.texts.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    Text text{};
    text.units = Units(random);
    text.height = kLowest + random.Below(kHighest - kLowest + 1);
    text.angle = Angle(random);
    text.font = static_cast<size_t>(random.Below(static_cast<int32_t>(scene.families.size())));
    if (random.Below(5) < 2) text.color = random.OneOf(kColors);
    text.start = Place(random, text);
    scene.texts.push_back(text);
  }
  return scene;
}

}  // namespace bench
