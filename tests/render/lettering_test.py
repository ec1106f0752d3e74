"""Compares how Poppler and MuPDF render lettering plotted as text and as outlines.

Text is drawn by the embedded fonts with the PDF's widths and matrices, outlines are the host's curves from the
installed fonts.
"""

from __future__ import annotations

import unittest
from pathlib import Path

from pictures import Picture, Tolerance, averages, compare
from pictures_test import EXAMPLES
from plotting import PlotTestCase

RESOLUTION = 144
REDUCTION = 3  # factor that the pictures are reduced by, as renderers hint and antialias text differently
SAME_GLYPHS = Tolerance(block=4, level=32, blocks=4, worst=48, mean=1.0)


class LetteringTest(PlotTestCase):
    """Embedded fonts look like the installed ones."""

    def render(self, drawing: Path, *options: str) -> dict[str, Picture]:
        """Renders a drawing with both renderers."""
        self.plotter.plot(drawing, *options)
        renderers = {"Poppler": self.plotter.poppler, "MuPDF": self.plotter.mupdf}
        return {name: averages(page(RESOLUTION), REDUCTION) for name, page in renderers.items()}

    def test_text_looks_like_outlines(self) -> None:
        """Scripts, alignments, widths and oblique angles of two drawings."""
        for drawing in (EXAMPLES / "scripts.dxf", EXAMPLES / "site_plan.dxf"):
            texts, outlines = self.render(drawing), self.render(drawing, "--text-as-geometry")
            for renderer, text in texts.items():
                with self.subTest(f"{drawing.name}, {renderer}"):
                    self.assertEqual(compare(outlines[renderer], text, SAME_GLYPHS).message, "")


if __name__ == "__main__":
    unittest.main()
