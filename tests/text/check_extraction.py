"""Plots words of many scripts and reads them back with two readers of PDF, Poppler and MuPDF.

check_extraction.py --hdiplot PATH

Every text is a page of its own, plotted to be seen and plotted only to be found: tracked text, and the text
of a shape font. What a reader gives is compared exactly. Poppler puts right-to-left words back into the order
in which they are read, and marks them; MuPDF gives them in the order in which they stand on the page.
"""

from __future__ import annotations

import argparse
import json
import os
import re
import subprocess
import sys
import tempfile
import unicodedata
from dataclasses import dataclass
from pathlib import Path
from typing import Any

SANS, MONO, CHINESE = "DejaVu Sans", "DejaVu Sans Mono", "WenQuanYi Zen Hei Mono"
SIZE = 40.0
# The advance of a Latin letter of MONO; that of a Chinese character of any font is one em.
MONO_ADVANCE = 1233 / 2048
READERS = {
    "Poppler": ["pdftotext", "-enc", "UTF-8", "{pdf}", "-"],
    "MuPDF": ["mutool", "draw", "-q", "-F", "text", "-o", "-", "{pdf}"],
}


@dataclass
class Case:
    """A text and its font. Right-to-left words stand between braces, which are not plotted. Without advances,
    the parts of a text that comes to several fonts all start at one point: then only the words count."""

    marked: str
    face: str = SANS
    several_fonts: bool = False

    @property
    def text(self) -> str:
        """The text as the host plots it."""
        return self.marked.replace("{", "").replace("}", "")

    def reading(self, reader: str) -> str:
        """What a reader gives for it."""
        if reader == "Poppler":
            return self.marked.replace("{", "\u202b").replace("}", "\u202c")
        return re.sub("{(.*?)}", lambda match: match[1][::-1], self.marked)


CASES = [
    Case("Plan M 1:50 (Ø 12 ± 0.1 mm)"),
    Case("quote \" back \\ tag <b>"),
    Case("Ελληνικά κείμενα Ω"),
    Case("Чертёж Кириллица Ж"),
    Case("{שלום}"),
    Case("{שלום עולם}"),
    Case("Level {קומה}"),
    Case("{مرحبا}"),
    Case("{مقطع رأسي}"),
    Case("平面图比例", CHINESE),
    Case("文泉驛 等寬", "文泉驛等寬正黑", several_fonts=True),
    Case("pump 图 one", MONO, several_fonts=True),
]


def advances(case: Case) -> list[float]:
    """The advances of a text's characters; those of one run may be anything."""
    return [SIZE * (1.0 if unicodedata.east_asian_width(c) == "W" else MONO_ADVANCE) for c in case.text]


def variants(case: Case) -> dict[str, dict[str, Any]]:
    """The ways in which a text is plotted."""
    call = {
        "call": "DevText",
        "font": {"lfFaceName": case.face},
        "position": [300, 1500],
        "text": case.text,
        "advances": advances(case),
        "textHeight": SIZE,
        "obliqueAngle": 0,
        "trackingFactor": 1,
        "widthFactor": 1,
    }
    return {
        "seen": call,
        "turned": call | {"font": {"lfFaceName": case.face, "lfEscapement": 900}},
        "tracked": call | {"trackingFactor": 1.02},
        "of a shape font": call | {"advances": None},
    }


def read_pages(reader: str, pdf: Path) -> list[str]:
    """What a reader gives for each page."""
    command = [part.format(pdf=pdf) for part in READERS[reader]]
    output = subprocess.run(command, capture_output=True, check=True).stdout.decode("utf-8")
    return [page.strip("\n") for page in output.split("\f")]


def main() -> int:
    """Plots all and compares; the exit status is 1 when something reads otherwise."""
    parser = argparse.ArgumentParser(description="Read plotted words back.")
    parser.add_argument("--hdiplot", type=Path, required=True)
    arguments = parser.parse_args()
    plotted = [(case, name, call) for case in CASES for name, call in variants(case).items()]
    lines: list[dict[str, Any]] = [{"job": {"docName": "words", "devMode": {"dmPrintQuality": 300}}}]
    for _, _, call in plotted:
        lines += [{"call": "DevStartPage"}, call, {"call": "DevEndPage"}]
    failed = 0
    with tempfile.TemporaryDirectory(prefix="hdi-text-") as directory:
        trace, pdf = Path(directory) / "words.jsonl", Path(directory) / "words.pdf"
        trace.write_text("".join(json.dumps(line) + "\n" for line in lines), encoding="utf-8")
        environment = dict(os.environ, HDI_USER_DIR=directory)
        command = [arguments.hdiplot.resolve(), trace, "-o", pdf]
        subprocess.run(command, check=True, env=environment, stdout=subprocess.DEVNULL)
        for reader in READERS:
            pages = read_pages(reader, pdf)
            for (case, name, _), page in zip(plotted, pages, strict=False):
                wanted = case.reading(reader)
                if case.several_fonts and name == "of a shape font":
                    page, wanted = (" ".join(sorted(text.split())) for text in (page, wanted))
                if page != wanted:
                    failed += 1
                    print(f"{reader}, {name}: {page!r} and not {wanted!r}")
    print(f"{len(plotted)} texts, {failed} readings differ")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
