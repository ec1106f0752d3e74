"""Layers and links: the groups of layers, and the area that an open link covers."""

from __future__ import annotations

import math
from dataclasses import dataclass, field

from number_forms import MAX_F32, f32, same
from page_objects import PathPoint
from plotted_job import Annotation, Rect
from text_model import TextRecord

NOWHERE: Rect = (0.0, 0.0, 0.0, 0.0)
QUARTER_TURN = 1.5707963267948966


@dataclass
class Layers:
    """The layers of a job: a group for each page and name, numbered from 1 in the order of first use. Names
    are strings of 16-bit units, each a character of its own, and sort by them."""

    _groups: dict[tuple[int, str], int] = field(default_factory=dict)

    def group(self, page: int, name: str) -> int:
        """The number of a group; 0 for the objects without a layer."""
        return self._groups.setdefault((page, name), len(self._groups) + 1) if name else 0

    @property
    def names(self) -> list[str]:
        """The names of the groups."""
        return [name for _, name in self._groups]

    @property
    def order(self) -> list[int]:
        """The groups as a reader lists them."""
        return [self._groups[key] for key in sorted(self._groups)]


@dataclass
class OpenLink:
    """The link in the making. Its area, in points, grows with each object that is plotted under a target."""

    scale: float
    exact: bool
    origin: tuple[float, float] = (0.0, 0.0)
    target: str = ""
    area: Rect = NOWHERE

    def set_target(self, target: str) -> Annotation | None:
        """Takes another target, and gives the annotation of the link that an empty one ends."""
        ended = None
        left, bottom, right, top = self.area
        if not target and self.target and right > left and top > bottom:
            # Units are encoded one by one, the halves of surrogate pairs too.
            data = self.target.encode("utf-8", "surrogatepass")
            ended = Annotation("link", self.area, data.decode("latin-1"))
            self.area = NOWHERE
        self.target = target
        return ended

    def grow_by_path(self, points: list[PathPoint]) -> None:
        """Adds a path's points, those beside its curves too."""
        across, up = [point.x for point in points], [point.y for point in points]
        low = (min(MAX_F32, *across), min(MAX_F32, *up))
        high = (max(-MAX_F32, *across), max(-MAX_F32, *up))
        self._grow(self.to_points(low) + self.to_points(high))

    def grow_by_image(self, matrix: tuple[float, ...]) -> None:
        """Adds the box of an image, turned around where its size is negative."""
        left, bottom = self.to_points((matrix[4], matrix[5]))
        right, top = f32(f32(matrix[0] * self.scale) + left), f32(f32(matrix[3] * self.scale) + bottom)
        self._grow((left, bottom, right, top))

    def grow_by_text(self, record: TextRecord) -> None:
        """Adds a text from its base line up, in all its runs."""
        if not record.text:
            return
        advance, angle = sum(record.advances or []), record.angle
        along = (math.cos(angle) * advance, math.sin(angle) * advance)
        up = (math.cos(angle + QUARTER_TURN) * record.height, math.sin(angle + QUARTER_TURN) * record.height)
        sides = [sorted((0.0, v, u, u + v)) for v, u in zip(along, up, strict=True)]
        low = (f32(f32(sides[0][0]) + record.x), f32(f32(sides[1][0]) + record.y))
        high = (f32(f32(sides[0][3]) + record.x), f32(f32(sides[1][3]) + record.y))
        self._grow(self.to_points(low) + self.to_points(high))

    def to_points(self, dots: tuple[float, float]) -> tuple[float, float]:
        """A place on the page, from dots."""
        x, y = (f32(f32(value * self.scale) + base) for value, base in zip(dots, self.origin, strict=True))
        return x, y

    def _grow(self, rect: Rect) -> None:
        if not self.target:
            return
        if not self.exact:
            left, bottom, right, top = rect
            rect = (floor(left), floor(bottom), -floor(-right), -floor(-top))
        area = self.area
        if same(area[0], area[2]) or same(area[1], area[3]):
            self.area = rect
        else:
            self.area = (*map(min, area[:2], rect[:2]), *map(max, area[2:], rect[2:]))


def floor(value: float) -> float:
    """The whole number below; an infinity stays."""
    return float(math.floor(value)) if math.isfinite(value) else value
