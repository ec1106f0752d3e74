"""Dumps a PDF as text for comparison.

Values are written with the file's digits and sorted dictionary keys. & marks an indirect object, which is written in
place or by name. Page contents are a quoted string per line, so that trailing blanks and a missing last line feed show,
with the codes of texts as characters.

Left out is what differs between plots or releases of the font libraries: date, file identifier, numbers of objects and
glyphs, and of font files everything but the embedded characters and their widths.
"""

from __future__ import annotations

import hashlib
import json
import re
from decimal import Decimal
from typing import Any

from embedded_fonts import EmbeddedFont
from pdf_inspection import DATE, SHOWN_CODES, Pdf, is_reference

Entries = dict[str, Any]
# Entries of a font descriptor that are left out.
FONT_METRICS = {"/Ascent", "/CapHeight", "/Descent", "/Flags", "/FontBBox", "/ItalicAngle", "/StemV"}
# Longer data is written as its hash.
LONGEST_DATA = 300
# UTF-16 text strings are listed separately: qpdf returns the same characters for PDFDocEncoding.
WIDE_STRING = re.compile(rb"/(\w+) ?\(\xfe\xff((?:[^\\()]|\\.)*)\)", re.DOTALL)
ESCAPE, ESCAPED = re.compile(rb"\\(.)", re.DOTALL), {b"r": b"\r", b"n": b"\n"}


class PdfText:
    """The dump of one document, in `lines`."""

    def __init__(self, pdf: Pdf) -> None:
        self._pdf = pdf
        root = pdf.value(pdf.trailer["/Root"])
        groups = root.get("/OCProperties", {}).get("/OCGs", [])
        self._names = {root["/Pages"]: "page tree"}
        self._names |= {page: f"page {number}" for number, page in enumerate(pdf.pages, start=1)}
        self._names |= {group: f"layer {number}" for number, group in enumerate(groups, start=1)}
        self._fonts: dict[str, EmbeddedFont] = {}
        # Streams that have been referred to and not yet written.
        self._streams: list[str] = []
        self._stream_count = 0
        info = self._value(pdf.value(pdf.trailer["/Info"]))
        # The count reveals duplicate and unused objects. The trailer is not an object.
        self.lines = ["document", f"  info {info}", f"  catalog {self._value(root)}"]
        self.lines.append(f"  {len(pdf.objects) - 1} objects")
        for key, data in WIDE_STRING.findall(pdf.file):
            text = ESCAPE.sub(lambda found: ESCAPED.get(found[1], found[1]), data)
            quoted = json.dumps(text.decode("utf-16-be", "surrogatepass"))
            self.lines.append(f"  UTF-16 {key.decode()} {quoted}")
        self.lines += [f"  {self._names[group]} {self._value(pdf.value(group))}" for group in groups]
        for key, entry in pdf.objects.items():
            entries = entry.get("value")
            if isinstance(entries, dict) and entries.get("/Subtype") == "/Type0":
                self._add_font(key.removeprefix("obj:"), entries)
        for page in pdf.pages:
            self._add_page(self._names[page], dict(pdf.value(page)))

    def _add_font(self, reference: str, entries: Entries) -> None:
        font = self._fonts[reference] = EmbeddedFont(self._pdf, entries)
        self._names |= font.objects
        self.lines += [f"  font {font.name} {self._value(entries)}", f"    {font.line()}"]
        self._names[reference] = f"font {font.name}"

    def _add_page(self, name: str, entries: Entries) -> None:
        resources = self._pdf.value(entries.pop("/Resources"))
        named_fonts = self._pdf.value(resources.get("/Font", {}))
        fonts = {key[1:]: self._fonts[reference] for key, reference in named_fonts.items()}
        annotations = entries.pop("/Annots", [])
        self.lines += ["", name, *(f"  {key} {self._value(value)}" for key, value in sorted(entries.items()))]
        contents, self._streams = self._streams, []
        self.lines += [f"  annotation {self._value(annotation)}" for annotation in annotations]
        for category, named in sorted(resources.items()):
            for key, value in sorted(self._pdf.value(named).items()):
                self.lines.append(f"  resource {category} {key} {self._value(value)}")
        # Masks are added when their image is written.
        while self._streams:
            self._add_stream(self._streams.pop(0))
        for stream in contents:
            stream_entries, data = self._pdf.stream(stream)
            self.lines.append(f"  {self._names[stream]} {self._value(stream_entries)}")
            for line in data.decode("latin-1").splitlines(keepends=True):
                self.lines.append(f"    {json.dumps(_with_characters(line, fonts))}")

    def _add_stream(self, reference: str) -> None:
        """The data of an image by rows; of a JPEG the mean colour only, as the rest depends on the encoder."""
        entries, data = self._pdf.stream(reference)
        if entries.get("/Filter") == "/DCTDecode":
            pixels = self._pdf.jpeg_pixels(reference)
            mean = bytes(round(sum(pixels[i::3]) / len(pixels[i::3])) for i in range(3))
            text = f"{len(pixels)} bytes, mean colour {mean.hex()}"
        elif len(data) > LONGEST_DATA:
            text = f"{len(data)} bytes, SHA-256 {hashlib.sha256(data).hexdigest()}"
        else:
            text = data.hex(" ", len(data) // entries.get("/Height", 1) or 1)
        self.lines += [f"  {self._names[reference]} {self._value(entries)}", f"    {text}"]

    def _value(self, value: Any) -> str:
        if isinstance(value, dict):
            shown = sorted((key, entry) for key, entry in value.items() if key not in FONT_METRICS)
            return "<<" + " ".join(f"{key} {self._value(entry)}" for key, entry in shown) + ">>"
        if isinstance(value, list):
            return "[" + " ".join(map(self._value, value)) + "]"
        if isinstance(value, Decimal):
            return format(value, "f")
        if not isinstance(value, str):
            return json.dumps(value)
        if is_reference(value):
            return "&" + self._target(value)
        if value.startswith("u:"):
            return "(date)" if DATE.match(value) else json.dumps(value[2:])
        return "bytes " + json.dumps(bytes.fromhex(value[2:]).decode("latin-1")) if value[1] == ":" else value

    def _target(self, reference: str) -> str:
        if reference not in self._names:
            if not self._pdf.is_stream(reference):
                return self._value(self._pdf.value(reference))
            self._stream_count += 1
            self._names[reference] = f"stream {self._stream_count}"
            self._streams.append(reference)
        return self._names[reference]


def _with_characters(line: str, fonts: dict[str, EmbeddedFont]) -> str:
    """A line of a page stream with the codes of texts replaced by characters."""

    def read(match: re.Match[str]) -> str:
        name, middle, codes = match.groups()
        return f"/{name} {middle} <{json.dumps(fonts[name].decode(codes))}> Tj"

    return SHOWN_CODES.sub(read, line)
