"""Text records: right-to-left order, the division into runs as a plot shows it, and the matrix of each run.

Text is a string of 16-bit units, each a character of its own: the halves of a surrogate pair are two of them.
Which fonts a host divides a text into is the host's affair. The reference takes the runs from the plot that it
is held against, and accepts them only where they can be right; everything else about them it computes.
"""

from __future__ import annotations

import json
import math
import re
import unicodedata
from dataclasses import dataclass, field
from typing import Any, NamedTuple

from number_forms import f32, round_away
from plotted_job import PageFont, parse_job_text

# Stands for a character whose code is 0, the glyph of missing characters.
NO_GLYPH = "\ufffd"
RIGHT_TO_LEFT = ((0x0590, 0x08FF), (0xFB50, 0xFDFF), (0xFE70, 0xFEFF))
# The families of the tests that have slanted faces. An upright face of these is asked for as such, for characters
# that the slanted one lacks. The others are sheared when italics are asked for, by the tangent below.
SLANTED_FAMILIES = ("DejaVu", "Liberation")
ITALIC_SKEW = 0.33916231989860535
RADIANS_PER_TENTH = 0.0017453292519943296

SHOWN_TEXT = re.compile(r'/(\w+) \S+ Tf \d Tr <("(?:[^"\\]|\\.)*")> Tj')


def units(text: str) -> str:
    """A string with each 16-bit unit as one character."""
    data = text.encode("utf-16-le", "surrogatepass")
    return "".join(chr(data[i] | data[i + 1] << 8) for i in range(0, len(data), 2))


def visual_order(text: str, advances: list[float]) -> tuple[str, list[float]]:
    """Turns each right-to-left stretch around, and the same stretch of the advances."""
    order = list(range(len(text)))
    start: int | None = None
    # A character that is neither a blank nor right-to-left ends a stretch, and so does the end.
    for index, unit in enumerate(text + "\0"):
        turned = any(low <= ord(unit) <= high for low, high in RIGHT_TO_LEFT)
        if turned and start is None:
            start = index
        elif start is not None and not turned and unit != " ":
            order[start:index] = reversed(order[start:index])
            start = None
    return "".join(text[i] for i in order), [advances[i] for i in order] if advances else []


@dataclass
class TextRecord:
    """A recorded text: characters and advances in the order in which they are drawn; lengths in dots."""

    font: dict[str, Any]
    x: float
    y: float
    text: str
    advances: list[float] | None
    height: float
    oblique_angle: float
    tracking: float
    width_factor: float

    @property
    def visible(self) -> bool:
        """Whether the PDF shows the text; what it doesn't show is there to be found."""
        return self.advances is not None and abs(self.tracking - 1.0) < 1e-5

    @property
    def angle(self) -> float:
        """The base line's angle. The interface font, for texts without advances, is unturned."""
        tenths = 0 if self.advances is None else self.font.get("lfEscapement", 0)
        return f32(tenths * RADIANS_PER_TENTH)


class Run(NamedTuple):
    """A stretch of a text in one font; `text` is what its codes stand for."""

    font: PageFont
    text: str


MISSING = PageFont("missing", "")


@dataclass
class TextRuns:
    """The runs of one job's texts, page by page, as a plot of it shows them."""

    pages: list[list[Run]] = field(default_factory=list)
    # Characters that some text has, though perhaps no page shows it.
    unseen: set[str] = field(default_factory=set)
    _shown: dict[PageFont, set[str]] = field(default_factory=dict)
    _choices: dict[tuple[str, str], PageFont] = field(default_factory=dict)

    @classmethod
    def of_plot(cls, plotted: str) -> TextRuns:
        """The runs of a plotted job in its text form."""
        runs = cls()
        for _, lines in parse_job_text(plotted)[1:]:
            fonts = dict(PageFont.parse(line) for line in lines if line.startswith("font "))
            stream = "".join(json.loads(line) for line in lines if line.startswith('  "'))
            shown = ((name, units(json.loads(quoted))) for name, quoted in SHOWN_TEXT.findall(stream))
            runs.pages.append([Run(fonts.get(name, MISSING), text) for name, text in shown])
        return runs

    def take(self, page: int | None, record: TextRecord) -> list[Run]:
        """The runs of the next text on a page, counted from 0. What the page doesn't show becomes a run in no
        font, which no plot has."""
        source = self.pages[page] if page is not None and page < len(self.pages) else []
        request = "interface font" if record.advances is None else json.dumps(record.font, sort_keys=True)
        taken: list[Run] = []
        rest = record.text
        while rest:
            # Neighbours of one font are one run.
            if not source or not self._fits(source[0], rest) or (taken and taken[-1].font == source[0].font):
                self.unseen.update(rest)
                return [*taken, Run(MISSING, rest)]
            run = source.pop(0)
            # The same request for the same character gives the same font over the whole job.
            characters = set(run.text) - {NO_GLYPH}
            fonts = {self._choices.setdefault((request, unit), run.font) for unit in characters}
            font = next(iter(fonts - {run.font}), run.font)
            taken.append(Run(font, run.text))
            self._shown.setdefault(font, set()).update(run.text)
            rest = rest[len(run.text) :]
        return taken

    @staticmethod
    def _fits(run: Run, rest: str) -> bool:
        """Whether a run shows the head of what is left of a text. Only what isn't a graphic character may
        lack a glyph in the fonts of the tests."""
        return 0 < len(run.text) <= len(rest) and all(
            shown == unit or (shown == NO_GLYPH and unicodedata.category(unit)[0] == "C")
            for shown, unit in zip(run.text, rest, strict=False)
        )

    def expected_font(self, font: PageFont) -> PageFont:
        """A font with the characters that the job plots in it; those of texts that no page shows may be in."""
        kept = self._shown.get(font, set()) | (set(font.kept) & self.unseen)
        return font._replace(kept="".join(sorted(kept - {NO_GLYPH})))


def run_matrices(record: TextRecord, runs: list[Run], exact: bool) -> list[tuple[float, ...]]:
    """The matrix of each run; `exact` keeps fractions of dots. A run begins where the advances of those before
    it end."""
    # A text without advances is written in the interface font, which is upright.
    italic = record.advances is not None and bool(record.font.get("lfItalic", 0))
    matrices, advance, start = [], 0.0, 0
    for run in runs:
        skew = italic and not run.font.name.startswith(SLANTED_FAMILIES)
        matrix = _run_matrix(record, skew, f32(advance))
        place = matrix[4:] if exact else [f32(round_away(value)) for value in matrix[4:]]
        matrices.append((*matrix[:4], *place))
        end = start + len(run.text)
        for value in (record.advances or [])[start:end]:
            advance += value
        start = end
    return matrices


def _run_matrix(record: TextRecord, skew: bool, advance: float) -> tuple[float, ...]:
    sine, cosine = f32(math.sin(record.angle)), f32(math.cos(record.angle))
    shear = f32(math.tan(f32(record.oblique_angle)))
    if skew:
        shear = f32(shear + f32(f32(record.width_factor) * ITALIC_SKEW))
    third = f32(f32(shear * cosine) - sine)
    fourth = f32(f32(shear * sine) + cosine)
    x = f32(record.x + f32(cosine * advance))
    y = f32(record.y + f32(sine * advance))
    return cosine, sine, third, fourth, x, y
