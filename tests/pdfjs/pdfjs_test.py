"""Shows plots in pdf.js: pages look as they are known to, layers switch, texts, links and comments are found.

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

# Lines thinner than a pixel are drawn a pixel wide by both, but on whole pixels by Poppler alone.
# The same goes for the borders of images.
TO_POPPLER = Tolerance(block=4, level=36, blocks=10, worst=48, mean=2.8)
# pdf.js does not draw a dot of no length, which "lines" has.
PLOTS = {name: plot for name, plot in (SHEETS | CARDS).items() if name != "lines"}
# Marks of direction that Poppler writes around words from right to left.
DIRECTION_MARKS = "\u202a\u202b\u202c"


def characters(text: str) -> Counter[str]:
    """How often each character occurs; readers put blanks, and order words in two directions, in their own ways."""
    return Counter(letter for letter in text if not letter.isspace() and letter not in DIRECTION_MARKS)


def texts_on_page(seen: Seen, resolution: float) -> str:
    """Texts that begin on the page: Poppler leaves out those beside it, as a clipped view has them."""
    limits = [pixels * 72 / resolution for pixels in (seen.picture.width, seen.picture.height)]
    texts = [item["text"] for item in seen.texts if all(0 <= p <= q for p, q in zip(item["origin"], limits))]
    return "".join(texts)


class PdfJsTest(PlotTestCase):
    """A browser shows what other readers do."""

    def setUp(self) -> None:
        super().setUp()
        self.folder = self.plotter.directory / "served"
        self.folder.mkdir()

    def plot(self, name: str, source: Path, *options: str) -> str:
        """Makes a plot that can be shown."""
        self.plotter.plot(source, *options)
        shutil.copyfile(self.plotter.pdf, self.folder / f"{name}.pdf")
        return f"{name}.pdf"

    def show(self, views: list[View]) -> list[Seen]:
        """What the views show."""
        return show(os.environ["HDI_CHROMIUM"], Path(os.environ["HDI_PDFJS"]), self.folder, views)

    def test_pages(self) -> None:
        """Pages look like the kept pictures, and hold the text that Poppler finds."""
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
        """A layer that is off takes its objects along and no others."""
        file = self.plot("layers", TRACE)
        choices = [(), *((name,) for name in LAYERS), LAYERS]
        shown = self.show([View(file, 72, hidden) for hidden in choices])
        self.assertEqual(sorted(shown[0].layers), sorted(LAYERS))
        whole = bands(shown[0].picture)
        for hidden, seen in zip(choices, shown, strict=True):
            self.assertEqual(faults(whole, bands(seen.picture), hidden), [], f"without {hidden}")

    def test_annotations(self) -> None:
        """Texts, links and comments are what the calls have, where the calls have them, in points."""
        (seen,) = self.show([View(self.plot("annotations", annotations_test.TRACE), 72)])
        self.assertEqual(
            seen.notes,
            [
                ["Link", "https://a.example/gr%C3%B6%C3%9Fe?a=1", "", [20, 176, 100, 196]],
                ["Link", "http://www.example.org/", "", [20, 136, 100, 156]],
                ["Link", "file:///C:\\plans\\ç¬¬1.pdf", "", [20, 96, 100, 116]],  # UTF-8, which is left undecoded
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
