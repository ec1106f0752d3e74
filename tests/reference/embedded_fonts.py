"""The fonts that a PDF embeds: their dictionaries, their font files and the codes that text is written in.

Every font is a Type 0 font of ISO 32000-1, 9.7, over a TrueType font file whose glyph indexes are the codes.
"""

from __future__ import annotations

import re
import shutil
import struct
import subprocess
import tempfile
from dataclasses import dataclass
from typing import Any, Callable

from pdf_error import require
from plotted_job import PageFont
from text_model import NO_GLYPH

Entries = dict[str, Any]
WIDTH_TOLERANCE = 1
SYSTEM_INFO = {"/Registry": "u:Adobe", "/Ordering": "u:Identity", "/Supplement": 0}
MICROSOFT = 3
# What of a font file a PDF reader has no use for: layout, hinting of the screen and signatures.
TABLES_TO_DROP = {"GSUB", "GPOS", "GDEF", "kern", "DSIG", "EBDT", "EBLC", "LTSH", "VDMX", "hdmx"}


class FontFile:
    """A TrueType font file: its Microsoft character map, its widths and its PostScript name."""

    def __init__(self, data: bytes) -> None:
        require(data[:4] in (b"\0\1\0\0", b"true"), "not a single TrueType font file")
        self._data = data
        self.tables = {}
        for index in range(self._u16(4)):
            tag, _, offset, length = struct.unpack_from(">4sIII", data, 12 + 16 * index)
            require(offset + length <= len(data), f"table {tag} reaches beyond the file")
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


@dataclass
class EmbeddedFont:
    """A font as the pages use it; `characters` are those of its codes."""

    page_font: PageFont
    characters: dict[int, str]

    def decode(self, codes: str) -> str:
        """The characters of a hexadecimal string."""
        require(len(codes) % 4 == 0, f"codes of two bytes each: {codes}")
        values = [int(codes[i : i + 4], 16) for i in range(0, len(codes), 4)]
        unknown = [value for value in values if value and value not in self.characters]
        require(not unknown, f"{self.page_font.name} has no codes {unknown}")
        return "".join(self.characters[value] if value else NO_GLYPH for value in values)


class FontReader:
    """Reads font dictionaries; `value` follows a reference and `stream` gives a stream's bytes."""

    def __init__(self, value: Callable[[Any], Any], stream: Callable[[str], bytes]) -> None:
        self._value = value
        self._stream = stream

    def read(self, font: Entries) -> EmbeddedFont:
        """Reads one Type 0 font, and holds it to what every embedded font is."""
        name = font["/BaseFont"]
        self._expect(font, {"/Type": "/Font", "/Subtype": "/Type0", "/Encoding": "/Identity-H"})
        descendants = self._value(font["/DescendantFonts"])
        require(len(descendants) == 1, f"{name} has {len(descendants)} descendants")
        descendant = self._value(descendants[0])
        self._expect(descendant, {"/Type": "/Font", "/Subtype": "/CIDFontType2", "/BaseFont": name})
        self._expect(self._value(descendant["/CIDSystemInfo"]), SYSTEM_INFO)
        require(descendant.get("/CIDToGIDMap", "/Identity") == "/Identity", f"{name} maps its codes")
        descriptor = self._value(descendant["/FontDescriptor"])
        self._expect(descriptor, {"/Type": "/FontDescriptor", "/FontName": name})
        data = self._stream(descriptor["/FontFile2"])
        file = FontFile(data)
        check_with_sanitizer(data)
        require(name[1:] == (file.name or "Untitled"), f"{name} stands for {file.name!r}")
        require(not TABLES_TO_DROP & set(file.tables), f"{name} has tables {sorted(file.tables)}")
        # Room for the parts of composed glyphs, and no more than that.
        require(file.glyph_count <= 8 + 4 * len(file.character_map), f"{name} has {file.glyph_count} glyphs")
        self._check_widths(name, file, self._value(descendant["/W"]))
        characters = to_unicode(self._stream(font["/ToUnicode"]).decode("latin-1"))
        self._check_characters(name, file, characters)
        kept = "".join(map(chr, sorted(file.character_map)))
        return EmbeddedFont(PageFont(name[1:], kept), characters)

    @staticmethod
    def _expect(found: Entries, wanted: Entries) -> None:
        for key, value in wanted.items():
            require(found.get(key) == value, f"{key} is {found.get(key)!r} and not {value!r}")

    def _check_widths(self, name: str, file: FontFile, array: list[Any]) -> None:
        widths: dict[int, float] = {}
        rest = list(array)
        while rest:
            first, second = rest[:2]
            if isinstance(values := self._value(second), list):
                widths |= dict(enumerate(values, start=first))
                del rest[:2]
            else:
                widths |= dict.fromkeys(range(first, values + 1), rest[2])
                del rest[:3]
        for glyph in set(file.character_map.values()):
            width = widths.get(glyph, 1000)
            complaint = f"{name}: glyph {glyph} is {file.width(glyph)} wide and not {width}"
            require(abs(width - file.width(glyph)) <= WIDTH_TOLERANCE, complaint)
        widths.pop(0, None)
        require(set(widths) <= set(file.character_map.values()), f"{name} has widths of other glyphs")

    @staticmethod
    def _check_characters(name: str, file: FontFile, characters: dict[int, str]) -> None:
        mapped = {chr(code): glyph for code, glyph in file.character_map.items()}
        characters.pop(0, None)
        for glyph, text in characters.items():
            complaint = f"{name}: code {glyph} reads {text!r}, whose glyph is {mapped.get(text)}"
            require(mapped.get(text) == glyph, complaint)
        require(set(characters) == set(mapped.values()), f"{name}: not every glyph can be read")


def to_unicode(text: str) -> dict[int, str]:
    """The characters of the codes of a ToUnicode map, ISO 32000-1, 9.10.3."""
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
    """Holds a font file to the sanitiser that browsers use, where it is installed."""
    if data in _SANITIZED or shutil.which("ots-sanitize") is None:
        return
    with tempfile.NamedTemporaryFile(suffix=".ttf") as file:
        file.write(data)
        file.flush()
        run = subprocess.run(["ots-sanitize", file.name], capture_output=True, text=True, check=False)
    require(run.returncode == 0, f"refused by the sanitiser: {run.stderr}")
    _SANITIZED.add(data)
