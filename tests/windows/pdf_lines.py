"""A PDF as lines that two plots of the same job share, whatever numbers their objects have and however much of a
font they embed.

Each line is a place in the document and what stands there, in the order in which the document leads to it. Streams
are decoded. Fonts are known by their names, and codes in page streams are replaced by their characters.
"""

from __future__ import annotations

import base64
import hashlib
import json
import re
import sys
from pathlib import Path
from typing import Any, Iterator, NamedTuple

sys.path.append(str(Path(__file__).resolve().parent.parent / "reference"))

from embedded_fonts import to_unicode  # noqa: E402
from pdf_inspection import DATE, REFERENCE, SHOWN_CODES, run_qpdf  # noqa: E402
from text_model import NO_GLYPH  # noqa: E402

# Characters that share a glyph in many fonts. Which of them a code reads as depends on how much is embedded.
SHARED_GLYPHS = str.maketrans("\u00a0\u00ad\u037e", " -;")


def one_of_a_glyph(text: str) -> str:
    """The text with one of the characters that share a glyph in the place of the others."""
    return text.translate(SHARED_GLYPHS)


class Line(NamedTuple):
    """A value and its place."""

    place: str
    value: str


class PdfLines:
    """One PDF file; `lines` are those of its catalog and its information."""

    def __init__(self, path: Path) -> None:
        options = ("--json=2", "--json-stream-data=inline", "--decode-level=generalized")
        document = json.loads(run_qpdf(*options, str(path)))
        self.page_count = len(document["pages"])
        self._objects: dict[str, Any] = document["qpdf"][1]
        self._seen: dict[str, str] = {}
        self._fonts: dict[str, dict[int, str]] = {}
        self.has_text = False
        trailer = self._objects["trailer"]["value"]
        self.lines = [*self._walk("Root", trailer["/Root"]), *self._walk("Info", trailer["/Info"])]

    def _walk(self, place: str, value: Any) -> Iterator[Line]:
        if isinstance(value, str) and REFERENCE.match(value):
            yield from self._follow(place, value)
        elif isinstance(value, dict):
            if value.get("/Type") == "/Page":
                self._fonts = self._page_fonts(value)
            for key, entry in sorted(value.items()):
                yield from self._walk(place + key, entry)
        elif isinstance(value, list):
            yield Line(place, f"array of {len(value)}")
            for index, entry in enumerate(value):
                yield from self._walk(f"{place}[{index}]", entry)
        elif place == "Info/CreationDate" and DATE.match(value):
            yield Line(place, "a date")
        else:
            yield Line(place, repr(value))

    def _follow(self, place: str, reference: str) -> Iterator[Line]:
        target = self._objects[f"obj:{reference}"]
        first = self._seen.setdefault(reference, place)
        if first != place:
            yield Line(place, f"the same as {first}")
        elif "stream" in target:
            yield from self._stream(place, target["stream"])
        elif isinstance(target["value"], dict) and target["value"].get("/Subtype") == "/Type0":
            self.has_text = True
            yield Line(place, target["value"]["/BaseFont"])
        else:
            yield from self._walk(place, target["value"])

    def _stream(self, place: str, stream: dict[str, Any]) -> Iterator[Line]:
        entries = {key: value for key, value in stream["dict"].items() if key != "/Length"}
        yield from self._walk(place, entries)
        data = base64.b64decode(stream["data"])
        if "/Contents" not in place:
            yield Line(place, f"{len(data)} bytes, {hashlib.sha256(data).hexdigest()}")
            return
        for number, line in enumerate(data.decode("latin-1").split("\n"), start=1):
            yield Line(f"{place}:{number}", SHOWN_CODES.sub(self._readable, line))

    def _readable(self, shown: re.Match[str]) -> str:
        name, middle, codes = shown.groups()
        values = [int(codes[i : i + 4], 16) for i in range(0, len(codes), 4)]
        text = "".join(self._fonts[name].get(value, NO_GLYPH) if value else NO_GLYPH for value in values)
        return f"/{name} {middle} {json.dumps(one_of_a_glyph(text))} Tj"

    def _page_fonts(self, page: dict[str, Any]) -> dict[str, dict[int, str]]:
        """The characters of the codes of each font of a page."""
        fonts = {}
        for name, reference in self._value(self._value(page["/Resources"]).get("/Font", {})).items():
            key = self._value(reference)["/ToUnicode"]
            data = base64.b64decode(self._objects[f"obj:{key}"]["stream"]["data"])
            fonts[name[1:]] = to_unicode(data.decode("latin-1"))
        return fonts

    def _value(self, value: Any) -> Any:
        """A value with a reference followed."""
        if isinstance(value, str) and REFERENCE.match(value):
            return self._objects[f"obj:{value}"]["value"]
        return value


def differences(expected: list[Line], found: list[Line]) -> list[str]:
    """The first places where two documents differ."""
    messages = []
    for one, other in zip(expected, found):
        if one == other:
            continue
        where = one.place if one.place == other.place else f"{one.place} against {other.place}"
        messages.append(f"{where}: {one.value[:300]} and not {other.value[:300]}")
        if len(messages) == 3 or one.place != other.place:
            return messages
    if len(expected) != len(found):
        messages.append(f"{len(found)} entries in place of {len(expected)}")
    return messages
