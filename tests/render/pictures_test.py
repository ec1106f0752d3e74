"""Compares plots, rendered by Poppler and MuPDF, with the pictures in expected/.

The expected pictures are reduced renderings by Poppler. A plot that differs is left in the working directory in the
same form; look at it before it replaces the old picture.
"""

from __future__ import annotations

import unittest
from dataclasses import dataclass
from pathlib import Path

from pictures import Picture, Tolerance, averages, compare, read_png, write_png
from plotting import PlotTestCase

HERE = Path(__file__).resolve().parent
EXAMPLES = HERE.parent.parent / "examples"

# Releases of Poppler antialias edges differently.
POPPLER = Tolerance(block=2, level=16, blocks=4, worst=32, mean=0.25)
# Poppler snaps thin lines and image borders to whole pixels; MuPDF draws them in place, with reduced coverage.
MUPDF = Tolerance(block=4, level=36, blocks=4, worst=48, mean=2.9)


@dataclass(frozen=True)
class Plot:
    """What to plot, with which options; pixels per inch of the rendering, and the factor that it is reduced by."""

    source: Path
    options: tuple[str, ...] = ()
    resolution: int = 144
    reduction: int = 2

    def picture(self, rendering: Picture) -> Picture:
        """A rendering, reduced for the comparison."""
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
    """The expected picture of a plot."""
    return read_png(HERE / "expected" / f"{name}.png")


class PicturesTest(PlotTestCase):
    """Plots look like the expected pictures."""

    def check(self, plots: dict[str, Plot]) -> None:
        """Plots, renders and compares."""
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
        """Test cards of plot calls and entities, by subject."""
        self.check(CARDS)


if __name__ == "__main__":
    unittest.main()
