"""Draws a plot trace as a picture, straight from its calls: what a host means by them, in pixels."""

from __future__ import annotations

import json
import math
from typing import Any

from pictures import Picture
from raster import Canvas, Color, Coverage, Paint, Point, even_odd, winding
from strokes import Cap, Join, Pen, flatten_curve, outline

TENTHS_PER_INCH = 254.0
POINTS_PER_INCH = 72.0
LANDSCAPE = 2
NO_BACKGROUND = 0xFFFFFFFF
MASK_PEN = 9
USER_STYLE = 7
# A4 with its margins, in tenths of a millimetre: left, top, right, bottom.
A4 = ((2100.0, 2970.0), (50.0, 170.0, 50.0, 170.0))
# Renderers draw a line without a width as thin as they can: one pixel.
HAIRLINE = Pen(1.0, Cap.BUTT, Join.MITER)
CAPS = {0x000: Cap.ROUND, 0x100: Cap.SQUARE}
JOINS = {0x0000: Join.ROUND, 0x1000: Join.BEVEL}
# Dashes and gaps of the fixed line styles, in points.
FIXED_DASHES = {1: (15.0, 10.0), 2: (0.5, 9.5), 3: (13.0, 6.0, 0.5, 5.5)}
ARC_STEPS = 90

Lines = list[list[Point]]


def draw_trace(text: str, resolution: float) -> Picture:
    """The picture of a trace of one page, at so many pixels an inch."""
    lines = [json.loads(line) for line in text.splitlines() if line.strip()]
    job = lines[0].get("job", {})
    sheet = _Sheet(job, resolution)
    for call in lines[1:]:
        name = call.pop("call")
        getattr(sheet, "_" + name)(**call)
    return sheet.canvas.picture()


class _Sheet:
    """The page with the state that the calls set; points in it are pixels already."""

    def __init__(self, job: dict[str, Any], resolution: float) -> None:
        settings = job["devMode"]
        (width, height), (left, top, *_) = _paper(job)
        pixels_per_tenth = resolution / TENTHS_PER_INCH
        self.canvas = Canvas(math.ceil(width * pixels_per_tenth), math.ceil(height * pixels_per_tenth))
        self._dot = resolution / settings["dmPrintQuality"]
        self._point = resolution / POINTS_PER_INCH
        self._left, self._top = left * pixels_per_tenth, top * pixels_per_tenth
        self._pen, self._pen_color = HAIRLINE, (0, 0, 0)
        self._brush: Color = (0, 0, 0)
        self._opacity = 1.0
        self._masks = self._darken = False
        self._fill_mode = 1
        self._clip: Coverage | None = None
        self._clip_calls = 0
        self._path: Lines = []
        self._pending = False  # whether the path is to be stroked when something else comes
        background = settings.get("backgroundColor", NO_BACKGROUND)
        if background != NO_BACKGROUND:
            color = (background & 255, background >> 8 & 255, background >> 16 & 255)
            self._paint(
                self.canvas.cover([[(0, 0), (10000, 0), (10000, 10000), (0, 10000)]]), Paint(color), page=True
            )

    # State.

    def _DevStartPage(self) -> None:
        self._path = []

    def _DevEndPage(self) -> None:
        self._stroke()

    def _DevSetPen(self, style: int, width: int, color: list[int], entries: tuple[int, ...] = ()) -> None:
        self._stroke()
        if style & 0xF == USER_STYLE:
            dashes = tuple(entry * self._dot for entry in entries)
        else:
            dashes = tuple(length * self._point for length in FIXED_DASHES.get(style & 0xF, ()))
        cap = CAPS.get(style & 0xF00, Cap.BUTT)
        join = JOINS.get(style & 0xF000, Join.MITER)
        self._pen = Pen(width * self._dot, cap, join, dashes)
        self._pen_color = _color(color)
        self._darken = self._masks

    def _DevSetBrush(self, color: list[int]) -> None:
        self._stroke()
        self._brush = _color(color)
        self._darken = self._masks

    def _DevSetAlpha(self, alpha: int) -> None:
        self._stroke()
        self._opacity = alpha / 255

    def _DevSetRasterOp(self, code: int) -> None:
        self._stroke()
        self._masks = code == MASK_PEN

    def _DevSetFillMode(self, mode: int) -> None:
        self._fill_mode = mode

    def _DevSetClip(self, polygons: Lines) -> None:
        self._stroke()
        self._clip_calls += 1
        if self._clip_calls == 1:
            return  # A page's first clip is its frame and cuts nothing.
        rings = [self._mapped(polygon) for polygon in polygons if len(polygon) > 1]
        self._clip = self.canvas.cover(rings, winding) if rings else None

    # Geometry.

    def _DevPolyline(self, points: list[Point]) -> None:
        self._extend(self._mapped(points))

    def _DevPolyBezier(self, points: list[Point]) -> None:
        mapped = self._mapped(points)
        line = mapped[:1]
        for last in range(3, len(mapped), 3):
            line += flatten_curve(line[-1], *mapped[last - 2 : last + 1])
        self._extend(line)

    def _DevArc(self, center: Point, a: float, b: float, c: float, d: float, e: float) -> None:
        line = []
        for step in range(ARC_STEPS + 1):
            angle = e + (d - e) * step / ARC_STEPS
            x, y = a * math.cos(angle), b * math.sin(angle)
            # Angles run against the clock, while the host's Y points down.
            line.append(
                (center[0] + x * math.cos(c) - y * math.sin(c), center[1] - x * math.sin(c) - y * math.cos(c))
            )
        self._extend(self._mapped(line))

    def _DevPolygon(self, points: list[Point]) -> None:
        self._stroke()
        self._path.append(self._mapped(points))
        self._pending = False

    def _DevPolyPolygon(self, polygons: Lines) -> None:
        self._stroke()
        self._path += [self._mapped(polygon) for polygon in polygons]
        self._DevFillPath()

    def _DevBeginPath(self) -> None:
        self._stroke()

    def _DevEndPath(self) -> None:
        self._pending = False

    def _DevFillPath(self) -> None:
        self._fill()
        # An opaque even-odd area has a thin rim in the pen's colour.
        if self._fill_mode == 1 and self._opacity == 1.0:
            self._stroke_with(HAIRLINE, closed=True)
        self._path, self._pending = [], False

    def _DevStrokeFillPath(self) -> None:
        self._fill()
        self._stroke_with(self._pen, closed=True)
        self._path, self._pending = [], False

    # The path.

    def _mapped(self, points: list[Point]) -> list[Point]:
        """The host's points in pixels."""
        return [(self._left + x * self._dot, self._top + y * self._dot) for x, y in points]

    def _extend(self, line: list[Point]) -> None:
        """Lines that meet end to end are one, so that they get a join and not two caps."""
        current = self._path[-1] if self._path and self._pending else None
        if current and _same(current[-1], line[-1]):
            current += line[-2::-1]
        elif current and _same(current[-1], line[0]):
            current += line[1:]
        else:
            self._path.append(line)
        self._pending = True

    def _stroke(self) -> None:
        if self._pending:
            self._stroke_with(self._pen, closed=False)
            self._path = []
        self._pending = False

    def _stroke_with(self, pen: Pen, closed: bool) -> None:
        rings = []
        for number, line in enumerate(self._path, start=1):
            # Of several outlines only the last one is closed by a fill.
            rings += outline(line, pen, closed=closed and number == len(self._path))
        self._paint(self.canvas.cover(rings, winding), Paint(self._pen_color, self._opacity, self._darken))

    def _fill(self) -> None:
        coverage = self.canvas.cover(self._path, winding if self._fill_mode == 2 else even_odd)
        self._paint(coverage, Paint(self._brush, self._opacity, self._darken))

    def _paint(self, coverage: Coverage, paint: Paint, page: bool = False) -> None:
        self.canvas.paint(coverage, paint, None if page else self._clip)


def _paper(job: dict[str, Any]) -> tuple[tuple[float, float], tuple[float, ...]]:
    """The size and the margins of the sheet as it is seen."""
    if "customPaper" in job:
        paper = job["customPaper"]
        size, margins = (paper["width"], paper["height"]), (paper["left"], paper["top"])
        return size, margins
    size, margins = A4
    if job["devMode"].get("dmOrientation") == LANDSCAPE:
        return size[::-1], (*margins[1:], margins[0])
    return size, margins


def _color(color: list[int]) -> Color:
    red, green, blue = color
    return red, green, blue


def _same(one: Point, other: Point) -> bool:
    return math.dist(one, other) < 1e-6
