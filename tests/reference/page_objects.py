"""The objects of a page: paths, texts and images, with the attributes and the clip that each carries."""

from __future__ import annotations

from dataclasses import dataclass
from enum import Enum

from plotted_job import PageFont, PageImage


class Kind(Enum):
    """What a path point is; a curve is three points of the kind CURVE in a row."""

    MOVE = "m"
    LINE = "l"
    CURVE = "c"


@dataclass
class PathPoint:
    """A point in dots; `closes` marks the end of a closed subpath."""

    x: float
    y: float
    kind: Kind
    closes: bool = False


@dataclass(frozen=True)
class Attributes:
    """The graphic state that is stamped on an object when it is finished; lengths in dots. None as dashes
    leaves those of the stream."""

    stroke_color: tuple[int, int, int]
    fill_color: tuple[int, int, int]
    line_width: float
    line_cap: int
    line_join: int
    dashes: tuple[float, ...] | None
    alpha: int
    blend_mode: str


@dataclass
class PathObject:
    """A finished path: fill mode 1 is even-odd, 2 winding, anything else no fill."""

    points: list[PathPoint]
    attributes: Attributes
    clip: list[PathPoint] | None
    fill_mode: int
    stroke: bool


@dataclass
class TextObject:
    """A run of a text; the spacing is in dots, the scale in percent."""

    matrix: tuple[float, ...]
    font: PageFont
    size: float
    spacing: float
    scale: float
    mode: int
    text: str
    attributes: Attributes
    clip: list[PathPoint] | None


@dataclass
class ImageObject:
    """An image and its place. Nothing sets its opacity or its blend mode."""

    matrix: tuple[float, ...]
    image: PageImage
    clip: list[PathPoint] | None


def is_rectangle(points: list[PathPoint]) -> bool:
    """Whether a path is an upright rectangle that one `re` can draw."""
    if len(points) == 5:
        if (points[4].x, points[4].y) != (points[0].x, points[0].y):
            return False
    elif len(points) != 4 or not points[3].closes:
        return False
    corners = [(point.x, point.y) for point in points[:4]]
    if corners[0] == corners[2] or corners[1] == corners[3]:
        return False
    sides = zip([3, 0, 1, 2], [0, 1, 2, 3], strict=True)
    upright = all(corners[a][0] == corners[b][0] or corners[a][1] == corners[b][1] for a, b in sides)
    return upright and all(point.kind is Kind.LINE for point in points[1:4])
