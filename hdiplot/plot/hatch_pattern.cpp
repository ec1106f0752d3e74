#include "hdiplot/plot/hatch_pattern.h"

#include <algorithm>

namespace hdiplot {

namespace {

double PeriodOf(const std::vector<double>& dashes) {
  double period = 0;
  for (const double element : dashes) period += std::abs(element);
  return period;
}

}  // namespace

const std::vector<PatternPiece>& PatternCutter::Cut(const HatchPatternLine& family) {
  pieces_.clear();
  const Axes axes = AxesOf(family);
  const int64_t step = LineStep(axes);
  if (step == 0) return pieces_;
  double period = PeriodOf(family.dashes);
  if (!(period > limits_.shortestPattern)) period = 0;  // continuous

  FindCrossings(axes, step);
  Thin(family.dashes, period, step);
  // Every line crosses a polygon an even number of times: pairs of crossings bound the inside.
  for (size_t i = 0; i + 1 < crossings_.size(); i += 2) {
    CutLine(axes, family.dashes, period, crossings_[i].line, crossings_[i].along, crossings_[i + 1].along);
  }
  return pieces_;
}

PatternCutter::Axes PatternCutter::AxesOf(const HatchPatternLine& family) {
  Axes axes;
  axes.direction = Direction(family.angle);
  axes.origin = family.base;
  axes.spacing = Cross(axes.direction, family.offset);
  axes.shift = Dot(axes.direction, family.offset);
  if (axes.spacing < 0) {  // number the lines in the opposite direction
    axes.spacing = -axes.spacing;
    axes.shift = -axes.shift;
  }
  return axes;
}

// Every how many lines one is drawn; 0 for none.
int64_t PatternCutter::LineStep(const Axes& axes) const {
  double farthest = 0;  // across, from line 0
  double travel = 0;    // across, along the whole boundary
  for (const Ring& ring : rings_) {
    double before = axes.Across(ring.back());
    for (const Vec2& p : ring) {
      const double across = axes.Across(p);
      if (!std::isfinite(across) || !std::isfinite(axes.Along(p))) return 0;
      farthest = std::max(farthest, std::abs(across));
      travel += std::abs(across - before);
      before = across;
    }
  }
  constexpr double kMostLines = 1e15;  // line numbers must be exact doubles
  if (!(farthest / axes.spacing < kMostLines)) return 0;
  const double close = limits_.closestLines / axes.spacing - 1e-9;
  const double pieces = travel / axes.spacing / 2;
  const double many = pieces / static_cast<double>(limits_.mostPieces);
  return static_cast<int64_t>(std::ceil(std::clamp(std::max(close, many), 1.0, kMostLines)));
}

void PatternCutter::FindCrossings(const Axes& axes, int64_t step) {
  crossings_.clear();
  const double pitch = axes.spacing * static_cast<double>(step);
  for (const Ring& ring : rings_) {
    Vec2 from = ring.back();
    for (const Vec2& to : ring) {
      const double acrossFrom = axes.Across(from);
      const double acrossTo = axes.Across(to);
      const double alongFrom = axes.Along(from);
      const double alongTo = axes.Along(to);
      const auto first = static_cast<int64_t>(std::floor(std::min(acrossFrom, acrossTo) / pitch));
      const auto last = static_cast<int64_t>(std::ceil(std::max(acrossFrom, acrossTo) / pitch));
      for (int64_t i = first; i <= last; ++i) {
        const double across = static_cast<double>(i) * pitch;
        // Half open, so that a line through a corner crosses the boundary there once or twice, consistently.
        if ((acrossFrom <= across) == (acrossTo <= across)) continue;
        const double part = (across - acrossFrom) / (acrossTo - acrossFrom);
        crossings_.push_back({i * step, alongFrom + (alongTo - alongFrom) * part});
      }
      from = to;
    }
  }
  std::sort(crossings_.begin(), crossings_.end(), [](const Crossing& a, const Crossing& b) {
    return a.line != b.line ? a.line < b.line : a.along < b.along;
  });
}

// Drops lines evenly when they would have too many pieces.
void PatternCutter::Thin(const std::vector<double>& dashes, double period, int64_t step) {
  const auto dashesInPeriod = std::count_if(dashes.begin(), dashes.end(), [](double d) { return d >= 0; });
  double pieces = 0;
  for (size_t i = 0; i + 1 < crossings_.size(); i += 2) {
    const double periods = period > 0 ? (crossings_[i + 1].along - crossings_[i].along) / period : 0;
    pieces += 1 + periods * static_cast<double>(dashesInPeriod);
  }
  const auto keepEvery = static_cast<int64_t>(std::ceil(pieces / static_cast<double>(limits_.mostPieces)));
  if (keepEvery <= 1) return;
  std::erase_if(crossings_, [&](const Crossing& crossing) { return crossing.line / step % keepEvery != 0; });
}

void PatternCutter::CutLine(const Axes& axes, const std::vector<double>& dashes, double period, int64_t line,
                            double from, double to) {
  const auto add = [&](double start, double end) {
    pieces_.push_back({axes.At(line, start), axes.At(line, end)});
  };
  if (period == 0) {
    if (to > from) add(from, to);  // equal where the line touches a corner
    return;
  }
  // The pattern of each line starts `shift` further along than that of its neighbour.
  const double base = static_cast<double>(line) * axes.shift;
  double start = base + std::floor((from - base) / period) * period;
  // A single line may still have too many dashes.
  for (uint64_t left = limits_.mostPieces; start < to && left > 0; --left) {
    for (const double element : dashes) {
      const double end = start + std::abs(element);
      if (element == 0 && start >= from && start <= to) add(start, start);
      if (element > 0 && end > from && start < to) add(std::max(start, from), std::min(end, to));
      start = end;
    }
  }
}

}  // namespace hdiplot
