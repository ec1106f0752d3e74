"""Reads back links, comments and the measure of a plot."""

from __future__ import annotations

import json
import math
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from plotting import PlotTestCase

POINTS_A_MILLIMETRE = 72 / 25.4
TRACE = Path(__file__).resolve().parent / "annotations.jsonl"

READ_ANNOTATIONS = """
var file = (Document.openDocument || function (name) { return new Document(name); })(scriptArgs[0]);
var page = file.loadPage(0);
page.getAnnotations().forEach(function (note) {
  print(JSON.stringify([note.getContents(), note.getRect().map(Math.round)]));
});
"""

# A drawing with one line.
LINE = "0 SECTION 2 ENTITIES 0 LINE 8 0 10 3 20 7 11 {x:g} 21 {y:g} 0 ENDSEC 0 EOF"


class AnnotationsTest(PlotTestCase):
    """Other programs find what was plotted."""

    def test_links_and_comments(self) -> None:
        """Links with Poppler, and comments, which none of its tools prints, with MuPDF."""
        self.plotter.plot(TRACE)
        self.plotter.check()
        listed = self.plotter.run("pdfinfo", "-url", str(self.plotter.pdf)).decode().splitlines()[1:]
        self.assertEqual(
            [line.split(maxsplit=2)[2] for line in listed],
            ["https://a.example/größe?a=1", "http://www.example.org", "file:///C:\\plans\\第1.pdf"],
        )
        script = self.plotter.directory / "annotations.js"
        script.write_text(READ_ANNOTATIONS, encoding="utf-8")
        found = self.plotter.run("mutool", "run", str(script), str(self.plotter.pdf)).splitlines()
        # Left, top, right and bottom in points, ten dots of the trace each.
        self.assertEqual(
            [json.loads(line) for line in found],
            [["図面 – 1:50 😀", [120, 20, 200, 60]], ["Tür 5", [120, 80, 160, 100]]],
        )

    def test_lengths(self) -> None:
        """A length of 100 units measures 100 at any scale, and is 100 mm on paper at 1:1."""
        for scale in (1, 50):
            drawing = LINE.format(x=3 + 60 * scale, y=7 + 80 * scale).replace(" ", "\n")
            self.plotter.plot_text(drawing, ".dxf", "--scale", f"1:{scale}", "--keep-fractions")
            measure = float(self.plotter.run("mutool", "show", str(self.plotter.pdf), "pages/1/VP/1/Measure/X/1/C"))
            drawn = self.plotter.run("mutool", "draw", "-q", "-F", "trace", str(self.plotter.pdf))
            (path,) = ElementTree.fromstring(drawn).iter("stroke_path")
            a, b, c, d, *_ = map(float, path.get("transform").split())
            (x, y), (u, v) = ((float(node.get("x")), float(node.get("y"))) for node in path)
            length = math.hypot(a * (u - x) + c * (v - y), b * (u - x) + d * (v - y))
            self.assertAlmostEqual(length / POINTS_A_MILLIMETRE, 100, 3)
            self.assertAlmostEqual(length * measure / scale, 100, 3)


if __name__ == "__main__":
    unittest.main()
