"""Checks a PDF against the rules of PDF/A-2b and 3b that a plot can break (ISO 19005-2:2011, ISO 19005-3:2012).

    check_pdfa.py FILE.pdf ...

Prints what breaks a rule behind its clause. Knows composite fonts, images in gray and RGB, links and comments; anything
else counts as a break. Needs the command qpdf.
"""

from __future__ import annotations

import base64
import functools
import json
import re
import struct
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import Any

Json = Any  # as qpdf writes objects: "u:text" and "b:hex" are strings, "/Name" a name, "1 0 R" a reference
Breaks = Iterator[object]

TOKEN = re.compile(
    rb"(?P<string>\((?:\\.|[^\\()])*\))|(?P<hex><[^<>]*>)|<<|>>|[\[\]]|(?P<name>/[^\s()<>\[\]{}/%]*)"
    rb"|(?P<number>[+-]?[\d.]+)(?![^\s()<>\[\]{}/%])|(?P<operator>[^\s()<>\[\]{}/%]+)",
    re.DOTALL,
)
OPERATORS = frozenset(
    b"b B b* B* BDC BMC BT BX c cm d Do DP EMC ET EX f F f* g G gs h i j J l m M MP n q Q re rg RG s S T* Tc Td TD Tf "
    b"Tj TJ TL Tm Tr Ts Tw Tz v w W W* y true false null".split()
)
NAMED_RESOURCES = {b"Do": "/XObject", b"Tf": "/Font", b"gs": "/ExtGState"}
FILTERS = {"/ASCIIHexDecode", "/ASCII85Decode", "/FlateDecode", "/RunLengthDecode", "/DCTDecode"}
BLEND_MODES = set(
    "/Normal /Compatible /Multiply /Screen /Overlay /Darken /Lighten /ColorDodge /ColorBurn /HardLight /SoftLight "
    "/Difference /Exclusion /Hue /Saturation /Color /Luminosity".split()
)
FORBIDDEN_SPACES = {"/DeviceCMYK", "/DeviceN", "/Separation", "/ICCBased", "/Pattern"}
RDF = "{http://www.w3.org/1999/02/22-rdf-syntax-ns#}"
SCHEMAS = {
    "http://purl.org/dc/elements/1.1/": "dc",
    "http://ns.adobe.com/pdf/1.3/": "pdf",
    "http://www.aiim.org/pdfa/ns/id/": "pdfaid",
    "http://ns.adobe.com/xap/1.0/": "xmp",
}
PROPERTIES = {  # and the entries of the information dictionary that they equal
    "dc:title": "/Title",
    "dc:creator": "/Author",
    "dc:description": "/Subject",
    "pdf:Keywords": "/Keywords",
    "pdf:Producer": "/Producer",
    "xmp:CreatorTool": "/Creator",
    "xmp:CreateDate": "/CreationDate",
    "xmp:ModifyDate": "/ModDate",
}


def read_json(path: Path, *options: str) -> dict[str, Json]:
    """The objects of a PDF by "obj:1 0 R", and "trailer"."""
    command = ["qpdf", "--json=2", "--json-key=qpdf", *options, "--warning-exit-0", str(path)]
    return json.loads(subprocess.run(command, capture_output=True, check=True).stdout)["qpdf"][1]


def text(value: Json) -> str:
    """A string of qpdf's, empty for other values."""
    return value[2:] if isinstance(value, str) and value.startswith("u:") else ""


class Document:
    """A PDF as the rules look at it."""

    def __init__(self, path: Path) -> None:
        self.bytes = path.read_bytes()
        self.encoded = read_json(path, "--json-stream-data=none")  # dictionaries with their filters
        self.objects = read_json(path, "--json-stream-data=inline", "--decode-level=generalized")
        self.trailer = self.objects["trailer"]["value"]
        self.root = self.get(self.trailer, "/Root")
        self.dictionaries = [value for value in self.values(self.objects) if isinstance(value, dict)]
        pages = [value for value in self.dictionaries if value.get("/Type") == "/Page"]
        self.pages = [(page, self.content(page), self.get(page, "/Resources") or {}) for page in pages]

    def get(self, value: Json, *keys: str) -> Json:
        """What a value, and then its entries, refer to; a stream's dictionary; None for what is not there."""
        for key in ("", *keys):
            if key:
                value = value.get(key) if isinstance(value, dict) else None
            if isinstance(value, str) and (item := self.objects.get(f"obj:{value}")):
                value = item["stream"]["dict"] if "stream" in item else item["value"]
        return value

    def data(self, reference: str | None) -> bytes:
        """A stream without its filters."""
        return base64.b64decode(self.objects[f"obj:{reference}"]["stream"]["data"]) if reference else b""

    @staticmethod
    def values(objects: dict[str, Json]) -> Iterator[Json]:
        """Every value, those within others included."""
        stack = [item["stream"]["dict"] if "stream" in item else item["value"] for item in objects.values()]
        while stack:
            value = stack.pop()
            yield value
            if isinstance(value, dict):
                stack += [*value, *value.values()]
            elif isinstance(value, list):
                stack += value

    def content(self, page: Json) -> bytes:
        """All of a page's content streams."""
        contents = page.get("/Contents", [])
        if isinstance(contents, str):
            contents = self.objects[f"obj:{contents}"].get("value", [contents])
        return b"\n".join(map(self.data, contents))

    def cid_fonts(self) -> Iterator[tuple[Json, Json, Json, bytes]]:
        """Composite fonts with their descendants, descriptors and programs."""
        for font in (value for value in self.dictionaries if value.get("/Subtype") == "/Type0"):
            (cid_font,) = map(self.get, self.get(font, "/DescendantFonts"))
            descriptor = self.get(cid_font, "/FontDescriptor")
            program = descriptor.get("/FontFile2") or descriptor.get("/FontFile3")
            yield font, cid_font, descriptor, self.data(program)

    def shown_glyphs(self) -> Iterator[tuple[str, set[int]]]:
        """The glyphs that a page shows, by the names of their fonts."""
        for _, content, resources in self.pages:
            glyphs: dict[str, set[int]] = {}
            name = font = ""
            for match in TOKEN.finditer(content):
                name = match.group().decode() if match["name"] else name
                font = name if match.group() == b"Tf" else font
                if match["hex"]:
                    digits = match.group()[1:-1].decode()
                    codes = {int(digits[i : i + 4], 16) for i in range(0, len(digits), 4)}
                    glyphs.setdefault(font, set()).update(codes)
            yield from ((self.get(resources, "/Font", key, "/BaseFont"), used) for key, used in glyphs.items())

    @functools.cached_property
    def packet(self) -> dict[str, str | None]:
        """The properties of the XMP packet by prefix and name, none of one that cannot be read."""
        try:
            packet = ElementTree.fromstring(self.data(self.root.get("/Metadata")).decode())
        except (ElementTree.ParseError, UnicodeDecodeError):
            return {}
        properties = {}
        for node in packet.iterfind(f"{RDF}RDF/{RDF}Description/*"):
            space, name = node.tag[1:].split("}")
            items = [item.text for item in node.iter(f"{RDF}li")]
            properties[f"{SCHEMAS.get(space, space)}:{name}"] = items[0] if items else node.text
        return properties


RULES: list[tuple[str, Callable[[Document], Breaks]]] = []


def rule(clause: str) -> Callable[[Callable[[Document], Breaks]], None]:
    """Enters a function that gives what breaks the rule."""
    return lambda function: RULES.append((clause, function))


@rule("6.1.2")
def header(document: Document) -> Breaks:
    if not re.match(rb"%PDF-1\.[0-7](\r\n|\r|\n)%[\x80-\xff]{4}", document.bytes):
        yield document.bytes[:16]


@rule("6.1.3")
def trailer(document: Document) -> Breaks:
    if not re.search(rb"/ID ?\[<[^>]", document.bytes) or b"/Encrypt " in document.bytes:
        yield "trailer"
    if not re.search(rb"%%EOF(\r\n|\r|\n)?\Z", document.bytes):
        yield document.bytes[-16:]


@rule("6.1.7")
def streams(document: Document) -> Breaks:
    yield from re.findall(rb"[^\r\n]endstream\b", document.bytes)
    for item in document.encoded.values():
        entries = item.get("stream", {"dict": {}})["dict"]
        used = entries.get("/Filter", [])
        yield from ({used} if isinstance(used, str) else set(used)) - FILTERS
        yield from entries.keys() & {"/F", "/FFilter", "/FDecodeParms"}


@rule("6.1.13")
def limits(document: Document) -> Breaks:
    for value in document.values(document.objects):
        if isinstance(value, int) and not -(2**31) <= value < 2**31:
            yield value
        elif isinstance(value, float) and not (value == 0 or 1.175e-38 <= abs(value) <= 3.403e38):
            yield value
        elif isinstance(value, str):
            size = (len(value) - 2) // 2 if value.startswith("b:") else len(text(value).encode())
            if size > 32767 or (value.startswith("/") and len(value.encode()) > 128):
                yield value[:40]
    for page, _, _ in document.pages:
        for box in filter(None, (document.get(page, key) for key in ("/MediaBox", "/CropBox"))):
            yield from (side for side in (box[2] - box[0], box[3] - box[1]) if not 3 <= abs(side) <= 14400)


@rule("6.1.13")
def content_limits(document: Document) -> Breaks:
    for _, content, _ in document.pages:
        depth = 0
        for match in TOKEN.finditer(content):
            token = match.group()
            depth += {b"q": 1, b"Q": -1}.get(token, 0)
            size = 128 if match["name"] else 65536 if match["hex"] else 32769
            is_large = match["number"] and (abs(float(token)) > 3.403e38 or (token.isdigit() and int(token) >= 2**31))
            if not 0 <= depth <= 28 or is_large or len(token) > size:
                yield token
        if depth != 0:
            yield f"{depth} levels stay open"


@rule("6.2.2")
def operators(document: Document) -> Breaks:
    for _, content, resources in document.pages:
        name = ""
        for match in TOKEN.finditer(content):
            name = match.group().decode() if match["name"] else name
            category = NAMED_RESOURCES.get(match.group())
            is_unknown = match["operator"] and match.group() not in OPERATORS
            if is_unknown or (category and document.get(resources, category, name) is None):
                yield match.group(), name


@rule("6.2.3")
def output_intent(document: Document) -> Breaks:
    intents = [document.get(intent) for intent in document.get(document.root, "/OutputIntents") or []]
    profiles = [intent.get("/DestOutputProfile") for intent in intents if intent.get("/S") == "/GTS_PDFA1"]
    if len(profiles) != 1 or document.get(profiles[0], "/N") != 3:
        yield intents
    for profile in map(document.data, profiles):
        if profile[12:20] not in (b"mntrRGB ", b"prtrRGB ") or profile[8] > 4 or profile[36:40] != b"acsp":
            yield profile[:40]


@rule("6.2.4")
def color_spaces(document: Document) -> Breaks:
    yield from (value for value in document.values(document.objects) if isinstance(value, str) and value in FORBIDDEN_SPACES)


@rule("6.2.5, 6.2.10")
def graphics_states(document: Document) -> Breaks:
    for value in document.dictionaries:
        yield from value.keys() & {"/TR", "/TR2", "/HTP", "/HT"}
        if value.get("/BM", "/Normal") not in BLEND_MODES:
            yield value["/BM"]


@rule("6.2.8, 6.2.9")
def external_objects(document: Document) -> Breaks:
    for value in document.dictionaries:
        yield from value.keys() & {"/Alternates", "/OPI", "/PS", "/Ref"}
        if value.get("/Subtype") == "/PS" or value.get("/Interpolate"):
            yield value
        if value.get("/BitsPerComponent", 1) not in (1, 2, 4, 8, 16):
            yield value


@rule("6.2.11.2")
def fonts(document: Document) -> Breaks:
    for value in (value for value in document.dictionaries if value.get("/Type") == "/Font"):
        if value.get("/Subtype") not in ("/Type0", "/CIDFontType0", "/CIDFontType2") or "/BaseFont" not in value:
            yield value
    for font, cid_font, descriptor, program in document.cid_fonts():
        is_cff = cid_font["/Subtype"] == "/CIDFontType0" and "/FontFile3" in descriptor
        if program.startswith(b"OTTO") != is_cff:
            yield font


@rule("6.2.11.3")
def codes(document: Document) -> Breaks:
    for font, cid_font, _, _ in document.cid_fonts():
        has_map = cid_font["/Subtype"] != "/CIDFontType2" or "/CIDToGIDMap" in cid_font
        if font.get("/Encoding") not in ("/Identity-H", "/Identity-V") or not has_map:
            yield font


@rule("6.2.11.4")
def embedding(document: Document) -> Breaks:
    yield from (font for font, _, _, program in document.cid_fonts() if not program)


def advances(program: bytes) -> list[float]:
    """The widths of all glyphs of an OpenType font, in thousandths."""
    records = (struct.unpack_from(">4sII4x", program, 12 + 16 * i) for i in range(program[5]))
    table = {tag: struct.unpack_from(">I", program, 20 + 16 * i)[0] for i, (tag, _, _) in enumerate(records)}
    (em,), (glyphs,) = (struct.unpack_from(">H", program, at) for at in (table[b"head"] + 18, table[b"maxp"] + 4))
    last = struct.unpack_from(">H", program, table[b"hhea"] + 34)[0] - 1
    units = (struct.unpack_from(">H", program, table[b"hmtx"] + 4 * min(i, last))[0] for i in range(glyphs))
    return [width * 1000 / em for width in units]


def dictionary_widths(items: list[Json]) -> dict[int, float]:
    """Those that a font dictionary lists, by glyph."""
    widths: dict[int, float] = {}
    while items:
        first, second, *items = items
        if isinstance(second, list):
            widths.update(enumerate(second, first))
        else:
            width, *items = items
            widths.update(dict.fromkeys(range(first, second + 1), width))
    return widths


@rule("6.2.11.5")
def widths(document: Document) -> Breaks:
    fonts_by_name = {font.get("/BaseFont"): (cid_font, program) for font, cid_font, _, program in document.cid_fonts()}
    for name, used in document.shown_glyphs():
        cid_font, program = fonts_by_name.get(name, ({}, b""))
        right = advances(program) if program else []
        written = dictionary_widths(document.get(cid_font, "/W") or [])
        for glyph in used - {0} if program else ():
            if glyph >= len(right) or abs(written.get(glyph, cid_font.get("/DW", 1000)) - right[glyph]) > 1:
                yield name, glyph


@rule("6.2.11.8")
def missing_glyphs(document: Document) -> Breaks:
    yield from (name for name, used in document.shown_glyphs() if 0 in used)


@rule("6.3")
def annotations(document: Document) -> Breaks:
    for note in (document.get(note) for page, _, _ in document.pages for note in document.get(page, "/Annots") or []):
        if note.get("/Subtype") not in ("/Link", "/Square") or note.get("/F", 0) & 0b100100111 != 4:
            yield note
        if note.get("/Subtype") == "/Square" and (document.get(note, "/AP") or {}).keys() != {"/N"}:
            yield note


@rule("6.5")
def actions(document: Document) -> Breaks:
    for value in document.dictionaries:
        yield from value.keys() & {"/AA", "/JS", "/OpenAction"}
        if "/A" in value and "/Rect" in value and document.get(value, "/A", "/S") not in ("/URI", "/GoTo"):
            yield value


@rule("6.6")
def metadata(document: Document) -> Breaks:
    properties = document.packet
    head = document.data(document.root.get("/Metadata"))[:100]
    if document.get(document.root, "/Metadata", "/Subtype") != "/XML" or re.search(rb"(bytes|encoding)=", head):
        yield head
    yield from properties.keys() - PROPERTIES.keys() - {"dc:format", "xmp:MetadataDate", "pdfaid:part", "pdfaid:conformance"}
    if properties.get("pdfaid:part") not in ("2", "3") or properties.get("pdfaid:conformance") != "B":
        yield "no level"
    information = document.get(document.trailer, "/Info") or {}
    date = re.compile(r"D:(\d{4})(\d\d)(\d\d)(\d\d)(\d\d)(\d\d)(Z)?(?:([+-]\d\d)'(\d\d)')?")
    for name, key in PROPERTIES.items():
        entry = date.sub(r"\1-\2-\3T\4:\5:\6\7\8:\9", text(information.get(key))).rstrip(":")
        if entry != (properties.get(name) or ""):
            yield name, entry


@rule("6.8")
def attachments(document: Document) -> Breaks:
    associated = document.get(document.root, "/AF") or []
    for reference, item in document.objects.items():
        value = item.get("value")
        if not isinstance(value, dict) or "/EF" not in value:
            continue
        stream = document.get(value, "/EF", "/F")
        has_type = re.fullmatch(r"/[-\w+.]+/[-\w+.]+", stream.get("/Subtype", ""))
        is_associated = reference.removeprefix("obj:") in associated and document.packet.get("pdfaid:part") == "3"
        if not has_type or not is_associated or "/ModDate" not in stream.get("/Params", {}):
            yield value
        yield from {"/F", "/UF", "/AFRelationship", "/Desc"} - value.keys()


@rule("6.9")
def layers(document: Document) -> Breaks:
    properties = document.get(document.root, "/OCProperties") or {"/D": {"/Name": "u:none"}}
    configuration = document.get(properties, "/D")
    order = json.dumps(document.get(configuration, "/Order"))
    yield from (group for group in properties.get("/OCGs", []) if f'"{group}"' not in order)
    yield from configuration.keys() & {"/AS"}
    yield from properties.keys() - {"/OCGs", "/D"}
    if not text(configuration.get("/Name")):
        yield configuration


@rule("6.1.12, 6.4, 6.10, 6.11")
def catalog(document: Document) -> Breaks:
    yield from document.root.keys() & {"/AcroForm", "/NeedsRendering", "/Requirements", "/Perms"}
    yield from (document.get(document.root, "/Names") or {}).keys() - {"/EmbeddedFiles"}
    yield from ("/PresSteps" for page, _, _ in document.pages if "/PresSteps" in page)


def check(path: Path) -> list[str]:
    """What breaks the rules, each behind its clause."""
    document = Document(path)
    return [f"{clause}: {found}" for clause, function in RULES for found in function(document)]


if __name__ == "__main__":
    breaks = [f"{name}: {line}"[:300] for name in sys.argv[1:] for line in check(Path(name))]
    print(*breaks, sep="\n")
    sys.exit(1 if breaks else 0)
