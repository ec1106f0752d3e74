"""Plots words of many scripts and extracts them with Poppler and MuPDF.

Every text is plotted in several ways, visible or invisible, each on a page of its own: as it is, rotated, tracked, in
a shape font.
"""

from __future__ import annotations

import json
import re
import sys
import unicodedata
import unittest
from pathlib import Path
from typing import Any, Callable, Iterable

sys.path.append(str(Path(__file__).resolve().parent.parent / "render"))

from plotting import PlotTestCase  # noqa: E402

SANS, MONO, CHINESE = "DejaVu Sans", "DejaVu Sans Mono", "WenQuanYi Zen Hei Mono"
SIZE = 40.0
# The advance of a Latin letter of MONO in ems. A Chinese character of any font is one em wide.
MONO_ADVANCE = 1233 / 2048

# Texts by font. Braces, which are not plotted, mark right-to-left words.
TEXTS = [
    ("Plan M 1:50 (Ø 12 ± 0.1 mm)", SANS),
    ("quote \" back \\ tag <b>", SANS),
    ("Ελληνικά κείμενα Ω", SANS),
    ("Чертёж Кириллица Ж", SANS),
    ("{שלום}", SANS),
    ("{שלום עולם}", SANS),
    ("Level {קומה}", SANS),
    ("{مرحبا}", SANS),
    ("{مقطع رأسي}", SANS),
    ("平面图比例", CHINESE),
    ("文泉驛 等寬", "文泉驛等寬正黑"),
    ("pump 图 one", MONO),
]
# Texts that need several fonts. Without advances their runs all start at one point, so only the words are compared.
OF_SEVERAL_FONTS = ("文泉驛 等寬", "pump 图 one")

# A text as plotted, and with right-to-left words marked as Poppler does.
PLOTTED, MARKED = str.maketrans("", "", "{}"), str.maketrans("{}", "\u202b\u202c")


def drawn(text: str) -> str:
    """A text in visual order."""
    return re.sub("{(.*?)}", lambda match: match[1][::-1], text)


def in_any_order(text: str) -> str:
    """The words of a text, sorted."""
    return " ".join(sorted(text.split()))


# The orders that each reader may return: Poppler logical order with marks, MuPDF visual order up to release 1.24 and
# logical order since.
READERS = {
    "pdftotext -enc UTF-8 {pdf} -": (lambda text: text.translate(MARKED),),
    "mutool draw -q -F text -o - {pdf}": (drawn, lambda text: text.translate(PLOTTED)),
}


def calls(marked: str, face: str) -> Iterable[dict[str, Any]]:
    """The calls that plot a text in different ways."""
    text, font = marked.translate(PLOTTED), {"lfFaceName": face}
    advances = [SIZE * (1.0 if unicodedata.east_asian_width(c) == "W" else MONO_ADVANCE) for c in text]
    form = {"textHeight": SIZE, "obliqueAngle": 0, "trackingFactor": 1, "widthFactor": 1, "advances": advances}
    call = {"call": "DevText", "font": font, "position": [300, 1500], "text": text, **form}
    turned = call | {"font": font | {"lfEscapement": 900}}
    return call, turned, call | {"trackingFactor": 1.02}, call | {"advances": None}


class ExtractionTest(PlotTestCase):
    """Other programs find the words of a plot."""

    def test_words_are_found(self) -> None:
        """Every text in every way, with both readers."""
        lines: list[dict[str, Any]] = [{"job": {"docName": "words", "devMode": {"dmPrintQuality": 300}}}]
        texts: list[tuple[str, Callable[[str], str]]] = []
        for text, face in TEXTS:
            for call in calls(text, face):
                lines += [{"call": "DevStartPage"}, call, {"call": "DevEndPage"}]
                loose = text in OF_SEVERAL_FONTS and call["advances"] is None
                texts.append((text, in_any_order if loose else str))
        self.plotter.plot_text("\n".join(map(json.dumps, lines)), ".jsonl")
        for reader, orders in READERS.items():
            output = self.plotter.run(*reader.format(pdf=self.plotter.pdf).split()).decode()
            pages = [page.strip("\n") for page in output.split("\f")[: len(texts)]]
            wrong = []
            for order in orders:
                both = [(same(order(text)), same(page)) for (text, same), page in zip(texts, pages, strict=True)]
                wrong.append([pair for pair in both if pair[0] != pair[1]])
            self.assertEqual(min(wrong, key=len), [], reader)


if __name__ == "__main__":
    unittest.main()
