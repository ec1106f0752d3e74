"""Lines into areas: a line of some width with caps, joins and dashes as a heap of convex polygons.

All polygons of a line run the same way around, so that by the winding rule they add up to one area.
"""

from __future__ import annotations

import math
from dataclasses import dataclass
from enum import Enum

from raster import Point, Ring

# A miter longer than this many line widths is cut off, as for a page description's default miter limit.
MITER_LIMIT = 10.0
CURVE_STEPS = 24


class Cap(Enum):
    """The end of an open line."""

    BUTT = 0
    ROUND = 1
    SQUARE = 2


class Join(Enum):
    """The corner between two segments of a line."""

    MITER = 0
    ROUND = 1
    BEVEL = 2


@dataclass
class Pen:
    """A line's looks, lengths in pixels; `dashes` alternates dashes and gaps, beginning with a dash."""

    width: float
    cap: Cap = Cap.ROUND
    join: Join = Join.ROUND
    dashes: tuple[float, ...] = ()


def flatten_curve(p0: Point, p1: Point, p2: Point, p3: Point) -> list[Point]:
    """The points on a cubic curve behind its start."""
    points = []
    for step in range(1, CURVE_STEPS + 1):
        t = step / CURVE_STEPS
        s = 1 - t
        a, b, c, d = s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t
        x = a * p0[0] + b * p1[0] + c * p2[0] + d * p3[0]
        points.append((x, a * p0[1] + b * p1[1] + c * p2[1] + d * p3[1]))
    return points


def circle(center: Point, radius: float, steps: int = 32) -> Ring:
    """A circle as a polygon."""
    turns = (2 * math.pi * step / steps for step in range(steps))
    return [(center[0] + radius * math.cos(turn), center[1] + radius * math.sin(turn)) for turn in turns]


def outline(line: list[Point], pen: Pen, closed: bool = False) -> list[Ring]:
    """The polygons that make up a stroked line."""
    points = _without_repeats(line)
    if closed and len(points) > 1 and points[0] != points[-1]:
        points.append(points[0])
    if not pen.dashes:
        return _solid(points, pen, closed)
    rings = []
    for dash in _dashes(points, pen.dashes):
        rings += _solid(dash, pen, closed=False)
    return rings


def _without_repeats(line: list[Point]) -> list[Point]:
    points = line[:1]
    points += [point for before, point in zip(line, line[1:], strict=False) if point != before]
    return points


def _solid(points: list[Point], pen: Pen, closed: bool) -> list[Ring]:
    half = pen.width / 2
    if len(points) == 1:
        return [circle(points[0], half)] if pen.cap is Cap.ROUND else []
    segments = list(zip(points, points[1:], strict=False))
    rings = [_segment(a, b, half) for a, b in segments]
    corners = list(zip(segments, segments[1:], strict=False))
    if closed:
        corners.append((segments[-1], segments[0]))
    else:
        rings += _cap(points[1], points[0], half, pen.cap) + _cap(points[-2], points[-1], half, pen.cap)
    for (before, corner), (_, after) in corners:
        rings += _join(before, corner, after, half, pen.join)
    return [_turned(ring) for ring in rings]


def _turned(ring: Ring) -> Ring:
    """The ring in the direction that all rings have."""
    area = sum(x0 * y1 - x1 * y0 for (x0, y0), (x1, y1) in zip(ring, ring[1:] + ring[:1], strict=True))
    return ring if area >= 0 else ring[::-1]


def _normal(a: Point, b: Point, length: float) -> Point:
    """A vector of a length, at right angles to the way from a to b."""
    dx, dy = b[0] - a[0], b[1] - a[1]
    factor = length / math.hypot(dx, dy)
    return -dy * factor, dx * factor


def _segment(a: Point, b: Point, half: float) -> Ring:
    nx, ny = _normal(a, b, half)
    return [(a[0] + nx, a[1] + ny), (b[0] + nx, b[1] + ny), (b[0] - nx, b[1] - ny), (a[0] - nx, a[1] - ny)]


def _cap(inner: Point, end: Point, half: float, cap: Cap) -> list[Ring]:
    if cap is Cap.BUTT:
        return []
    if cap is Cap.ROUND:
        return [circle(end, half)]
    nx, ny = _normal(inner, end, half)
    return [_segment(end, (end[0] + ny, end[1] - nx), half)]


def _join(before: Point, corner: Point, after: Point, half: float, join: Join) -> list[Ring]:
    (ax, ay), (bx, by) = _normal(before, corner, half), _normal(corner, after, half)
    if ax * by - ay * bx > 0:  # the outer side is the other one
        ax, ay, bx, by = -ax, -ay, -bx, -by
    if join is Join.ROUND:
        return [[corner, *_fan(corner, (ax, ay), (bx, by))]]
    x, y = corner
    bevel = [corner, (x + ax, y + ay), (x + bx, y + by)]
    # The miter's tip lies along the sum of both normals; its length in line widths is 1 / cos(half the turn).
    sx, sy = ax + bx, ay + by
    cosine = math.hypot(sx, sy) / (2 * half)
    if join is Join.BEVEL or cosine * MITER_LIMIT < 1:
        return [bevel]
    factor = 1 / (2 * cosine * cosine)
    return [[*bevel[:2], (x + sx * factor, y + sy * factor), bevel[2]]]


def _fan(corner: Point, first: Point, last: Point) -> Ring:
    """The points around a corner from one offset to another, the shorter way."""
    start = math.atan2(first[1], first[0])
    span = math.remainder(math.atan2(last[1], last[0]) - start, 2 * math.pi)
    radius = math.hypot(*first)
    steps = max(1, math.ceil(abs(span) / 0.2))
    turns = [start + span * step / steps for step in range(steps + 1)]
    return [(corner[0] + radius * math.cos(turn), corner[1] + radius * math.sin(turn)) for turn in turns]


def _dashes(points: list[Point], lengths: tuple[float, ...]) -> list[list[Point]]:
    """The parts of a line that the pattern draws; it begins anew with the line."""
    dashes: list[list[Point]] = []
    index, left = 0, lengths[0]
    dash = points[:1]
    for a, b in zip(points, points[1:], strict=False):
        length = math.hypot(b[0] - a[0], b[1] - a[1])
        done = 0.0
        while length - done > left:
            done += left
            at = (a[0] + (b[0] - a[0]) * done / length, a[1] + (b[1] - a[1]) * done / length)
            if index % 2 == 0:
                dashes.append([*dash, at])
            dash = [at]
            index += 1
            left = lengths[index % len(lengths)]
        left -= length - done
        dash.append(b)
    if index % 2 == 0:
        dashes.append(dash)
    return dashes
