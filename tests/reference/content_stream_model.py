"""The bytes of one page's content stream: an operator only where a value differs from what is set already."""

from __future__ import annotations

import json
from dataclasses import dataclass

from number_forms import f32, write_plain, write_real
from page_objects import Attributes, ImageObject, Kind, PathObject, PathPoint, TextObject, is_rectangle
from plotted_job import PageFont, PageImage

COORDINATE_PRECISION = 5
FONT_SIZE_PRECISION = 3
GraphicStateEntries = dict[str, float | str]

# The painting operator, by fill rule and by whether the path is stroked.
PAINTING = {
    ("none", False): " n",
    ("none", True): " S",
    ("even-odd", False): " f*",
    ("even-odd", True): " B*",
    ("winding", False): " f",
    ("winding", True): " B",
}
FILL_RULES = {1: "even-odd", 2: "winding"}


def coordinate(value: float) -> str:
    """A path coordinate as text."""
    return write_real(value, COORDINATE_PRECISION)


def path_text(points: list[PathPoint]) -> str:
    """The points of a path as operators, without a painting operator."""
    if is_rectangle(points):
        first, third = points[0], points[2]
        sides = (f32(third.x - first.x), f32(third.y - first.y))
        return " ".join(coordinate(value) for value in (first.x, first.y, *sides)) + " re"
    pieces = []
    index = 0
    while index < len(points):
        point = points[index]
        if point.kind is Kind.CURVE:
            # Curves come three points at a time, and only the last of the three can close.
            triple = points[index : index + 3]
            text = " ".join(f"{coordinate(p.x)} {coordinate(p.y)}" for p in triple) + " c"
            last = triple[2]
            index += 3
        else:
            text = f"{coordinate(point.x)} {coordinate(point.y)} {point.kind.value}"
            last = point
            index += 1
        if last.closes and last.kind is not Kind.MOVE:
            text += " h"
        pieces.append(text)
    return " ".join(pieces)


def same_clip(first: list[PathPoint] | None, second: list[PathPoint] | None) -> bool:
    """Whether two clips have the same points; kinds of points and close flags do not count."""
    if first is None or second is None:
        return first is second
    return [(p.x, p.y) for p in first] == [(p.x, p.y) for p in second]


@dataclass
class ContentState:
    """What the stream has set so far."""

    fill_color: tuple[int, int, int] = (0, 0, 0)
    stroke_color: tuple[int, int, int] = (0, 0, 0)
    line_width: float = 1.0
    line_cap: int = 0
    line_join: int = 0
    alpha: int = 255
    blend_mode: str = "Normal"
    dashes: tuple[float, ...] = ()
    clip: list[PathPoint] | None = None


class ContentStream:
    """The stream of one page in the making, with the page's graphic state resources."""

    def __init__(self) -> None:
        self.graphic_states: dict[str, GraphicStateEntries] = {}
        self.fonts: dict[str, PageFont] = {}
        self.layers: dict[str, int] = {}
        self.images: dict[str, PageImage] = {}
        self._group = 0
        self._names: dict[tuple[int, str], str] = {}
        self._pieces: list[str] = []
        self._state = ContentState()

    @property
    def is_empty(self) -> bool:
        """Whether no object has come."""
        return not self._pieces

    def add(self, item: PathObject | TextObject | ImageObject, group: int) -> None:
        """Writes one object of a layer's group; 0 is no layer."""
        if self.is_empty:
            self._write_head()
        self._write_clip(item.clip)
        self._write_mark(group)
        if isinstance(item, ImageObject):
            self._write_graphic_state(255, "Normal")
            self._write_image(item)
            return
        self._write_colors(item.attributes)
        self._write_line_attributes(item.attributes)
        self._write_graphic_state(item.attributes.alpha, item.attributes.blend_mode)
        if isinstance(item, TextObject):
            self._pieces.append(self._text(item))
            return
        self._pieces.append(path_text(item.points))
        rule = FILL_RULES.get(item.fill_mode, "none")
        self._pieces.append(PAINTING[rule, item.stroke] + "\n")

    def finish(self) -> str:
        """The whole stream, with its end."""
        end = "EMC\n" if self._group else ""
        end += "Q\n" if self._state.clip is not None else ""
        return "".join(self._pieces) + end + "Q\n"

    def _write_head(self) -> None:
        name = self._make_graphic_state((255, "Normal"), {"ca": 1.0, "CA": 1.0, "BM": "Normal"})
        self._pieces.append(f"q\n0 0 0 RG 0 0 0 rg 1 w 0 J 0 j\n/{name} gs ")

    def _write_clip(self, clip: list[PathPoint] | None) -> None:
        if same_clip(clip, self._state.clip):
            return
        if self._state.clip is not None:
            self._pieces.append("Q\n")
        # A level opens also when the clip goes away; nothing closes that one.
        self._pieces.append("q\n")
        self._state = ContentState(clip=clip)
        if clip is not None:
            self._pieces.append(path_text(clip) + " W n ")

    def _write_mark(self, group: int) -> None:
        """Marks what follows as a layer's. Marks and the levels of clips may cross."""
        if group == self._group:
            return
        if self._group:
            self._pieces.append("EMC\n")
        self._group = group
        if group:
            known = [name for name, number in self.layers.items() if number == group]
            name = known[0] if known else f"FXP{len(self.layers) + 1}"
            self.layers[name] = group
            self._pieces.append(f"/OC /{name} BDC\n")

    def _write_image(self, item: ImageObject) -> None:
        if item.matrix[0] == 0 or item.matrix[3] == 0:
            return
        name = f"FXX{len(self.images) + 1}"
        self.images[name] = item.image
        self._pieces.append(f"q {' '.join(map(coordinate, item.matrix))} cm /{name} Do Q\n")

    def _write_colors(self, wanted: Attributes) -> None:
        state = self._state
        if wanted.fill_color != state.fill_color:
            state.fill_color = wanted.fill_color
            self._pieces.append(self._color_text(wanted.fill_color) + " rg ")
        if wanted.stroke_color != state.stroke_color:
            state.stroke_color = wanted.stroke_color
            self._pieces.append(self._color_text(wanted.stroke_color) + " RG ")

    @staticmethod
    def _color_text(color: tuple[int, int, int]) -> str:
        return " ".join(write_plain(f32(value / 255.0)) for value in color)

    def _write_line_attributes(self, wanted: Attributes) -> None:
        state = self._state
        if wanted.line_width != state.line_width:
            state.line_width = wanted.line_width
            self._pieces.append(write_real(wanted.line_width, -1) + " w ")
        if wanted.line_cap != state.line_cap:
            state.line_cap = wanted.line_cap
            self._pieces.append(f"{wanted.line_cap} J ")
        if wanted.line_join != state.line_join:
            state.line_join = wanted.line_join
            self._pieces.append(f"{wanted.line_join} j ")
        if wanted.dashes is not None and wanted.dashes != state.dashes:
            state.dashes = wanted.dashes
            entries = "".join(write_plain(value) + " " for value in wanted.dashes)
            self._pieces.append(f"[ {entries}] 0 d\n" if wanted.dashes else "\n[] 0 d\n")

    def _write_graphic_state(self, alpha: int, blend_mode: str) -> None:
        state = self._state
        key = (alpha, blend_mode)
        if key == (state.alpha, state.blend_mode):
            return
        name = self._names.get(key)
        if name is None:
            # The dictionary is relative to the state that first needed it; it is found by absolute values.
            entries: GraphicStateEntries = {}
            if alpha != state.alpha:
                entries["ca"] = entries["CA"] = f32(alpha / 255.0)
            if blend_mode != state.blend_mode:
                entries["BM"] = blend_mode
            name = self._make_graphic_state(key, entries)
        state.alpha, state.blend_mode = key
        self._pieces.append(f"/{name} gs ")

    def _text(self, item: TextObject) -> str:
        known = [name for name, font in self.fonts.items() if font == item.font]
        name = known[0] if known else f"FXF{len(self.fonts) + 1}"
        self.fonts[name] = item.font
        return (
            f"BT {' '.join(coordinate(value) for value in item.matrix)} Tm "
            f"{write_plain(item.spacing)} Tc {write_plain(item.scale)} Tz "
            f"/{name} {write_real(item.size, FONT_SIZE_PRECISION)} Tf {item.mode} Tr "
            f"<{json.dumps(item.text)}> Tj ET\n"
        )

    def _make_graphic_state(self, key: tuple[int, str], entries: GraphicStateEntries) -> str:
        name = f"FXE{len(self.graphic_states) + 1}"
        self.graphic_states[name] = entries
        self._names[key] = name
        return name
