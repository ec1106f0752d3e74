"""Dimensions: a DIMENSION entity, and the anonymous block that holds its lines, arrows and figures."""

from __future__ import annotations

import math

from dxf_writer import point
from geometry import along, direction, middle, polar
from lettering import width

ARROW, ARROW_WIDTH = 3.0, 1.0
GAP, BEYOND = 1.0, 2.0  # of extension lines
ABOVE = 1.0  # from the line to the figures


def upright(angle):
    """The direction of figures along a line: read from below or from the right."""
    angle = (angle + 180) % 360 - 180
    return angle - 180 if angle > 90.001 else angle + 180 if angle <= -89.999 else angle


def draw_arrow(entities, tip, angle, size=ARROW, **style):
    """Points to `angle`."""
    foot, half = polar(tip, -size, angle), ARROW_WIDTH / ARROW * size / 2
    entities.solid([tip, polar(foot, half, angle + 90), polar(foot, half, angle - 90)], **style)


class Dimensions:
    def __init__(self, drawing, lettering, layer="DIMENSION", height=3.5):
        self.drawing = drawing
        self.lettering = lettering
        self.layer = layer
        self.height = height

    def linear(self, a, b, line_at, angle, text, text_shift=0.0):
        """The distance of `a` and `b` in the direction `angle`, on a line through `line_at`. The arrows go
        outside where the line is short; `text_shift` moves the figures along the line."""
        name, block = self.drawing.anonymous_block(self.layer)
        ends = [self._foot(p, line_at, angle) for p in (a, b)]
        if (ends[1][0] - ends[0][0]) * math.cos(math.radians(angle)) + (ends[1][1] - ends[0][1]) * math.sin(
            math.radians(angle)
        ) < 0:
            a, b, ends = b, a, ends[::-1]
        for p, end in zip((a, b), ends):
            if math.dist(p, end) > GAP:
                block.line(along(p, end, GAP), along(end, p, -BEYOND))
        length = math.dist(*ends)
        inside = length > 3 * ARROW
        if inside:
            block.line(*ends)
        else:
            block.line(polar(ends[0], -2 * ARROW, angle), polar(ends[1], 2 * ARROW, angle))
        draw_arrow(block, ends[0], angle + (180 if inside else 0))
        draw_arrow(block, ends[1], angle + (0 if inside else 180))
        reading = upright(angle)
        text_at = polar(polar(middle(*ends), text_shift, angle), ABOVE, reading + 90)
        if abs(text_shift) > length / 2 + 2 * ARROW:  # the line goes on under the figures
            end = ends[1] if text_shift > 0 else ends[0]
            far = abs(text_shift) - length / 2 + width(text, self.height) / 2
            block.line(end, polar(end, math.copysign(far, text_shift), angle))
        self.lettering.write(block, text, text_at, self.height, "center", reading, layer=self.layer)
        for p in (a, b, ends[1]):
            block.point(p, layer="DEFPOINTS")
        groups = [(100, "AcDbAlignedDimension")] + point(13, a) + point(14, b)
        groups += [(50, float(angle)), (100, "AcDbRotatedDimension")]
        self._add(name, 0, ends[1], text_at, length, groups)

    def diameter(self, center, radius, angle, reach, text, shelf=1):
        """An arrow at the circle's point at `angle`, from outside or, where `reach` is negative, from inside,
        with the figures on a shelf to the right (1) or to the left (-1)."""
        near, far = polar(center, radius, angle), polar(center, -radius, angle)
        groups = [(100, "AcDbDiametricDimension")] + point(15, near) + [(40, float(reach))]
        self._pointer(near, angle, reach, text, shelf, 3, far, 2 * radius, groups)

    def radius(self, center, radius, angle, reach, text, shelf=1):
        near = polar(center, radius, angle)
        groups = [(100, "AcDbRadialDimension")] + point(15, near) + [(40, float(abs(reach)))]
        self._pointer(near, angle, reach, text, shelf, 4, center, radius, groups)

    def angular(self, center, start, end, radius, text):
        """The angle between two rays from `center`, on an arc of `radius`."""
        name, block = self.drawing.anonymous_block(self.layer)
        block.arc(center, radius, start, end)
        turn = math.degrees(ARROW / 2 / radius)
        draw_arrow(block, polar(center, radius, start), start - 90 + turn)
        draw_arrow(block, polar(center, radius, end), end + 90 - turn)
        half = (start + end) / 2
        reading = upright(half - 90)
        up = ABOVE if math.cos(math.radians(reading + 90 - half)) > 0 else -ABOVE
        text_at = polar(center, radius + up, half)
        self.lettering.write(block, text, text_at, self.height, "center", reading, layer=self.layer)
        tips = [polar(center, radius, start), polar(center, radius, end)]
        for p in tips:
            block.point(p, layer="DEFPOINTS")
        groups = (
            [(100, "AcDb2LineAngularDimension")] + point(13, center) + point(14, tips[0]) + point(15, center)
        )
        self._add(
            name,
            2,
            tips[1],
            text_at,
            math.radians(end - start),
            groups + point(16, polar(center, radius, half)),
        )

    def leader(self, tip, elbow, text, shelf=1):
        """A note with a line to what it is about; no dimension of its own."""
        m = self.drawing.model
        length = width(text, self.height) + 2 if text else 0.0
        m.polyline([tip, elbow] + ([(elbow[0] + shelf * length, elbow[1])] if text else []), layer=self.layer)
        draw_arrow(m, tip, direction(elbow, tip), layer=self.layer)
        left = elbow[0] + 1 if shelf > 0 else elbow[0] - length + 1
        self.lettering.write(m, text, (left, elbow[1] + ABOVE), self.height, layer=self.layer)

    def _pointer(self, near, angle, reach, text, shelf, kind, definition, measured, groups):
        name, block = self.drawing.anonymous_block(self.layer)
        elbow = polar(near, reach, angle)
        length = width(text, self.height) + 2
        block.polyline([near, elbow, (elbow[0] + shelf * length, elbow[1])])
        draw_arrow(block, near, angle + 180 if reach > 0 else angle)
        left = elbow[0] + 1 if shelf > 0 else elbow[0] - length + 1
        text_at = (left, elbow[1] + ABOVE)
        self.lettering.write(block, text, text_at, self.height, layer=self.layer)
        for p in (near, definition):
            block.point(p, layer="DEFPOINTS")
        self._add(name, kind, definition, text_at, measured, groups)

    def _add(self, name, kind, definition, text_at, measured, groups):
        self.drawing.model.dimension(name, kind, definition, text_at, measured, groups, layer=self.layer)

    @staticmethod
    def _foot(p, line_at, angle):
        c, s = math.cos(math.radians(angle)), math.sin(math.radians(angle))
        t = (p[0] - line_at[0]) * c + (p[1] - line_at[1]) * s
        return (line_at[0] + t * c, line_at[1] + t * s)
