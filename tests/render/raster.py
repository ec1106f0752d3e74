"""A small software rasteriser: areas with antialiased edges, painted one over the other.

It is the second opinion on what a plot looks like, so it knows nothing of any file format: only of polygons
in pixels, with Y down and the origin in the upper left corner of the picture.
"""

from __future__ import annotations

import math
from collections import defaultdict
from dataclasses import dataclass
from typing import Callable, Iterable

from pictures import Picture

Point = tuple[float, float]
Ring = list[Point]
Color = tuple[int, int, int]
# How much of each pixel an area covers, from 0 to 1: by row the first column and the values from there on.
Coverage = dict[int, tuple[int, list[float]]]

# Samples of a pixel row; along the row the coverage is exact.
SAMPLES = 5

Inside = Callable[[int], bool]


def winding(count: int) -> bool:
    """The rule that whatever is turned around more often one way than the other is inside."""
    return count != 0


def even_odd(count: int) -> bool:
    """The rule that each crossing changes between outside and inside."""
    return count % 2 != 0


def _crossings(rings: Iterable[Ring], height: int) -> dict[int, list[tuple[float, int]]]:
    """Where the rings' edges cross the sample lines: position and direction, by the line's number."""
    lines: dict[int, list[tuple[float, int]]] = defaultdict(list)
    for ring in rings:
        x0, y0 = ring[-1]
        for x1, y1 in ring:
            if y0 != y1:
                low, high, direction = (y0, y1, 1) if y0 < y1 else (y1, y0, -1)
                slope = (x1 - x0) / (y1 - y0)
                first = max(math.ceil(low * SAMPLES - 0.5), 0)
                last = min(math.ceil(high * SAMPLES - 0.5), height * SAMPLES)
                for line in range(first, last):
                    lines[line].append((x0 + ((line + 0.5) / SAMPLES - y0) * slope, direction))
            x0, y0 = x1, y1
    return lines


def _spans(crossings: list[tuple[float, int]], inside: Inside, width: int) -> list[tuple[float, float]]:
    """The parts of a sample line that lie inside, cut to the picture."""
    crossings.sort()
    spans = []
    count = 0
    for (x, direction), (following, _) in zip(crossings, crossings[1:], strict=False):
        count += direction
        if inside(count):
            start, end = max(x, 0.0), min(following, float(width))
            if start < end:
                spans.append((start, end))
    return spans


def cover(rings: Iterable[Ring], inside: Inside, width: int, height: int) -> Coverage:
    """The coverage of the area that the rings, each closed, enclose by a rule."""
    rows: dict[int, list[tuple[float, float]]] = defaultdict(list)
    for line, crossings in _crossings([ring for ring in rings if ring], height).items():
        rows[line // SAMPLES] += _spans(crossings, inside, width)
    return {row: _row_coverage(spans) for row, spans in rows.items() if spans}


def _row_coverage(spans: list[tuple[float, float]]) -> tuple[int, list[float]]:
    first = int(min(start for start, _ in spans))
    size = math.ceil(max(end for _, end in spans)) - first + 2
    edges = [0.0] * size  # coverage of single pixels
    steps = [0.0] * size  # where runs of whole pixels begin and end
    for start, end in spans:
        i, j = int(start) - first, int(end) - first
        if i == j:
            edges[i] += end - start
            continue
        edges[i] += i + first + 1 - start
        edges[j] += end - j - first
        steps[i + 1] += 1
        steps[j] -= 1
    values = []
    level = 0.0
    for edge, step in zip(edges, steps, strict=True):
        level += step
        values.append((level + edge) / SAMPLES)
    return first, values


def intersect(coverage: Coverage, clip: Coverage) -> Coverage:
    """What a clip leaves of an area."""
    result: Coverage = {}
    for row, (first, values) in coverage.items():
        if row not in clip:
            continue
        clip_first, clip_values = clip[row]
        start = max(first, clip_first)
        end = min(first + len(values), clip_first + len(clip_values))
        pairs = zip(values[start - first : end - first], clip_values[start - clip_first :], strict=False)
        result[row] = (start, [one * other for one, other in pairs])
    return result


@dataclass
class Paint:
    """How an area is painted; opacity from 0 to 1; darkening keeps the darker of each component."""

    color: Color
    opacity: float = 1.0
    darken: bool = False


class Canvas:
    """A picture in the making, white at first."""

    def __init__(self, width: int, height: int) -> None:
        self.width = width
        self.height = height
        self._rows = [[[255.0, 255.0, 255.0] for _ in range(width)] for _ in range(height)]

    def cover(self, rings: Iterable[Ring], inside: Inside = winding) -> Coverage:
        """The coverage of an area on this canvas."""
        return cover(rings, inside, self.width, self.height)

    def paint(self, coverage: Coverage, paint: Paint, clip: Coverage | None = None) -> None:
        """Paints an area, within a clip if there is one."""
        if clip is not None:
            coverage = intersect(coverage, clip)
        for row, (first, values) in coverage.items():
            pixels = self._rows[row]
            for column, value in enumerate(values[: self.width - first], first):
                if value > 0.0:
                    self._blend(pixels[column], value * paint.opacity, paint)

    @staticmethod
    def _blend(pixel: list[float], amount: float, paint: Paint) -> None:
        for index, wanted in enumerate(paint.color):
            below = pixel[index]
            if not paint.darken or wanted < below:
                pixel[index] = below + (wanted - below) * amount

    def picture(self) -> Picture:
        """The picture as it is now."""
        rows = [bytes(round(value) for pixel in row for value in pixel) for row in self._rows]
        return Picture(self.width, self.height, b"".join(rows))
