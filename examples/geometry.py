"""Plane geometry for the example drawings: points are tuples, angles are degrees counter-clockwise."""

from __future__ import annotations

import math


def polar(center, radius, angle):
    return (
        center[0] + radius * math.cos(math.radians(angle)),
        center[1] + radius * math.sin(math.radians(angle)),
    )


def along(a, b, distance):
    """The point `distance` from `a` towards `b`."""
    part = distance / math.dist(a, b)
    return (a[0] + (b[0] - a[0]) * part, a[1] + (b[1] - a[1]) * part)


def middle(a, b):
    return ((a[0] + b[0]) / 2, (a[1] + b[1]) / 2)


def direction(a, b):
    return math.degrees(math.atan2(b[1] - a[1], b[0] - a[0]))


def turned(p, angle, about=(0.0, 0.0)):
    c, s = math.cos(math.radians(angle)), math.sin(math.radians(angle))
    x, y = p[0] - about[0], p[1] - about[1]
    return (about[0] + x * c - y * s, about[1] + x * s + y * c)


def placed(vertices, at, angle=0.0):
    """Vertices in an object's own coordinates, put at a place of the drawing. Keeps bulges."""
    result = []
    for vertex in vertices:
        x, y = turned(vertex, angle)
        result.append((x + at[0], y + at[1], *vertex[2:]))
    return result


def rectangle(x, y, width, height):
    return [(x, y), (x + width, y), (x + width, y + height), (x, y + height)]


def bulge(sweep):
    """The bulge of an arc of this angle; negative for clockwise."""
    return math.tan(math.radians(sweep) / 4)


def circle_loop(center, radius):
    """A circle as a closed polyline of two half circles."""
    return [(center[0] - radius, center[1], 1.0), (center[0] + radius, center[1], 1.0)]


def flattened(vertices, step=0.5):
    """The points of a closed polyline, arcs broken into chords of about `step`."""
    points = []
    for i, vertex in enumerate(vertices):
        a, b = vertex[:2], vertices[(i + 1) % len(vertices)][:2]
        points.append(a)
        if len(vertex) < 3 or not vertex[2]:
            continue
        sweep = 4 * math.atan(vertex[2])
        radius = math.dist(a, b) / 2 / math.sin(sweep / 2)
        chord = direction(a, b) - math.degrees(sweep) / 2  # the tangent at a
        center = polar(a, radius, chord + 90)
        start = direction(center, a)
        count = max(2, int(abs(radius * sweep) / step))
        for k in range(1, count):
            points.append(polar(center, abs(radius), start + math.degrees(sweep) * k / count))
    return points


def contains(polygon, p):
    """Whether `p` lies within a polygon of straight edges."""
    inside = False
    x, y = p
    for i, (x1, y1) in enumerate(polygon):
        x2, y2 = polygon[i - 1]
        if (y1 > y) != (y2 > y) and x < x1 + (x2 - x1) * (y - y1) / (y2 - y1):
            inside = not inside
    return inside


def runs(points, keep, closed=False):
    """The stretches of a line of points for which `keep` holds."""
    flags = [keep(p) for p in points]
    if closed and not all(flags):
        first = flags.index(False)
        points, flags = points[first:] + points[:first], flags[first:] + flags[:first]
    result, run = [], []
    for p, kept in zip(points, flags):
        if kept:
            run.append(p)
        elif run:
            result.append(run)
            run = []
    return result + [run] if run else result
