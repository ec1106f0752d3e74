"""Plots in pdf.js: pages look as expected, layers switch, texts, links and comments are found.

HDI_CHROMIUM names the browser, HDI_PDFJS the folder of pdf.js.
"""

from __future__ import annotations

import os
import shutil
import sys
import unittest
from collections import Counter
from pathlib import Path

sys.path.append(str(Path(__file__).resolve().parent.parent / "render"))

import annotations_test  # noqa: E402
from layers_test import LAYERS, TRACE, bands, faults  # noqa: E402
from pictures import Tolerance, compare  # noqa: E402
from pictures_test import CARDS, SHEETS, kept_picture  # noqa: E402
from plotting import PlotTestCase  # noqa: E402
from viewer import Seen, View, show  # noqa: E402

# Both draw thinner lines a pixel wide, but only Poppler snaps them, and the borders of images, to whole pixels.
TO_POPPLER = Tolerance(block=4, level=36, blocks=10, worst=48, mean=2.8)
# pdf.js does not draw a zero-length dash with round caps, which "lines" has.
PLOTS = {name: plot for name, plot in (SHEETS | CARDS).items() if name != "lines"}
# Direction marks that Poppler writes around right-to-left words.
DIRECTION_MARKS = "\u202a\u202b\u202c"


def characters(text: str) -> Counter[str]:
    """How often each character occurs: readers differ in blanks and in the order of bidirectional text."""
    return Counter(letter for letter in text if not letter.isspace() and letter not in DIRECTION_MARKS)


def texts_on_page(seen: Seen, resolution: float) -> str:
    """Texts that begin on the page. Poppler omits those outside, which clipped views have."""
    limits = [pixels * 72 / resolution for pixels in (seen.picture.width, seen.picture.height)]
    texts = [item["text"] for item in seen.texts if all(0 <= p <= q for p, q in zip(item["origin"], limits))]
    return "".join(texts)


class PdfJsTest(PlotTestCase):
    """A browser shows the same as other readers."""

    def setUp(self) -> None:
        super().setUp()
        self.folder = self.plotter.directory / "served"
        self.folder.mkdir()

    def plot(self, name: str, source: Path, *options: str) -> str:
        """Plots to a file in the served folder and returns its name."""
        self.plotter.plot(source, *options)
        shutil.copyfile(self.plotter.pdf, self.folder / f"{name}.pdf")
        return f"{name}.pdf"

    def show(self, views: list[View]) -> list[Seen]:
        """Shows the views."""
        return show(os.environ["HDI_CHROMIUM"], Path(os.environ["HDI_PDFJS"]), self.folder, views)

    def test_pages(self) -> None:
        """Pages look like the expected pictures and contain the text that Poppler finds."""
        views, texts = [], []
        for name, plot in PLOTS.items():
            views.append(View(self.plot(name, plot.source, *plot.options), plot.resolution))
            texts.append(self.plotter.run("pdftotext", "-raw", str(self.plotter.pdf), "-").decode())
        for (name, plot), text, seen in zip(PLOTS.items(), texts, self.show(views), strict=True):
            with self.subTest(name):
                difference = compare(kept_picture(name), plot.picture(seen.picture), TO_POPPLER)
                self.assertEqual(difference.message, "")
                self.assertEqual(characters(texts_on_page(seen, plot.resolution)), characters(text))

    def test_layers(self) -> None:
        """A layer that is off hides its own objects only."""
        file = self.plot("layers", TRACE)
        choices = [(), *((name,) for name in LAYERS), LAYERS]
        shown = self.show([View(file, 72, hidden) for hidden in choices])
        self.assertEqual(sorted(shown[0].layers), sorted(LAYERS))
        whole = bands(shown[0].picture)
        for hidden, seen in zip(choices, shown, strict=True):
            self.assertEqual(faults(whole, bands(seen.picture), hidden), [], f"without {hidden}")

    def test_annotations(self) -> None:
        """Texts, links and comments match the calls, with positions in points."""
        (seen,) = self.show([View(self.plot("annotations", annotations_test.TRACE), 72)])
        self.assertEqual(
            seen.notes,
            [
                ["Link", "https://a.example/gr%C3%B6%C3%9Fe?a=1", "", [20, 176, 100, 196]],
                ["Link", "http://www.example.org/", "", [20, 136, 100, 156]],
                ["Link", "file:///C:\\plans\\ç¬¬1.pdf", "", [20, 96, 100, 116]],  # UTF-8, not decoded
                ["Square", None, "図面 – 1:50 😀", [120, 156, 200, 196]],
                ["Square", None, "Tür 5", [120, 116, 160, 136]],
            ],
        )
        self.assertEqual(
            [(item["text"], [round(place) for place in item["origin"]]) for item in seen.texts if item["text"]],
            [("Maß 5", [120, 76]), ("Ωμέγα", [120, 56]), ("図面", [120, 26])],
        )


if __name__ == "__main__":
    unittest.main()
