"""Checks and decodes the fonts embedded in a PDF.

Every font is a Type 0 font (ISO 32000-1, 9.7) with a TrueType font file whose glyph indexes are the codes.
"""

from __future__ import annotations

import json
import re
import struct
import subprocess
import tempfile
from typing import Any

from pdf_error import require
from pdf_inspection import Pdf

# For code 0, the glyph of missing characters.
NO_GLYPH = "\ufffd"
DEFAULT_WIDTH = 1000
WIDTH_TOLERANCE = 1
MICROSOFT = 3
# Tables that a PDF reader does not use: layout, screen bitmaps and device metrics, signatures.
TABLES_TO_DROP = {"GSUB", "GPOS", "GDEF", "kern", "DSIG", "EBDT", "EBLC", "LTSH", "VDMX", "hdmx"}


class FontFile:
    """A TrueType font file: Microsoft character map, widths, PostScript name."""

    def __init__(self, data: bytes) -> None:
        require(data[:4] in (b"\0\1\0\0", b"true"), "not a single TrueType font file")
        self._data = data
        self.tables = {}
        for index in range(self._u16(4)):
            tag, _, offset, length = struct.unpack_from(">4sIII", data, 12 + 16 * index)
            require(offset + length <= len(data), f"table {tag} extends beyond the file")
            self.tables[tag.decode("latin-1")] = offset
        self.glyph_count = self._u16(self.tables["maxp"] + 4)
        self.character_map = self._character_map()
        self.name = self._post_script_name()

    def width(self, glyph: int) -> float:
        """A glyph's advance width in thousandths of an em."""
        last = self._u16(self.tables["hhea"] + 34) - 1
        advance = self._u16(self.tables["hmtx"] + 4 * min(glyph, last))
        return advance * 1000 / self._u16(self.tables["head"] + 18)

    def _u16(self, offset: int) -> int:
        return int.from_bytes(self._data[offset : offset + 2], "big")

    def _u32(self, offset: int) -> int:
        return int.from_bytes(self._data[offset : offset + 4], "big")

    def _character_map(self) -> dict[int, int]:
        table = self.tables["cmap"]
        mapped: dict[int, int] = {}
        for index in range(self._u16(table + 2)):
            platform, _, offset = struct.unpack_from(">HHI", self._data, table + 4 + 8 * index)
            if platform == MICROSOFT:
                readers = {4: self._segments, 12: self._groups}
                form = self._u16(table + offset)
                require(form in readers, f"character map of format {form}")
                mapped |= readers[form](table + offset)
        return mapped

    def _segments(self, map_: int) -> dict[int, int]:
        size = self._u16(map_ + 6)
        mapped = {}
        for end in range(map_ + 14, map_ + 14 + size, 2):
            start, delta, place = end + size + 2, end + 2 * size + 2, end + 3 * size + 2
            for code in range(self._u16(start), self._u16(end) + 1):
                glyph = code
                if self._u16(place) != 0:
                    glyph = self._u16(place + self._u16(place) + 2 * (code - self._u16(start)))
                    if glyph == 0:
                        continue
                mapped[code] = glyph + self._u16(delta) & 0xFFFF
        return {code: glyph for code, glyph in mapped.items() if glyph}

    def _groups(self, map_: int) -> dict[int, int]:
        mapped = {}
        for index in range(self._u32(map_ + 12)):
            start, end, glyph = struct.unpack_from(">III", self._data, map_ + 16 + 12 * index)
            mapped |= {code: glyph + code - start for code in range(start, end + 1)}
        return mapped

    def _post_script_name(self) -> str:
        if "name" not in self.tables:
            return ""
        table = self.tables["name"]
        for index in range(self._u16(table + 2)):
            fields = struct.unpack_from(">6H", self._data, table + 6 + 12 * index)
            start = table + self._u16(table + 4) + fields[5]
            if fields[0] == MICROSOFT and fields[3] == 6:
                return self._data[start : start + fields[4]].decode("utf-16-be")
        return ""


class EmbeddedFont:
    """A font, checked against its font file. `characters` maps codes, `objects` names the objects read."""

    def __init__(self, pdf: Pdf, font: dict[str, Any]) -> None:
        self.name: str = font["/BaseFont"][1:]
        descendant = pdf.value(pdf.value(font["/DescendantFonts"])[0])
        font_file = pdf.value(descendant["/FontDescriptor"])["/FontFile2"]
        self.objects = {font_file: "font file", font["/ToUnicode"]: "map", descendant["/W"]: "widths"}
        data = pdf.stream(font_file)[1]
        check_with_sanitizer(data)
        self._file = FontFile(data)
        self._expect(self.name == (self._file.name or "Untitled"), f"has a font file named {self._file.name!r}")
        unwanted = TABLES_TO_DROP & set(self._file.tables)
        self._expect(not unwanted, f"has tables {sorted(unwanted)}")
        # Allows for components of composite glyphs.
        most = 8 + 4 * len(self._file.character_map)
        self._expect(self._file.glyph_count <= most, f"has {self._file.glyph_count} glyphs")
        self._widths = self._read_widths(pdf.value(descendant["/W"]))
        self.characters = to_unicode(pdf.stream(font["/ToUnicode"])[1].decode("latin-1"))
        self._check_glyphs()

    def line(self) -> str:
        """The embedded characters with their widths, as a line."""
        glyphs = sorted(self._file.character_map.items())
        widths = ((chr(code), self._widths.get(glyph, DEFAULT_WIDTH)) for code, glyph in glyphs)
        return ", ".join(f"{json.dumps(character)} {width}" for character, width in widths)

    def decode(self, codes: str) -> str:
        """The characters of a hexadecimal string."""
        self._expect(len(codes) % 4 == 0, f"has codes of two bytes each: {codes}")
        values = [int(codes[i : i + 4], 16) for i in range(0, len(codes), 4)]
        return "".join(self.characters[value] if value else NO_GLYPH for value in values)

    def _expect(self, condition: bool, complaint: str) -> None:
        require(condition, f"the font {self.name} {complaint}")

    @staticmethod
    def _read_widths(array: list[Any]) -> dict[int, int]:
        widths: dict[int, int] = {}
        rest = list(array)
        while rest:
            first, second = rest[:2]
            if isinstance(second, list):
                widths |= dict(enumerate(second, start=first))
                del rest[:2]
            else:
                widths |= dict.fromkeys(range(first, second + 1), rest[2])
                del rest[:3]
        return widths

    def _check_glyphs(self) -> None:
        """Codes map to the characters of their glyphs, each glyph of the subset has a code, and widths agree."""
        glyphs = self._file.character_map
        for glyph in set(glyphs.values()):
            width, advance = self._widths.get(glyph, DEFAULT_WIDTH), self._file.width(glyph)
            self._expect(abs(width - advance) <= WIDTH_TOLERANCE, f"has glyph {glyph} of {advance} as {width}")
        self._expect(set(self._widths) <= {0, *glyphs.values()}, "has widths of other glyphs")
        for code, text in self.characters.items():
            reads = code == 0 or glyphs.get(ord(text)) == code
            self._expect(reads, f"maps code {code} to {text!r}")
        self._expect(set(self.characters) | {0} == {0, *glyphs.values()}, "has glyphs without characters")


def to_unicode(text: str) -> dict[int, str]:
    """Characters by code of a ToUnicode map (ISO 32000-1, 9.10.3)."""
    characters = {}
    for section in re.findall(r"beginbfchar(.*?)endbfchar", text, re.DOTALL):
        for code, value in re.findall(r"<(\w+)>\s*<(\w+)>", section):
            characters[int(code, 16)] = _character(value)
    for section in re.findall(r"beginbfrange(.*?)endbfrange", text, re.DOTALL):
        for first, last, start, values in re.findall(
            r"<(\w+)>\s*<(\w+)>\s*(?:<(\w+)>|\[([^]]*)\])", section
        ):
            codes = range(int(first, 16), int(last, 16) + 1)
            found = [_character(value) for value in re.findall(r"<(\w+)>", values)]
            if start:
                found = [chr(ord(_character(start)) + index) for index in range(len(codes))]
            characters |= dict(zip(codes, found, strict=True))
    return characters


def _character(digits: str) -> str:
    return bytes.fromhex(digits).decode("utf-16-be")


_SANITIZED: set[bytes] = set()


def check_with_sanitizer(data: bytes) -> None:
    """Checks a font file with the OpenType Sanitizer, as browsers do."""
    if data in _SANITIZED:
        return
    with tempfile.NamedTemporaryFile(suffix=".ttf") as file:
        file.write(data)
        file.flush()
        run = subprocess.run(["ots-sanitize", file.name], capture_output=True, text=True, check=False)
    require(run.returncode == 0, f"the OpenType Sanitizer rejects a font: {run.stderr}")
    _SANITIZED.add(data)
