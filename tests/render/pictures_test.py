"""Holds plots, as Poppler and MuPDF render them, to the pictures in expected/.

Those are Poppler's renderings, reduced. A plot that differs is left in the working directory in the same form:
look at it before it takes the place of the old picture.
"""

from __future__ import annotations

import unittest
from dataclasses import dataclass
from pathlib import Path

from pictures import Picture, Tolerance, averages, compare, read_png, write_png
from plotting import PlotTestCase

HERE = Path(__file__).resolve().parent
EXAMPLES = HERE.parent.parent / "examples"

# Edges are all that releases of Poppler or of its libraries may smooth in another way.
POPPLER = Tolerance(block=2, level=16, blocks=4, worst=32, mean=0.25)
# MuPDF draws thin lines where they are and as faint as they are thin; Poppler puts them, and the borders of images,
# on whole pixels.
MUPDF = Tolerance(block=4, level=36, blocks=4, worst=48, mean=2.9)


@dataclass(frozen=True)
class Plot:
    """What is plotted and how, the pixels an inch that it is rendered with, and how many of them to a side
    become a pixel of the picture."""

    source: Path
    options: tuple[str, ...] = ()
    resolution: int = 144
    reduction: int = 2

    def picture(self, rendering: Picture) -> Picture:
        """A rendering as it is compared."""
        return averages(rendering, self.reduction)


def sheet(name: str, *options: str) -> Plot:
    """An example, on A4 or larger."""
    return Plot(EXAMPLES / name, options, resolution=100, reduction=4)


TO_SCALE = ("--paper", "100x100", "--margins", "0", "--scale", "1:1")
SHEETS = {
    "diagram": sheet("diagram.dxf"),
    "flange": sheet("flange.dxf"),
    "hello": sheet("hello.jsonl"),
    "scripts": sheet("scripts.dxf"),
    "site_plan": sheet("site_plan.dxf"),
    "trail_map": sheet("trail_map.dxf"),
    "trail_map_sheet": sheet("trail_map.dxf", "--layout", "Sheet"),
}
CARDS = {
    "clips": Plot(HERE / "clips.jsonl"),
    "curves": Plot(HERE / "curves.jsonl"),
    "details": Plot(HERE / "details.dxf", TO_SCALE),
    "fills": Plot(HERE / "fills.jsonl"),
    "geometry": Plot(HERE / "geometry.dxf", TO_SCALE),
    "images": Plot(HERE / "images.jsonl"),
    "landscape": Plot(HERE / "landscape.jsonl", resolution=72),
    "lines": Plot(HERE / "lines.jsonl"),
    "opacity": Plot(HERE / "opacity.jsonl"),
}


def kept_picture(name: str) -> Picture:
    """The picture that a plot must look like."""
    return read_png(HERE / "expected" / f"{name}.png")


class PicturesTest(PlotTestCase):
    """Plots look as they are known to."""

    def check(self, plots: dict[str, Plot]) -> None:
        """Plots and compares them."""
        for name, plot in plots.items():
            self.plotter.plot(plot.source, *plot.options)
            self.plotter.check()
            for renderer, render, tolerance in (
                ("Poppler", self.plotter.poppler, POPPLER),
                ("MuPDF", self.plotter.mupdf, MUPDF),
            ):
                with self.subTest(f"{name}, {renderer}"):
                    found = plot.picture(render(plot.resolution))
                    difference = compare(kept_picture(name), found, tolerance)
                    if difference.message:
                        write_png(found, Path(f"{name}-{renderer}.png"))
                    self.assertEqual(difference.message, "")

    def test_sheets(self) -> None:
        """The examples."""
        self.check(SHEETS)

    def test_cards(self) -> None:
        """What the calls of a host and the entities of a drawing look like, by theme."""
        self.check(CARDS)


if __name__ == "__main__":
    unittest.main()
