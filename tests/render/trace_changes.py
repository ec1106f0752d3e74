"""Changes to a trace that everyone would see on the plot, one at a time.

A comparison of pictures is worth something when it finds each of them.
"""

from __future__ import annotations

import copy
import json
from typing import Any, Iterator

Line = dict[str, Any]

DRAWING = ("DevPolyline", "DevPolyBezier", "DevArc", "DevPolygon", "DevPolyPolygon")
COORDINATES = ("points", "polygons", "center")
PAINTING = ("DevFillPath", "DevStrokeFillPath")
CAP_BITS, LINE_STYLE_BITS = 0xF00, 0xF
FLAT, ROUND, SOLID = 0x200, 0, 0
# The thinnest line, in dots, whose ends can be told apart.
THICK = 60


def changed_traces(text: str, shift: float) -> Iterator[tuple[str, str]]:
    """What each change is, and the changed trace; `shift` is what shapes are moved by, in dots."""
    lines = [json.loads(line) for line in text.splitlines() if line.strip()]
    for index, line in enumerate(lines):
        for what, replacement in _changes(lines, index, shift):
            changed = [*lines[:index], *([replacement] if replacement else []), *lines[index + 1 :]]
            yield f"line {index + 1}, {line.get('call', 'job')}: {what}", _text(changed)


def _text(lines: list[Line]) -> str:
    return "".join(json.dumps(line) + "\n" for line in lines)


def _changes(lines: list[Line], index: int, shift: float) -> Iterator[tuple[str, Line | None]]:
    """The changes of one line; None takes it out."""
    line = lines[index]
    name = line.get("call", "job")
    if name == "job" and "backgroundColor" in line["job"]["devMode"]:
        other = copy.deepcopy(line)
        del other["job"]["devMode"]["backgroundColor"]
        yield "no background", other
    elif name == "DevSetFillMode":
        yield "the other rule", {**line, "mode": 3 - line["mode"]}
    elif name == "DevSetAlpha":
        yield "another opacity", {**line, "alpha": (line["alpha"] + 100) % 256}
    elif name == "DevSetRasterOp":
        yield "the other operation", {**line, "code": 22 - line["code"]}
    elif name == "DevSetClip":
        if any(earlier.get("call") == name for earlier in lines[:index]):  # the first one cuts nothing
            yield "no such clip", None
            if len(line["polygons"][0]) > 2:
                yield "moved", _moved(line, shift)
    elif name in ("DevSetPen", "DevSetBrush"):
        yield from _changes_of_tool(line, _is_part_of_area(lines, index))
    elif name in PAINTING and lines[index - 1]["call"] != "DevEndPath":
        yield "not painted", {"call": "DevEndPath"}
    elif name == "DevPolyPolygon" or any(key in line for key in COORDINATES):
        in_one_piece = lines[index + 1]["call"] in PAINTING
        is_area = _is_part_of_area(lines, index)
        if in_one_piece or not is_area:
            yield "moved", _moved(line, shift)
        if not is_area:
            yield "not drawn", None


def _is_part_of_area(lines: list[Line], index: int) -> bool:
    """Whether what is drawn at a line or next behind it is filled in the end."""
    calls = [line["call"] for line in lines[index:]]
    drawn = next(number for number, call in enumerate(calls) if call in DRAWING)
    following = next(call for call in calls[drawn:] if call not in DRAWING)
    return following in (*PAINTING, "DevEndPath")


def _changes_of_tool(line: Line, for_area: bool) -> Iterator[tuple[str, Line]]:
    color = line["color"]
    if line["call"] == "DevSetBrush":
        yield "another colour", {**line, "color": [(color[0] + 90) % 256, *color[1:]]}
        return
    if line["width"] == 1:  # no more than the rim of an area, if at all
        return
    yield "another colour", {**line, "color": [(color[0] + 90) % 256, *color[1:]]}
    yield "half the width", {**line, "width": line["width"] // 2}
    style = line["style"]
    cap = FLAT if style & CAP_BITS != FLAT else ROUND
    if line["width"] >= THICK and not for_area:
        yield "other caps", {**line, "style": style & ~CAP_BITS | cap}
    if style & LINE_STYLE_BITS != SOLID:
        yield "no dashes", {**line, "style": style & ~LINE_STYLE_BITS}


def _moved(line: Line, shift: float) -> Line:
    moved = copy.deepcopy(line)
    for key in COORDINATES:
        if key in moved:
            moved[key] = _shifted(moved[key], shift)
    return moved


def _shifted(value: Any, shift: float) -> Any:
    """A point, or any list of points, moved across and down."""
    if isinstance(value[0], (int, float)):
        return [value[0] + shift, value[1] + shift]
    return [_shifted(part, shift) for part in value]
