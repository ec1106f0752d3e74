"""From the host's calls to the list of commands: mapping of points, stitching of paths and deferred strokes.

A command is a tuple: its name and its operands. Coordinates in commands are f32, in dots, with Y up.
"""

from __future__ import annotations

import math
import re
from typing import Any, Callable

from number_forms import MAX_F64, f32, round_away, same
from settings_record import SettingsRecord
from text_model import TextRecord, units, visual_order
from trace_file import Call

Command = tuple[Any, ...]
Point = list[float]

# The current point when no path is pending.
SENTINEL = MAX_F64

GEOMETRIC_PEN = 0x10000
USER_STYLE = 7
MASK_PEN = 9
# Dashes and gaps of the fixed line styles, in points.
FIXED_DASHES: dict[int, list[float]] = {1: [15.0, 10.0], 2: [0.5, 9.5], 3: [13.0, 6.0, 0.5, 5.5]}
CAP_CODES = {0x000: 1, 0x100: 2}
JOIN_CODES = {0x0000: 1, 0x1000: 2}

# What stands before a link's target, by the target's head.
PREFIXES = {"[A-Za-z]:": "file:///", "[Ww]{3}[.]": "http://"}


def color_bytes(color: list[int]) -> tuple[int, int, int]:
    """A colour of a call line: red, green and blue."""
    red, green, blue = color
    return red, green, blue


class Recorder:
    """The recording side of one job; `commands` grows with every call."""

    def __init__(self, settings: SettingsRecord) -> None:
        self.settings = settings
        self.commands: list[Command] = []
        self.last_pen_width = 1.0
        self.line_scale = 1.0
        self._layer = ""
        self._printable_height = 0.0
        self._page_counter = 0
        self._fill_mode = 1
        self._merge = 0
        self._page_clip_seen = False
        self._lone_move = False
        self._x = SENTINEL
        self._y = SENTINEL

    def play(self, call: Call) -> int:
        """Makes one call and gives its result."""
        entry: Callable[..., int | None] = getattr(self, "_" + call.name)
        result = entry(**call.arguments)
        return 1 if result is None else result

    # State entries.

    def _DevGetCaps(self, index: int) -> int:
        return self.settings.capability(index)

    def _DevStartPage(self, devMode: dict[str, int] | None = None) -> None:
        settings = self.settings
        if devMode is not None:
            settings.start_page_with(devMode)
        names = ("paperWidth", "paperHeight", "marginLeft", "marginBottom")
        width, height, left, bottom = (settings[name] * 72.0 / 254.0 for name in names)
        self._page_counter += 1
        self._add("start page", self._page_counter, width, height, settings.background, left, bottom)
        self._printable_height = settings.printable_height()
        self._page_clip_seen = False
        self._reset_path()

    def _DevEndPage(self) -> None:
        self._flush()
        self._add("end page")

    def _DevSetPen(self, style: int, width: int, color: list[int], entries: list[int] | None = None) -> None:
        self._flush()
        pen_width = f32(float(width)) if style & 0xF0000 == GEOMETRIC_PEN else 1.0
        self.last_pen_width = pen_width
        cap = CAP_CODES.get(style & 0xF00, 0)
        join = JOIN_CODES.get(style & 0xF000, 0)
        dashes = self._dashes(style & 0xF, entries or [])
        self._add("set pen", pen_width, cap, join, color_bytes(color), self._merge, dashes)

    def _dashes(self, line_style: int, entries: list[int]) -> list[float]:
        if line_style != USER_STYLE:
            return FIXED_DASHES.get(line_style, [])
        return [f32(entry * 72.0 / self.settings.dots_per_inch) for entry in entries]

    def _DevSetBrush(self, color: list[int], style: int = 0, hatch: int = 0) -> None:
        self._flush()
        self._add("set brush", color_bytes(color), self._merge)

    def _DevSetAlpha(self, alpha: int) -> None:
        self._flush()
        self._add("set alpha", alpha)

    def _DevSetRasterOp(self, code: int) -> None:
        self._flush()
        self._merge = 1 if code == MASK_PEN else 0

    def _DevSetFillMode(self, mode: int) -> None:
        self._fill_mode = mode

    def _DevSetLineScale(self, scale: float) -> None:
        self.line_scale = scale

    # Geometry entries.

    def _DevBeginPath(self) -> None:
        self._flush()

    def _DevEndPath(self) -> None:
        self._reset_path()

    def _DevPolyline(self, points: list[Point]) -> None:
        if not points:
            return
        if len(points) >= 2 and self._ends_at_current(points[-1]):
            for point in reversed(points[:-1]):
                self._add_line(*self._mapped(point))
            return
        self._add_move(*self._mapped(points[0]), exact=False)
        for point in points[1:]:
            self._add_line(*self._mapped(point))

    def _DevPolygon(self, points: list[Point]) -> None:
        self._flush()
        self._DevPolyline(points)
        self._reset_path()

    def _DevPolyPolygon(self, polygons: list[list[Point]]) -> None:
        self._flush()
        for polygon in polygons:
            self._DevPolyline(polygon)
        self._reset_path()
        self._DevFillPath()

    def _DevPolyBezier(self, points: list[Point]) -> None:
        if len(points) < 4:
            return
        self._add_move(*self._mapped(points[0]), exact=True)
        for last in range(3, len(points), 3):
            self._add_curve(*(self._mapped(point) for point in points[last - 2 : last + 1]))

    def _DevFillPath(self) -> None:
        if self._fill_mode != 0:
            self._add("fill", self._fill_mode)

    def _DevStrokeFillPath(self) -> None:
        if self._fill_mode != 0:
            self._add("fill and stroke", self._fill_mode)

    def _DevSetClip(self, polygons: list[list[Point]] | None, apply: int = 1) -> None:
        self._flush()
        if not polygons:
            return
        if not self._page_clip_seen:
            # A page's first clip is at most stored as a rectangle, which nothing applies.
            self._page_clip_seen = True
            return
        for polygon in polygons:
            if len(polygon) >= 2:
                self._add_move(*self._mapped(polygon[0]), exact=False)
                for point in polygon[1:]:
                    self._add_line(*self._mapped(point))
        if apply != 0:
            self._add("clip path")
        self._forget_point()

    def _DevText(
        self,
        font: dict[str, Any],
        position: Point,
        text: str,
        advances: list[float] | None,
        textHeight: float,
        obliqueAngle: float,
        trackingFactor: float,
        widthFactor: float,
    ) -> int:
        self._flush()
        if self.settings["textAsGeometry"]:
            return 0
        drawn, drawn_advances = visual_order(units(text), advances or [])
        record = TextRecord(
            font,
            *self._mapped(position),
            drawn,
            None if advances is None else drawn_advances,
            textHeight,
            obliqueAngle,
            trackingFactor,
            widthFactor,
        )
        self._add("text", record)
        return int(record.visible)

    # Images, links, layers and comments.

    def _DevBitmap(
        self, image: dict[str, Any], originX: float, originY: float, scaleX: float, scaleY: float
    ) -> None:
        self._flush()
        left, right = float(originX), originX + image["width"] * scaleX
        bottom = self._printable_height - (originY + abs(image["height"]) * scaleY)
        top = self._printable_height - originY
        place = (left, bottom, right - left, top - bottom)
        self._add("image", image, *(place if self.settings["keepFractions"] else map(round_away, place)))

    def _DevBeginLink(self, target: str) -> None:
        self._flush()
        prefix = next((prefix for head, prefix in PREFIXES.items() if re.match(head, target)), "")
        self._add_link(prefix + units(target))

    def _DevEndLink(self) -> None:
        self._flush()
        self._add_link("")

    def _add_link(self, target: str) -> None:
        if self.settings["linksEnabled"]:
            self._add("link target", target)

    def _DevSetLayer(self, name: str) -> int:
        self._flush()
        if not self.settings["layersEnabled"] or not name:
            return 0
        if units(name) != self._layer:
            self._layer = units(name)
            self._add("set layer", self._layer)
        return 1

    def _DevShxComment(self, text: str, rect: list[int], flags: int) -> int:
        self._flush()
        if not text:
            return 0
        across = sorted(math.trunc(float(x)) for x in rect[:2])
        up = sorted(math.trunc(self._printable_height - float(y)) for y in rect[2:])
        self._add("comment", units(text), across[0], up[0], across[1], up[1], flags)
        return 1

    # The pending path.

    def _add(self, *command: Any) -> None:
        self.commands.append(command)

    def _mapped(self, point: Point) -> tuple[float, float]:
        """A host's point as it goes into the list."""
        return f32(float(point[0])), f32(self._printable_height - float(point[1]))

    def _ends_at_current(self, point: Point) -> bool:
        """Whether a polyline's last point, in f64 throughout, touches the current point."""
        x, y = float(point[0]), self._printable_height - float(point[1])
        if not self.settings["keepFractions"]:
            x, y = round_away(x), round_away(y)
        return self._is_current(x, y)

    def _is_current(self, x: float, y: float) -> bool:
        return same(x, self._x) and same(y, self._y)

    def _whole_dots(self, x: float, y: float) -> tuple[float, float]:
        if self.settings["keepFractions"]:
            return x, y
        return f32(round_away(x)), f32(round_away(y))

    def _add_move(self, x: float, y: float, exact: bool) -> None:
        if not exact:
            x, y = self._whole_dots(x, y)
        if self._is_current(x, y):
            return
        if self._lone_move:
            self._add("line", f32(self._x), f32(self._y))
        self._lone_move = True
        self._x, self._y = x, y
        self._add("move", x, y)

    def _add_line(self, x: float, y: float) -> None:
        x, y = self._whole_dots(x, y)
        if self._is_current(x, y):
            return
        self._x, self._y = x, y
        self._lone_move = False
        self._add("line", x, y)

    def _add_curve(self, *points: tuple[float, float]) -> None:
        if all(self._is_current(*point) for point in points):
            return
        self._lone_move = False
        self._x, self._y = points[-1]
        self._add("curve", *points)

    def _flush(self) -> None:
        """Strokes the pending path; a lone move stays marked as one."""
        if self._x == SENTINEL and self._y == SENTINEL:
            return
        if self._lone_move:
            self._add("line", f32(self._x), f32(self._y))
        self._add("stroke")
        self._forget_point()

    def _forget_point(self) -> None:
        self._x = self._y = SENTINEL

    def _reset_path(self) -> None:
        self._lone_move = False
        self._forget_point()
