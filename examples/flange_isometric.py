"""The flanged hub's isometric picture: ellipses, cut where the part hides them.

The part is seen from the hub's side. A point of paper that lies within the section of the part at a larger
`a` is covered by it, which is all that is needed to find what is visible on a solid of revolution.
"""

from __future__ import annotations

import math

from geometry import polar, turned

SIZE = 0.7
AXIS = 210.0  # the direction of growing `a` on paper
FLAT = 1 / math.sqrt(3)  # of a circle's ellipse
SHORT = math.sqrt(2 / 3)  # of lengths along the axes
END = 60.0

# Outer and inner radius from this `a` on.
PROFILE = [(-5, 45, 20), (0, 70, 20), (16, None, 20), (22, 40, 20), (50, 40, 28), (58.5, 39, 28)]


def radii(a):
    for start, outer, inner in reversed(PROFILE):
        if a >= start:
            # Between 16 and 22 runs the fillet of 6 mm.
            return (46 - math.sqrt(36 - (22 - a) ** 2) if outer is None else outer), inner
    return 0.0, 0.0


class Isometric:
    def __init__(self, entities, center):
        self.m = entities
        self.center = center

    def at(self, a, y=0.0, z=0.0):
        """A point of the part; `y` points to the right and `z` up as the hub's face is seen."""
        x0, y0 = self.center
        ax, ay = polar((0, 0), (a - 25) * SHORT * SIZE, AXIS)
        yx, yy = polar((0, 0), y * SHORT * SIZE, -30)
        return (x0 + ax + yx, y0 + ay + yy + z * SHORT * SIZE)

    def is_visible(self, p, a):
        behind = a + 0.35
        while behind <= END:
            cx, cy = self.at(behind)
            x, y = turned((p[0] - cx, p[1] - cy), -(AXIS - 90))
            distance = math.hypot(x, y / FLAT) / SIZE
            outer, inner = radii(behind)
            if inner + 0.05 < distance < outer - 0.05:
                return False
            behind += 0.35
        return True

    def circle(self, a, radius, y=0.0, z=0.0, through=None, start=0.0, end=360.0, **style):
        """The visible arcs of a circle around an axis of the part's direction. What lies in a hole is seen
        `through` its mouth: the mouth's `a` and a test for points within it."""
        center = self.at(a, y, z)
        major = polar((0, 0), radius * SIZE, AXIS - 90)
        minor = polar((0, 0), radius * SIZE * FLAT, AXIS)
        steps = 720
        visible = []
        for i in range(steps):
            t = math.radians(start + (end - start) * i / steps)
            c, s = math.cos(t), math.sin(t)
            p = (center[0] + major[0] * c + minor[0] * s, center[1] + major[1] * c + minor[1] * s)
            if through:
                visible.append(through[1](p) and self.is_visible(p, through[0]))
            else:
                visible.append(self.is_visible(p, a))
        step = (end - start) / steps
        for first, last in arcs(visible, closed=end - start >= 360):
            self.m.ellipse(center, major, FLAT, start + first * step, start + last * step, **style)

    def in_circle(self, a, radius, y=0.0, z=0.0):
        center = self.at(a, y, z)

        def test(p):
            x, v = turned((p[0] - center[0], p[1] - center[1]), -(AXIS - 90))
            return math.hypot(x, v / FLAT) <= radius * SIZE

        return test

    def silhouette(self, stretch, **style):
        """The outline of a surface of revolution on both sides of the axis; `stretch` is (a, r) pairs."""
        for side in (1, -1):
            ends = [polar(self.at(a), side * r * SIZE, AXIS - 90) for a, r in stretch]
            if len(ends) == 2:
                self.m.line(*ends, **style)
            else:
                self.m.spline(ends, **style)


def arcs(visible, closed):
    """First and last index of each run of visible points; of a ring, `last` may go beyond its end."""
    count = len(visible)
    if all(visible):
        return [(0, count if closed else count - 1)]
    if not any(visible):
        return []
    first = visible.index(False) if closed else 0
    result, start = [], None
    for k in range(first, first + count + (1 if closed else 0)):
        if visible[k % count] and start is None:
            start = k
        if not visible[k % count] and start is not None:
            result.append((start, k - 1))
            start = None
    if start is not None:
        result.append((start, first + count - 1))
    return [(a, b) for a, b in result if b > a]


def draw_isometric(m, center):
    view = Isometric(m, center)
    thick, edge, thin = (dict(layer="OUTLINE", lw=weight) for weight in (50, 35, 18))
    for a, radius, style in (
        (0, 68.5, thin),
        (1.5, 70, thick),
        (14.5, 70, thin),
        (16, 68.5, thick),
        (16, 46, thin),
        (22, 40, thin),
        (58.5, 40, edge),
        (60, 38.5, edge),
        (60, 29, edge),
        (59, 28, thin),
        (50, 28, thin),
        (50, 20, thick),
    ):
        view.circle(a, radius, **style)
    view.silhouette([(1.5, 70), (14.5, 70)], **thick)
    view.silhouette([(14.5, 70), (16, 68.5)], **thick)
    view.silhouette([(22, 40), (58.5, 40)], **thick)
    view.silhouette([(58.5, 40), (60, 38.5)], **thick)
    fillet = [
        (22 - 6 * math.sin(math.radians(15 * i)), 46 - 6 * math.cos(math.radians(15 * i))) for i in range(7)
    ]
    view.silhouette(fillet, **thick)
    draw_holes(view, thick, thin)


def draw_holes(view, thick, thin):
    for i in range(8):
        y, z = polar((0, 0), 57, 45 * i)
        view.circle(16, 9, y, z, **thick)
        mouth = view.in_circle(16, 9, y, z)
        view.circle(10, 9, y, z, through=(16, mouth), **thin)
        view.circle(10, 5.5, y, z, through=(16, mouth), **thick)
    for i in range(4):
        y, z = polar((0, 0), 34, 90 * i)
        view.circle(60, 2.5, y, z, **thick)
        view.circle(60, 3, y, z, start=20, end=290, layer="EDGE_THIN")
        y, z = polar((0, 0), 33.5, 90 * i + 45)
        view.circle(60, 4, y, z, **thick)
