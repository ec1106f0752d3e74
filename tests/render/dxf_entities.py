"""Entities of a drawing, each with its groups in a DXF file and with its lines and areas by plain geometry.

Points are complex numbers, x + iy, in millimetres with Y up. Angles in entities are degrees, as in the file.
"""

from __future__ import annotations

import cmath
import math
from dataclasses import dataclass
from typing import Any, Callable, Iterator

from raster import Color
from strokes import Cap, Join, Pen, outline

Groups = list[tuple[int, Any]]
Map = Callable[[complex], complex]
ARC_STEPS = 72
MIRRORED = -1.0  # z of the extrusion direction of what is drawn from behind


@dataclass
class Mark:
    """What an entity leaves on the sheet, in millimetres: lines of a width with round ends, or, with a width
    of 0, the area between closed lines, by the even-odd rule unless they are pieces that overlap."""

    color: Color
    lines: list[list[complex]]
    width: float = 0.0
    pieces: bool = False


@dataclass
class Style:
    """Colour and line weight in hundredths of a millimetre."""

    color: Color
    weight: int = 25

    def groups(self) -> Groups:
        """The groups that all entities have."""
        red, green, blue = self.color
        return [(8, "0"), (370, self.weight), (420, red << 16 | green << 8 | blue)]

    @property
    def millimetres(self) -> float:
        """The line weight as a width."""
        return self.weight / 100


def point_groups(code: int, point: complex) -> Groups:
    """A point in space."""
    return [(code, point.real), (code + 10, point.imag), (code + 20, 0.0)]


def sweep(start: float, end: float) -> Iterator[float]:
    """Radians from one angle in degrees to another, counter-clockwise."""
    span = math.radians((end - start) % 360 or 360)
    return (math.radians(start) + span * step / ARC_STEPS for step in range(ARC_STEPS + 1))


def bulge_points(a: complex, b: complex, bulge: float) -> list[complex]:
    """The points from a, without it, to b on an arc: a positive bulge bends to the right of the chord, as the
    arc turns counter-clockwise by four times the bulge's arc tangent."""
    if bulge == 0:
        return [b]
    center = (a + b) / 2 + 1j * (b - a) * (1 - bulge * bulge) / (4 * bulge)
    span = 4 * math.atan(bulge)
    turns = (span * step / ARC_STEPS for step in range(1, ARC_STEPS + 1))
    return [center + (a - center) * cmath.exp(1j * turn) for turn in turns]


def bulged(vertices: list[tuple[complex, float]], closed: bool) -> list[complex]:
    """The points of a polyline whose vertices have a bulge each."""
    points = [vertices[0][0]]
    following = [*vertices[1:], vertices[0]] if closed else vertices[1:]
    for (a, bulge), (b, _) in zip(vertices, following, strict=False):
        points += bulge_points(a, b, bulge)
    return points


def vertex_groups(vertices: list[tuple[complex, float]]) -> Groups:
    """The vertices of a flat polyline."""
    groups: Groups = []
    for point, bulge in vertices:
        groups += [(10, point.real), (20, point.imag), (42, bulge)]
    return groups


@dataclass
class Line:
    """LINE."""

    style: Style
    start: complex
    end: complex

    def groups(self) -> Groups:
        """The entity in a file."""
        return [(0, "LINE"), *self.style.groups(), *point_groups(10, self.start), *point_groups(11, self.end)]

    def marks(self, place: Map) -> Iterator[Mark]:
        """What is seen of it."""
        yield Mark(self.style.color, [[place(self.start), place(self.end)]], self.style.millimetres)


@dataclass
class Arc:
    """ARC."""

    style: Style
    center: complex
    radius: float
    start: float
    end: float

    def groups(self) -> Groups:
        """The entity in a file."""
        angles = [(40, self.radius), (50, self.start), (51, self.end)]
        return [(0, "ARC"), *self.style.groups(), *point_groups(10, self.center), *angles]

    def marks(self, place: Map) -> Iterator[Mark]:
        """What is seen of it."""
        turns = sweep(self.start, self.end)
        points = [place(self.center + cmath.rect(self.radius, turn)) for turn in turns]
        yield Mark(self.style.color, [points], self.style.millimetres)


@dataclass
class Ellipse:
    """ELLIPSE; its ends are parameters, in degrees here."""

    style: Style
    center: complex
    major: complex
    ratio: float
    start: float
    end: float

    def groups(self) -> Groups:
        """The entity in a file."""
        ends = [(40, self.ratio), (41, math.radians(self.start)), (42, math.radians(self.end))]
        points = [*point_groups(10, self.center), *point_groups(11, self.major)]
        return [(0, "ELLIPSE"), *self.style.groups(), *points, *ends]

    def marks(self, place: Map) -> Iterator[Mark]:
        """What is seen of it."""
        minor = 1j * self.major * self.ratio
        turns = sweep(self.start, self.end)
        points = [place(self.center + self.major * math.cos(t) + minor * math.sin(t)) for t in turns]
        yield Mark(self.style.color, [points], self.style.millimetres)


@dataclass
class Polyline:
    """LWPOLYLINE, of one width all along or, with 0, of its line weight."""

    style: Style
    vertices: list[tuple[complex, float]]
    closed: bool = False
    width: float = 0.0

    def groups(self) -> Groups:
        """The entity in a file."""
        head = [(90, len(self.vertices)), (70, int(self.closed)), (43, self.width)]
        return [(0, "LWPOLYLINE"), *self.style.groups(), *head, *vertex_groups(self.vertices)]

    def marks(self, place: Map) -> Iterator[Mark]:
        """What is seen of it: a width of its own ends flat, is mitered and is scaled with the rest."""
        points = bulged(self.vertices, self.closed)
        if self.width == 0:
            yield Mark(self.style.color, [[place(point) for point in points]], self.style.millimetres)
            return
        pen = Pen(self.width, Cap.BUTT, Join.MITER)
        rings = outline([(point.real, point.imag) for point in points], pen, self.closed)
        pieces = [[place(complex(*corner)) for corner in ring] for ring in rings]
        yield Mark(self.style.color, pieces, pieces=True)


@dataclass
class Taper:
    """LWPOLYLINE of one straight segment that changes its width."""

    style: Style
    start: complex
    end: complex
    widths: tuple[float, float]

    def groups(self) -> Groups:
        """The entity in a file."""
        groups = [(0, "LWPOLYLINE"), *self.style.groups(), (90, 2), (70, 0)]
        groups += [(10, self.start.real), (20, self.start.imag), (40, self.widths[0]), (41, self.widths[1])]
        return [*groups, (10, self.end.real), (20, self.end.imag)]

    def marks(self, place: Map) -> Iterator[Mark]:
        """What is seen of it."""
        across = 1j * (self.end - self.start) / abs(self.end - self.start) / 2
        first, last = (across * width for width in self.widths)
        corners = [self.start + first, self.end + last, self.end - last, self.start - first]
        yield Mark(self.style.color, [[place(corner) for corner in corners]])


@dataclass
class Solid:
    """SOLID; its corners here go around the area, while the file has the last two the other way."""

    style: Style
    corners: list[complex]

    def groups(self) -> Groups:
        """The entity in a file."""
        a, b, c, d = self.corners if len(self.corners) == 4 else [*self.corners, self.corners[2]]
        groups = [(0, "SOLID"), *self.style.groups()]
        for code, corner in ((10, a), (11, b), (12, d), (13, c)):
            groups += point_groups(code, corner)
        return groups

    def marks(self, place: Map) -> Iterator[Mark]:
        """What is seen of it."""
        yield Mark(self.style.color, [[place(corner) for corner in self.corners]])


@dataclass
class Hatch:
    """HATCH, filled, with closed polylines as boundaries; what lies within the second is an island."""

    style: Style
    loops: list[list[tuple[complex, float]]]

    def groups(self) -> Groups:
        """The entity in a file."""
        groups = [(0, "HATCH"), *self.style.groups(), *point_groups(10, 0j), (2, "SOLID"), (70, 1), (71, 0)]
        groups.append((91, len(self.loops)))
        for loop in self.loops:
            groups += [(92, 2), (72, 1), (73, 1), (93, len(loop)), *vertex_groups(loop), (97, 0)]
        return [*groups, (75, 0), (76, 1), (98, 0)]

    def marks(self, place: Map) -> Iterator[Mark]:
        """What is seen of it."""
        rings = [[place(point) for point in bulged(loop, closed=True)] for loop in self.loops]
        yield Mark(self.style.color, rings)


@dataclass
class Block:
    """A block; inserts place its base point."""

    name: str
    base: complex
    entities: list[Any]


@dataclass
class Insert:
    """INSERT: scaled, then rotated, then put in its place, `columns` times, and mirrored in X with it when it
    is drawn from behind."""

    style: Style
    block: Block
    at: complex
    scale: tuple[float, float] = (1.0, 1.0)
    rotation: float = 0.0
    columns: int = 1
    spacing: float = 0.0
    extrusion: float = 1.0

    def groups(self) -> Groups:
        """The entity in a file."""
        groups = [(0, "INSERT"), *self.style.groups(), (2, self.block.name), *point_groups(10, self.at)]
        groups += [(41, self.scale[0]), (42, self.scale[1]), (43, 1.0), (50, self.rotation)]
        groups += [(70, self.columns), (44, self.spacing)]
        return [*groups, (210, 0.0), (220, 0.0), (230, self.extrusion)]

    def marks(self, place: Map) -> Iterator[Mark]:
        """What is seen of it."""
        turn = cmath.exp(1j * math.radians(self.rotation))
        for column in range(self.columns):

            def inserted(point: complex, step: float = column * self.spacing) -> complex:
                local = point - self.block.base
                scaled = complex(local.real * self.scale[0], local.imag * self.scale[1]) + step
                result = self.at + turn * scaled
                return place(complex(-result.real, result.imag) if self.extrusion == MIRRORED else result)

            for entity in self.block.entities:
                yield from entity.marks(inserted)


def drawing_text(entities: list[Any], blocks: list[Block]) -> str:
    """The text of a DXF file in millimetres."""
    groups: Groups = [(0, "SECTION"), (2, "HEADER"), (9, "$ACADVER"), (1, "AC1018"), (9, "$INSUNITS")]
    groups += [(70, 4), (0, "ENDSEC"), (0, "SECTION"), (2, "BLOCKS")]
    for block in blocks:
        groups += [(0, "BLOCK"), (8, "0"), (2, block.name), (70, 0), (3, block.name)]
        groups += point_groups(10, block.base)
        for entity in block.entities:
            groups += entity.groups()
        groups += [(0, "ENDBLK"), (8, "0")]
    groups += [(0, "ENDSEC"), (0, "SECTION"), (2, "ENTITIES")]
    for entity in entities:
        groups += entity.groups()
    groups += [(0, "ENDSEC"), (0, "EOF")]
    return "".join(f"{code}\n{value}\n" for code, value in groups)
