"""The ground of the site plan: heights as a smooth function, and its contour lines by marching squares."""

from __future__ import annotations

import math
from collections import defaultdict

STEP = 2.0  # of the grid
INTERVAL = 0.5  # metres from one contour line to the next

# Middle, reach and height of each hill and hollow.
HILLS = (
    ((38, 262), 95, 5.2),
    ((150, 300), 120, 2.2),
    ((292, 190), 70, 1.6),
    ((58, 18), 42, -2.4),
    ((262, 6), 60, 1.5),
    ((120, 150), 80, 0.9),
)


def height_at(x, y):
    """In metres; `x` and `y` are millimetres on the sheet."""
    z = 112.0 + 0.0135 * y - 0.0042 * x + 0.25 * math.sin(x / 29) * math.cos(y / 37)
    return z + sum(
        h * math.exp(-((x - cx) ** 2 + (y - cy) ** 2) / reach**2) for (cx, cy), reach, h in HILLS
    )


def contour_lines(width, height):
    """Yields (level in half metres, points about a millimetre apart or closer, closed)."""
    columns, rows = int(width / STEP) + 1, int(height / STEP) + 1
    xs = [width * i / (columns - 1) for i in range(columns)]
    ys = [height * j / (rows - 1) for j in range(rows)]
    z = [[height_at(x, y) for x in xs] for y in ys]
    low = math.ceil(min(map(min, z)) / INTERVAL)
    high = math.floor(max(map(max, z)) / INTERVAL)
    for level in range(low, high + 1):
        for points, closed in chains(crossings(z, xs, ys, level * INTERVAL)):
            yield level, densified(points), closed


def crossings(z, xs, ys, level):
    """The line's piece in each square of the grid, from one side of the square to another."""
    segments = []
    for j in range(len(ys) - 1):
        for i in range(len(xs) - 1):
            corners = ((i, j), (i + 1, j), (i + 1, j + 1), (i, j + 1))
            cut = []
            for a, b in zip(corners, corners[1:] + corners[:1]):
                za, zb = z[a[1]][a[0]], z[b[1]][b[0]]
                if (za > level) != (zb > level):
                    part = (level - za) / (zb - za)
                    p = (xs[a[0]] + (xs[b[0]] - xs[a[0]]) * part, ys[a[1]] + (ys[b[1]] - ys[a[1]]) * part)
                    cut.append(((min(a, b), max(a, b)), p))
            segments += [(cut[k], cut[k + 1]) for k in range(0, len(cut) - 1, 2)]
    return segments


def chains(segments):
    """Joins pieces that meet on the same side of a square."""
    by_side = defaultdict(list)
    for index, (a, b) in enumerate(segments):
        by_side[a[0]].append(index)
        by_side[b[0]].append(index)
    used = set()

    def follow(index, side):
        points = []
        while index is not None:
            used.add(index)
            a, b = segments[index]
            side, p = b if a[0] == side else a
            points.append(p)
            index = next((k for k in by_side[side] if k not in used), None)
        return points, side

    starts = [i for i, (a, b) in enumerate(segments) if len(by_side[a[0]]) == 1 or len(by_side[b[0]]) == 1]
    for index in starts + list(range(len(segments))):
        if index in used:
            continue
        a, b = segments[index]
        first = b if len(by_side[b[0]]) == 1 and len(by_side[a[0]]) > 1 else a
        points, end = follow(index, first[0])
        yield [first[1]] + points, end == first[0]


def densified(points):
    result = [points[0]]
    for a, b in zip(points, points[1:]):
        count = max(1, math.ceil(math.dist(a, b) / 0.8))
        result += [
            (a[0] + (b[0] - a[0]) * k / count, a[1] + (b[1] - a[1]) * k / count) for k in range(1, count + 1)
        ]
    return result
