"""Plots a drawing of awkward things to scale and holds the rendering to the same drawing by plain geometry.

check_dxf.py --hdiplot PATH

The drawing is also changed, one entity at a time, and the comparison has to notice each change.
"""

from __future__ import annotations

import argparse
import math
import sys
from dataclasses import replace
from pathlib import Path
from typing import Any, Iterator

from dxf_entities import (
    MIRRORED,
    Arc,
    Block,
    Ellipse,
    Hatch,
    Insert,
    Line,
    Mark,
    Polyline,
    Solid,
    Style,
    Taper,
    drawing_text,
)
from pictures import Picture, Tolerance, compare
from plotting import PlotError, Plotter
from raster import Canvas, Paint, Point, even_odd, winding
from strokes import Cap, Join, Pen, outline

# The sheet is this wide and high, in millimetres. It is no whole number of pixels: that would be by a hair
# more or less than that number, and a renderer may round it up.
SHEET = 100
RESOLUTION = 76
PIXELS = RESOLUTION / 25.4  # a millimetre
OPTIONS = ("--paper", f"{SHEET}x{SHEET}", "--margins", "0", "--scale", "1:1")
TOLERANCE = Tolerance(block=4, level=48, blocks=5, worst=72, mean=1.3)

# An area has a rim without a width in its own colour, for which one renderer takes a pixel and another one
# next to nothing: this is not far from both.
RIM = Pen(0.7, Cap.BUTT, Join.MITER)

RED = Style((200, 30, 30), 100)
GREEN = Style((0, 120, 60), 140)
BLUE = Style((30, 50, 190), 140)
VIOLET = Style((130, 40, 150), 100)
ORANGE = Style((230, 120, 0), 100)
BLACK = Style((0, 0, 0), 100)

# A flag on a mast with a bow at its foot: no turn and no mirror leaves it as it is.
FLAG = Block(
    "FLAG",
    2 + 1j,
    [
        Line(BLACK, 2 + 1j, 2 + 15j),
        Solid(RED, [2.5 + 15j, 10 + 13j, 2.5 + 9j]),
        Arc(BLUE, 6 + 1j, 4.0, 180.0, 300.0),
        Polyline(GREEN, [(4 + 4j, 0.0), (8 + 4j, 0.0), (8 + 7j, 0.0)], width=1.2),
    ],
)
DART = Block("DART", 0j, [Solid(VIOLET, [0j, 5 - 2j, 3.5 + 0j, 5 + 3j])])

ENTITIES: list[Any] = [
    # The extents are the sheet, which is so plotted at its place.
    Solid(BLACK, [0j, 4 + 0j, 4j]),
    Solid(BLACK, [100 + 100j, 96 + 100j, 100 + 96j]),
    Insert(RED, FLAG, 12 + 78j, rotation=30.0),
    Insert(RED, FLAG, 42 + 76j, scale=(-1.5, 1.2), rotation=20.0),
    Insert(RED, FLAG, -50 + 80j, rotation=-25.0, extrusion=MIRRORED),
    Insert(RED, DART, 66 + 90j, scale=(1.2, 1.2), rotation=-15.0, columns=4, spacing=7.0),
    Polyline(BLUE, [(8 + 52j, 0.7), (22 + 52j, -0.4), (34 + 60j, 0.0), (34 + 48j, 1.0), (28 + 48j, 0.0)]),
    Hatch(
        ORANGE,
        [
            [(42 + 44j, 0.0), (64 + 44j, 0.5), (64 + 62j, 0.0), (42 + 62j, -0.3)],
            [(50 + 49j, 0.0), (60 + 49j, 0.0), (60 + 57j, 0.0), (50 + 57j, 0.0)],
        ],
    ),
    Ellipse(GREEN, 82 + 68j, 12 + 5j, 0.45, 20.0, 250.0),
    Arc(RED, 84 + 40j, 9.0, 200.0, 40.0),
    Polyline(VIOLET, [(8 + 12j, 0.0), (8 + 34j, 0.0), (22 + 24j, 0.0)], closed=True, width=3.0),
    Polyline(BLACK, [(30 + 14j, 0.0), (44 + 14j, 1.0), (44 + 24j, 0.0), (30 + 24j, 0.0)], width=2.0),
    Taper(BLUE, 32 + 34j, 62 + 30j, (1.0, 6.0)),
    Solid(RED, [60 + 6j, 80 + 10j, 76 + 22j, 62 + 20j]),
    Line(ORANGE, 70 + 28j, 96 + 14j),
]


def changed_drawings() -> Iterator[tuple[str, list[Any]]]:
    """What each change is, and the drawing with it."""
    for index, entity in enumerate(ENTITIES[2:], start=2):
        for what, changed in _changes(entity):
            yield (
                f"entity {index}, {type(entity).__name__}: {what}",
                [*ENTITIES[:index], changed, *ENTITIES[index + 1 :]],
            )


def _changes(entity: Any) -> Iterator[tuple[str, Any]]:
    pixel = complex(1, 1) / PIXELS
    if not isinstance(entity, Insert):
        yield "another colour", replace(entity, style=BLACK if entity.style is not BLACK else RED)
    if isinstance(entity, Insert):
        yield "turned the other way", replace(entity, rotation=-entity.rotation)
        yield "mirrored", replace(entity, scale=(-entity.scale[0], entity.scale[1]))
        yield "smaller", replace(entity, scale=(entity.scale[0] * 0.9, entity.scale[1] * 0.9))
        yield "moved", replace(entity, at=entity.at + pixel)
        yield "one more", replace(entity, columns=entity.columns + 1, spacing=7.0)
    elif isinstance(entity, Polyline):
        yield "bulges the other way", replace(
            entity, vertices=[(p, -bulge if bulge else 0.2) for p, bulge in entity.vertices]
        )
        yield "moved", replace(entity, vertices=[(p + pixel, bulge) for p, bulge in entity.vertices])
        yield "another width", replace(entity, width=entity.width + 1)
        yield "closed or not", replace(entity, closed=not entity.closed)
    elif isinstance(entity, Hatch):
        yield "no island", replace(entity, loops=entity.loops[:1])
        outer, island = entity.loops
        yield "bulges the other way", replace(entity, loops=[[(p, -bulge) for p, bulge in outer], island])
    elif isinstance(entity, (Arc, Ellipse)):
        yield "the other part", replace(entity, start=entity.end, end=entity.start)
        yield "moved", replace(entity, center=entity.center + pixel)
        yield "thinner", replace(entity, style=replace(entity.style, weight=50))
    elif isinstance(entity, Taper):
        yield "tapered the other way", replace(entity, widths=entity.widths[::-1])
    elif isinstance(entity, Solid):
        a, b, c, d = entity.corners
        yield "corners exchanged", replace(entity, corners=[a, b, d, c])


def _pixel(point: complex) -> Point:
    return point.real * PIXELS, (SHEET - point.imag) * PIXELS


def _paint_mark(canvas: Canvas, mark: Mark) -> None:
    lines = [[_pixel(point) for point in line] for line in mark.lines]
    if mark.width > 0:
        pen = Pen(mark.width * PIXELS)
        strokes = [ring for line in lines for ring in outline(line, pen)]
        canvas.paint(canvas.cover(strokes, winding), Paint(mark.color))
        return
    canvas.paint(canvas.cover(lines, winding if mark.pieces else even_odd), Paint(mark.color))
    if not mark.pieces:
        rim = [ring for line in lines for ring in outline(line, RIM, closed=True)]
        canvas.paint(canvas.cover(rim, winding), Paint(mark.color))


def draw(entities: list[Any]) -> Picture:
    """The drawing by plain geometry."""
    size = math.ceil(SHEET * PIXELS)
    canvas = Canvas(size, size)
    for entity in entities:
        for mark in entity.marks(lambda point: point):
            _paint_mark(canvas, mark)
    return canvas.picture()


def check(plotter: Plotter) -> tuple[list[str], int]:
    """What is wrong, and how many changes were tried."""
    blocks = [FLAG, DART]
    expected = draw(ENTITIES)
    plotter.plot_text(drawing_text(ENTITIES, blocks), ".dxf", *OPTIONS)
    plotter.check()
    messages = []
    for renderer, found in (("Poppler", plotter.poppler(RESOLUTION)), ("MuPDF", plotter.mupdf(RESOLUTION))):
        difference = compare(expected, found, TOLERANCE)
        if difference.message:
            messages.append(f"{renderer}: {difference.message}")
    count = 0
    for what, entities in changed_drawings():
        count += 1
        plotter.plot_text(drawing_text(entities, blocks), ".dxf", *OPTIONS)
        if not compare(expected, plotter.poppler(RESOLUTION), TOLERANCE).message:
            messages.append(f"the comparison does not notice a change: {what}")
    plotter.plot_text(drawing_text(ENTITIES, blocks), ".dxf", *OPTIONS[:-1], "1:1.02")
    if not compare(expected, plotter.poppler(RESOLUTION), TOLERANCE).message:
        messages.append("the comparison does not notice another scale")
    return messages, count + 1


def main() -> int:
    """Checks the drawing; the exit status is 1 when there is a complaint."""
    parser = argparse.ArgumentParser(description="Hold a plotted drawing to its geometry.")
    parser.add_argument("--hdiplot", type=Path, required=True)
    with Plotter(parser.parse_args().hdiplot) as plotter:
        try:
            messages, count = check(plotter)
        except PlotError as error:
            messages, count = [str(error)], 0
    print("\n".join([*messages, f"{count} changes tried, {len(messages)} complaints"]))
    return 1 if messages else 0


if __name__ == "__main__":
    sys.exit(main())
