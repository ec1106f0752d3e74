"""A plotted job as it can be seen from outside: results and pages, with a text form and a comparison.

The text form is what the golden files hold. A stream stands in it as one quoted string a line of the stream,
so that trailing blanks and a missing last line feed can be seen. Page sizes and opacities are rounded to what
any writing of an f32 agrees on; everything in a stream is exact.
"""

from __future__ import annotations

import json
import re
from dataclasses import dataclass, field
from typing import NamedTuple

# What lies farther off the page counts as lying there: an inspected PDF does not tell it exactly.
FARTHEST = 1e16
# What ends an operation in a page stream: an operator, alone between blanks.
OPERATOR = re.compile(r"(?:^|(?<=\s))[A-Za-z*]+(?=\s|$)")


class PageFont(NamedTuple):
    """A font of a page: its PostScript name and the characters that are embedded."""

    name: str
    kept: str

    def line(self, resource: str) -> str:
        """The font in the text form, under its resource name."""
        return f"font {resource}: {self.name} {json.dumps(self.kept)}"

    @staticmethod
    def parse(line: str) -> tuple[str, PageFont]:
        """The resource name and the font of such a line."""
        _, resource, name, kept = line.split(" ", 3)
        return resource[:-1], PageFont(name, json.loads(kept))


class PageImage(NamedTuple):
    """An image of a page. Its pixels are six hexadecimal digits each (form "rgb") or a binary digit each, 1 for
    white (form "bits"). Of a JPEG (form "jpeg") there is the mean colour. The mask has two digits a pixel."""

    width: int
    height: int
    form: str
    pixels: str
    mask: str = ""

    def line(self, resource: str) -> str:
        """The image in the text form, under its resource name."""
        mask = f", mask {self.mask}" if self.mask else ""
        return f"image {resource}: {self.width} x {self.height} {self.form} {self.pixels}{mask}"


# Left, bottom, right and top, in points.
Rect = tuple[float, float, float, float]


class Annotation(NamedTuple):
    """A link, whose text is the bytes of its target, or a comment."""

    kind: str
    rect: Rect
    text: str
    flags: int = 0

    def line(self) -> str:
        """The annotation in the text form."""
        # Zero has no sign.
        rect = (max(-FARTHEST, min(FARTHEST, value)) + 0.0 for value in self.rect)
        flags = f", flags {self.flags}" if self.kind == "comment" else ""
        return f"{self.kind} {' '.join(f'{value:.6g}' for value in rect)}{flags}: {json.dumps(self.text)}"


@dataclass
class PlottedPage:
    """One page: its box in points, the factor of its measure if the page is finished, its resources, its
    annotations, and the decoded streams of its contents. In the streams the codes of a text stand as the
    characters in quotes. A layer is known by its number in the job."""

    media_box: Rect
    scale: float | None = None
    graphic_states: dict[str, dict[str, float | str]] = field(default_factory=dict)
    fonts: dict[str, PageFont] = field(default_factory=dict)
    layers: dict[str, int] = field(default_factory=dict)
    images: dict[str, PageImage] = field(default_factory=dict)
    annotations: list[Annotation] = field(default_factory=list)
    streams: list[str] = field(default_factory=list)


@dataclass
class PlottedJob:
    """The results of the calls, one line each, the pages, and the names of the layers' groups in the order of
    first use, with the order in which a reader lists them."""

    results: list[str] = field(default_factory=list)
    pages: list[PlottedPage] = field(default_factory=list)
    layers: list[str] = field(default_factory=list)
    layer_order: list[int] = field(default_factory=list)


def result_line(line: int, name: str, result: int) -> str:
    """A call's result; 32 bits are compared, signed or not."""
    return f"{line} {name} {result % 0x100000000}"


def page_lines(page: PlottedPage) -> list[str]:
    """One page in the text form; the resources of a page without contents are of no account."""
    scale = "" if page.scale is None else f", scale {page.scale:.6g}"
    lines = ["media box " + " ".join(f"{value:.6g}" for value in page.media_box) + scale]
    lines += [annotation.line() for annotation in page.annotations]
    if not page.streams:
        return lines + ["no contents"]
    for name, entries in sorted(page.graphic_states.items()):
        texts = (f"{key} {_entry_text(value)}" for key, value in sorted(entries.items()))
        lines.append(f"graphic state {name}: " + ", ".join(texts))
    lines += [font.line(name) for name, font in sorted(page.fonts.items())]
    lines += [f"layer {name}: group {number}" for name, number in sorted(page.layers.items())]
    lines += [image.line(name) for name, image in sorted(page.images.items())]
    for number, stream in enumerate(page.streams, start=1):
        lines.append(f"stream {number}")
        lines += ["  " + json.dumps(line) for line in re.findall(r"[^\n]*\n|[^\n]+", stream)]
    return lines


def _entry_text(value: float | str) -> str:
    return value if isinstance(value, str) else f"{value:.3f}"


def job_text(job: PlottedJob) -> str:
    """The whole job in the text form."""
    lines = ["results", *("  " + result for result in job.results)]
    for number, page in enumerate(job.pages, start=1):
        lines += ["", f"page {number}", *page_lines(page)]
    if job.layers:
        names = (f"group {number}: {json.dumps(name)}" for number, name in enumerate(job.layers, start=1))
        lines += ["", "layers", *names, "order " + " ".join(map(str, job.layer_order))]
    return "\n".join(lines) + "\n"


def parse_job_text(text: str) -> list[tuple[str, list[str]]]:
    """The text form as sections: a title and the lines under it."""
    sections: list[tuple[str, list[str]]] = []
    for block in text.split("\n\n"):
        title, *lines = block.rstrip("\n").split("\n")
        sections.append((title, lines))
    return sections


def differences(expected: str, actual: str) -> list[str]:
    """What differs between two jobs in the text form, a line each: the first difference of every section."""
    wanted, found = parse_job_text(expected), parse_job_text(actual)
    messages = []
    if len(wanted) != len(found):
        messages.append(f"{len(wanted)} sections expected, {len(found)} found")
    for (title, wanted_lines), (_, found_lines) in zip(wanted, found, strict=False):
        if wanted_lines != found_lines:
            messages.append(f"{title}: {_first_difference(wanted_lines, found_lines)}")
    return messages


def _first_difference(wanted: list[str], found: list[str]) -> str:
    place = ""
    for index in range(max(len(wanted), len(found))):
        one = wanted[index] if index < len(wanted) else "nothing more"
        other = found[index] if index < len(found) else "nothing more"
        if one != other:
            return f"{place}{_operator_difference(one, other)}"
        if one.startswith("stream "):
            place = f"{one}: "
    return "no difference"


def _operator_difference(one: str, other: str) -> str:
    """The first operation in which two lines differ, when both are lines of a stream."""
    if not (one.startswith('  "') and other.startswith('  "')):
        return f"expected {one.strip()}, found {other.strip()}"
    wanted, found = _operations(json.loads(one)), _operations(json.loads(other))
    for number in range(max(len(wanted), len(found))):
        first = wanted[number] if number < len(wanted) else ""
        second = found[number] if number < len(found) else ""
        if first != second:
            lines = f"\n  in {one.strip()}\n and {other.strip()}"
            return f"operation {number + 1}: expected {first!r}, found {second!r}{lines}"
    return "no difference"


def _operations(text: str) -> list[str]:
    """A stream's line cut behind each operator; blanks stay, as they count."""
    pieces, start = [], 0
    for match in OPERATOR.finditer(text):
        pieces.append(text[start : match.end()])
        start = match.end()
    return pieces + [text[start:]]
