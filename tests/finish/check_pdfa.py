"""Checks a PDF against the rules of PDF/A-2b and 3b that a plot can break (ISO 19005-2:2011, ISO 19005-3:2012).

    check_pdfa.py FILE.pdf ...

Prints each break with its clause. Composite fonts, images in gray and RGB, links and comments are known; what a rule
cannot judge counts as a break. Needs the command qpdf.
"""

from __future__ import annotations

import base64
import json
import re
import struct
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from collections.abc import Callable, Iterator
from pathlib import Path
from typing import Any

Json = Any  # an object as qpdf writes it: "u:text" and "b:hex" are strings, "/Name" names, "1 0 R" references

TOKEN = re.compile(
    rb"%[^\r\n]*|(?P<string>\((?:\\.|[^\\()])*\))|(?P<hex><[^<>]*>)|<<|>>|[\[\]]"
    rb"|(?P<name>/[^\s()<>\[\]{}/%]*)|(?P<number>[+-]?[\d.]+)(?![^\s()<>\[\]{}/%])|(?P<operator>[^\s()<>\[\]{}/%]+)",
    re.DOTALL,
)
OPERATORS = frozenset(
    b"b B b* B* BDC BMC BT BX c cm d Do DP EMC ET EX f F f* g G gs h i j J l m M MP n q Q re rg RG ri s S T* Tc Td TD "
    b"Tf Tj TJ TL Tm Tr Ts Tw Tz v w W W* y true false null".split()
)
FILTERS = {f"/{name}" for name in "ASCIIHexDecode ASCII85Decode FlateDecode RunLengthDecode DCTDecode".split()}
BLEND_MODES = {
    f"/{name}"
    for name in "Normal Compatible Multiply Screen Overlay Darken Lighten ColorDodge ColorBurn HardLight SoftLight "
    "Difference Exclusion Hue Saturation Color Luminosity".split()
}
ACTIONS = {f"/{name}" for name in "GoTo GoToR GoToE Thread URI Named SubmitForm".split()}
XMP = {"rdf": "http://www.w3.org/1999/02/22-rdf-syntax-ns#"} | {
    "dc": "http://purl.org/dc/elements/1.1/",
    "pdf": "http://ns.adobe.com/pdf/1.3/",
    "pdfaid": "http://www.aiim.org/pdfa/ns/id/",
    "xmp": "http://ns.adobe.com/xap/1.0/",
}
PROPERTIES = {  # with the entries of the information dictionary that they equal
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
    """The objects of a PDF by "1 0 R", and "trailer"."""
    command = ["qpdf", "--json=2", "--json-key=qpdf", *options, "--warning-exit-0", str(path)]
    run = subprocess.run(command, capture_output=True, check=True)
    objects = json.loads(run.stdout)["qpdf"][1]
    return {name.removeprefix("obj:"): value for name, value in objects.items()}


class Document:
    """A PDF, and what its rules ask of it."""

    def __init__(self, path: Path) -> None:
        self.bytes = path.read_bytes()
        self.encoded = read_json(path, "--json-stream-data=none")  # dictionaries with their filters
        self.objects = read_json(path, "--json-stream-data=inline", "--decode-level=generalized")
        self.trailer = self.objects["trailer"]["value"]
        self.root = self.get(self.trailer["/Root"])
        pages = [value for value in self.dictionaries() if value.get("/Type") == "/Page"]
        self.pages = [(page, self.content(page), self.get(page, "/Resources") or {}) for page in pages]

    def get(self, value: Json, *keys: str) -> Json:
        """What a value and then its entries refer to; streams as their dictionaries, null for what is not there."""
        for key in (None, *keys):
            if key is not None:
                value = value.get(key) if isinstance(value, dict) else None
            if isinstance(value, str) and value in self.objects:
                item = self.objects[value]
                value = item["stream"]["dict"] if "stream" in item else item["value"]
        return value

    def data(self, reference: str) -> bytes:
        """A stream without its filters."""
        return base64.b64decode(self.objects[reference]["stream"]["data"])

    def values(self, objects: dict[str, Json] | None = None) -> Iterator[Json]:
        """Every value of the file but the trailer, those within others included."""
        stack = [item for name, item in (objects or self.objects).items() if name != "trailer"]
        stack = [item["stream"]["dict"] if "stream" in item else item["value"] for item in stack]
        while stack:
            value = stack.pop()
            yield value
            if isinstance(value, dict | list):
                stack.extend(value.values() if isinstance(value, dict) else value)
            if isinstance(value, dict):
                stack.extend(value)

    def dictionaries(self) -> list[dict[str, Json]]:
        """Those that any value of the file is."""
        return [value for value in self.values() if isinstance(value, dict)]

    def content(self, page: Json) -> bytes:
        """All of a page's content streams."""
        contents = page.get("/Contents", [])
        if isinstance(contents, str) and "value" in self.objects[contents]:
            contents = self.objects[contents]["value"]
        return b"\n".join(map(self.data, [contents] if isinstance(contents, str) else contents))

    def annotations(self) -> list[Json]:
        """Those of all pages."""
        return [self.get(note) for page, _, _ in self.pages for note in self.get(page, "/Annots") or []]


RULES: list[tuple[str, Callable[[Document], Iterator[object]]]] = []


def rule(clause: str) -> Callable[..., Any]:
    """Enters a function that gives what breaks a rule."""

    def enter(function: Callable[[Document], Iterator[object]]) -> object:
        RULES.append((clause, function))
        return function

    return enter


def text(value: Json) -> str:
    """A string of qpdf's."""
    return value[2:] if isinstance(value, str) and value.startswith("u:") else ""


@rule("6.1.2")
def header(document: Document) -> Iterator[object]:
    if not re.match(rb"%PDF-1\.[0-7](\r\n|\r|\n)%[\x80-\xff]{4}", document.bytes):
        yield document.bytes[:16]


@rule("6.1.3")
def trailer(document: Document) -> Iterator[object]:
    yield from (key for key in ["/Encrypt"] if key in document.trailer)
    identifier = document.trailer.get("/ID")
    if not identifier or not all(len(part) > 2 for part in identifier):
        yield "no identifier"
    if not re.search(rb"%%EOF(\r\n|\r|\n)?\Z", document.bytes):
        yield document.bytes[-16:]


@rule("6.1.7.1")
def stream_ends(document: Document) -> Iterator[object]:
    yield from re.findall(rb"[^\r\n]endstream\b", document.bytes)
    yield from (value for value in document.dictionaries() if {"/F", "/Length"} <= value.keys())


@rule("6.1.7.2")
def filters(document: Document) -> Iterator[object]:
    for value in document.values(document.encoded):
        used = value.get("/Filter", []) if isinstance(value, dict) else []
        yield from {used} - FILTERS if isinstance(used, str) else set(used) - FILTERS


@rule("6.1.13")
def limits(document: Document) -> Iterator[object]:
    for value in document.values():
        if isinstance(value, int) and not -(2**31) <= value < 2**31:
            yield value
        elif isinstance(value, float) and not (value == 0 or 1.175e-38 <= abs(value) <= 3.403e38):
            yield value
        elif isinstance(value, str):
            size = (len(value) - 2) // 2 if value.startswith("b:") else len(text(value).encode())
            if size > 32767 or (value.startswith("/") and len(value.encode()) > 128):
                yield value[:40]
    for page, _, _ in document.pages:
        for box in filter(None, (document.get(page, key) for key in ("/MediaBox", "/CropBox", "/TrimBox"))):
            sides = abs(box[2] - box[0]), abs(box[3] - box[1])
            yield from (side for side in sides if not 3 <= side <= 14400)


@rule("6.1.13")
def content_limits(document: Document) -> Iterator[object]:
    for _, content, _ in document.pages:
        depth = 0
        for match in TOKEN.finditer(content):
            token = match.group()
            depth += {b"q": 1, b"Q": -1}.get(token, 0)
            if not 0 <= depth <= 28 or (match["name"] and len(token) > 128) or (match["string"] and len(token) > 32769):
                yield token
            if match["number"] and (abs(float(token)) > 3.403e38 or (b"." not in token and abs(int(token)) >= 2**31)):
                yield token
        if depth != 0:
            yield f"{depth} levels stay open"


@rule("6.2.2")
def operators(document: Document) -> Iterator[object]:
    for _, content, resources in document.pages:
        names: list[bytes] = []
        for match in TOKEN.finditer(content):
            if match["name"]:
                names.append(match.group())
            if not match["operator"]:
                continue
            category = {b"Do": "/XObject", b"Tf": "/Font", b"gs": "/ExtGState"}.get(match.group())
            if match.group() not in OPERATORS:
                yield match.group()
            if category and document.get(resources, category, names[-1].decode()) is None:
                yield names[-1]


@rule("6.2.3")
def output_intent(document: Document) -> Iterator[object]:
    intents = [document.get(intent) for intent in document.get(document.root, "/OutputIntents") or []]
    intents = [intent for intent in intents if intent.get("/S") == "/GTS_PDFA1"]
    if len(intents) != 1:
        yield f"{len(intents)} output intents"
    for intent in intents:
        profile = document.data(intent["/DestOutputProfile"]) if "/DestOutputProfile" in intent else b""
        if profile[12:20] not in (b"mntrRGB ", b"prtrRGB ") or profile[8] > 4 or profile[36:40] != b"acsp":
            yield profile[:40]
        if document.get(intent, "/DestOutputProfile", "/N") != 3:
            yield "not three components"


@rule("6.2.4")
def color_spaces(document: Document) -> Iterator[object]:
    for value in document.values():
        if isinstance(value, str) and value in ("/DeviceCMYK", "/DeviceN", "/Separation", "/ICCBased", "/Pattern"):
            yield value


@rule("6.2.5")
def graphics_states(document: Document) -> Iterator[object]:
    for value in document.dictionaries():
        yield from value.keys() & {"/TR", "/HTP", "/HT"}
        if value.get("/TR2", "/Default") != "/Default":
            yield "/TR2"


@rule("6.2.8")
def images(document: Document) -> Iterator[object]:
    for value in (value for value in document.dictionaries() if value.get("/Subtype") == "/Image"):
        yield from value.keys() & {"/Alternates", "/OPI"}
        if value.get("/Interpolate") or value.get("/BitsPerComponent", 1) not in (1, 2, 4, 8, 16):
            yield value


@rule("6.2.9")
def forms(document: Document) -> Iterator[object]:
    for value in document.dictionaries():
        if value.get("/Subtype") == "/PS" or (value.get("/Subtype") == "/Form" and {"/OPI", "/PS", "/Ref"} & value.keys()):
            yield value


@rule("6.2.10")
def blend_modes(document: Document) -> Iterator[object]:
    yield from (value["/BM"] for value in document.dictionaries() if value.get("/BM", "/Normal") not in BLEND_MODES)


def cid_fonts(document: Document) -> Iterator[tuple[Json, Json, bytes | None]]:
    """Composite fonts with their descendants and programs."""
    for value in (value for value in document.dictionaries() if value.get("/Subtype") == "/Type0"):
        (font,) = (document.get(item) for item in document.get(value, "/DescendantFonts"))
        descriptor = document.get(font, "/FontDescriptor")
        program = descriptor.get("/FontFile2") or descriptor.get("/FontFile3")
        yield value, font, document.data(program) if program else None


def tables(program: bytes) -> dict[bytes, bytes]:
    """Those of an OpenType font."""
    records = (struct.unpack_from(">4sIII", program, 12 + 16 * i) for i in range(struct.unpack_from(">H", program, 4)[0]))
    return {tag: program[offset : offset + length] for tag, _, offset, length in records}


def advances(program: bytes) -> list[float]:
    """The widths of all glyphs, in thousandths."""
    table = tables(program)
    em, glyphs = struct.unpack_from(">H", table[b"head"], 18)[0], struct.unpack_from(">H", table[b"maxp"], 4)[0]
    last = struct.unpack_from(">H", table[b"hhea"], 34)[0] - 1
    return [struct.unpack_from(">H", table[b"hmtx"], 4 * min(i, last))[0] * 1000 / em for i in range(glyphs)]


def dictionary_widths(document: Document, font: Json) -> dict[int, float]:
    """The widths that a font dictionary lists."""
    widths: dict[int, float] = {}
    items = list(document.get(font, "/W") or [])
    while items:
        first, second, *items = items
        if isinstance(second, list):
            widths.update(enumerate(second, first))
        else:
            width, *items = items
            widths.update(dict.fromkeys(range(first, second + 1), width))
    return widths


@rule("6.2.11.2")
def fonts(document: Document) -> Iterator[object]:
    for value in (value for value in document.dictionaries() if value.get("/Type") == "/Font"):
        if value.get("/Subtype") not in ("/Type0", "/CIDFontType0", "/CIDFontType2") or "/BaseFont" not in value:
            yield value
    for value, font, program in cid_fonts(document):
        descriptor = document.get(font, "/FontDescriptor")
        has_cff = program is not None and program.startswith(b"OTTO")
        if program and has_cff != ("/FontFile3" in descriptor and font["/Subtype"] == "/CIDFontType0"):
            yield value


@rule("6.2.11.3")
def codes(document: Document) -> Iterator[object]:
    for value, font, _ in cid_fonts(document):
        if value.get("/Encoding") not in ("/Identity-H", "/Identity-V"):
            yield value.get("/Encoding")
        if font["/Subtype"] == "/CIDFontType2" and "/CIDToGIDMap" not in font:
            yield "no CIDToGIDMap"


@rule("6.2.11.4")
def embedding(document: Document) -> Iterator[object]:
    yield from (value["/BaseFont"] for value, _, program in cid_fonts(document) if program is None)


def shown(document: Document) -> Iterator[tuple[Json, set[int]]]:
    """The glyphs that each page shows, by font."""
    for _, content, resources in document.pages:
        glyphs: dict[str, set[int]] = {}
        name = font = ""
        for match in TOKEN.finditer(content):
            name = match.group().decode() if match["name"] else name
            font = name if match.group() == b"Tf" else font
            if match["hex"]:
                digits = match.group()[1:-1].decode()
                glyphs.setdefault(font, set()).update(int(digits[i : i + 4], 16) for i in range(0, len(digits), 4))
        for key, used in glyphs.items():
            yield document.get(resources, "/Font", key), used


@rule("6.2.11.5")
def widths(document: Document) -> Iterator[object]:
    by_name = {value["/BaseFont"]: (font, program) for value, font, program in cid_fonts(document) if program}
    for value, used in shown(document):
        font, program = by_name.get((value or {}).get("/BaseFont"), (None, None))
        if program is None:
            continue
        right, written = advances(program), dictionary_widths(document, font)
        for glyph in used - {0}:
            if glyph >= len(right) or abs(written.get(glyph, font.get("/DW", 1000)) - right[glyph]) > 1:
                yield value["/BaseFont"], glyph


@rule("6.2.11.8")
def missing_glyphs(document: Document) -> Iterator[object]:
    yield from (value and value["/BaseFont"] for value, used in shown(document) if 0 in used)


@rule("6.3")
def annotations(document: Document) -> Iterator[object]:
    for note in document.annotations():
        if note.get("/Subtype") not in ("/Link", "/Square", "/Popup") or note.get("/F", 0) & 0b100100111 != 4:
            yield note
        appearance = document.get(note, "/AP")
        if note.get("/Subtype") == "/Square" and (appearance is None or set(appearance) != {"/N"}):
            yield note


@rule("6.5")
def actions(document: Document) -> Iterator[object]:
    yield from (value for value in document.dictionaries() if "/AA" in value)
    for value in document.dictionaries():
        action = document.get(value, "/A") if "/Subtype" in value else document.get(value, "/OpenAction")
        if isinstance(action, dict) and (action.get("/S") not in ACTIONS or "/JS" in action):
            yield action


def packet(document: Document) -> tuple[bytes, dict[str, str | None]]:
    """The XMP packet, and its properties by prefix and name."""
    reference = document.root.get("/Metadata")
    data = document.data(reference) if reference else b""
    properties = {}
    for node in ElementTree.fromstring(data or b"<none/>").iterfind("rdf:RDF/rdf:Description/*", XMP):
        space, name = node.tag[1:].split("}")
        prefix = next((key for key, uri in XMP.items() if uri == space), space)
        items = [item.text for item in node.iter(f"{{{XMP['rdf']}}}li")]
        properties[f"{prefix}:{name}"] = items[0] if items else node.text
    return data, properties


@rule("6.6")
def metadata(document: Document) -> Iterator[object]:
    try:
        data, properties = packet(document)
        data.decode()
    except (ElementTree.ParseError, UnicodeDecodeError) as error:
        yield error
        return
    if document.get(document.root, "/Metadata", "/Subtype") != "/XML" or re.search(rb"\?xpacket[^?]*(bytes|encoding)=", data):
        yield data[:60]
    known = PROPERTIES.keys() | {"dc:format", "xmp:MetadataDate", "pdfaid:part", "pdfaid:conformance"}
    yield from properties.keys() - known
    if properties.get("pdfaid:part") not in ("2", "3") or properties.get("pdfaid:conformance") != "B":
        yield "no level"
    information = document.get(document.trailer, "/Info") or {}
    for name, key in PROPERTIES.items():
        entry, date = text(information.get(key)), r"D:(\d{4})(\d\d)(\d\d)(\d\d)(\d\d)(\d\d)"
        entry = re.sub(date + r"(?:(Z)|([+-]\d\d)'(\d\d)'?)?", r"\1-\2-\3T\4:\5:\6\7\8:\9", entry).rstrip(":")
        if entry != (properties.get(name) or ""):
            yield name, entry


@rule("6.8")
def attachments(document: Document) -> Iterator[object]:
    associated = document.get(document.root, "/AF") or []
    part = packet(document)[1].get("pdfaid:part")
    for reference, item in document.objects.items():
        value = item.get("value")
        if not isinstance(value, dict) or "/EF" not in value:
            continue
        stream = document.get(value, "/EF", "/F")
        kind = re.fullmatch(r"/[-\w+.]+/[-\w+.]+", str(stream.get("/Subtype")))
        if part == "2" or reference not in associated or not kind or not stream.get("/Params", {}).get("/ModDate"):
            yield value
        if not {"/F", "/UF", "/AFRelationship", "/Desc"} <= value.keys():
            yield value


@rule("6.9")
def layers(document: Document) -> Iterator[object]:
    properties = document.get(document.root, "/OCProperties")
    if properties is None:
        return
    configuration = document.get(properties, "/D")
    if not text(configuration.get("/Name")):
        yield "no name"
    order = json.dumps(document.get(configuration, "/Order"))
    yield from (group for group in document.get(properties, "/OCGs") if f'"{group}"' not in order)
    yield from configuration.keys() & {"/AS"}
    yield from properties.keys() - {"/OCGs", "/D", "/Configs"}


@rule("6.4, 6.10, 6.11, 6.1.12")
def catalog(document: Document) -> Iterator[object]:
    yield from document.root.keys() & {"/AcroForm", "/NeedsRendering", "/Requirements", "/Perms"}
    names = document.get(document.root, "/Names") or {}
    yield from names.keys() & {"/AlternatePresentations", "/JavaScript"}
    yield from ("/PresSteps" for page, _, _ in document.pages if "/PresSteps" in page)


def check(path: Path) -> list[str]:
    """The breaks of rules in a file, each behind its clause."""
    document = Document(path)
    return [f"{clause}: {found}" for clause, function in RULES for found in function(document)]


def main() -> int:
    """Checks the files of the command line."""
    found = [(name, line) for name in sys.argv[1:] for line in check(Path(name))]
    for name, line in found:
        print(f"{name}: {line}"[:300])
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
