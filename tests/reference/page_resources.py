"""What a PDF's pages hold beside content and fonts: images, annotations, measures and layers."""

from __future__ import annotations

import re
from typing import Any, Callable

from image_model import mean_color
from number_forms import f32
from pdf_error import require
from plotted_job import Annotation, PageImage

Entries = dict[str, Any]
COMMENT_TITLE = "u:Orvane SHX Text"
BLACK_AND_WHITE = b"\0\0\0\xff\xff\xff"
# PDFDocEncoding of ISO 32000-1, annex D.2, where it differs from Latin-1; what has no character is left out.
PDF_DOC = dict(zip(range(0x18, 0x20), "˘ˇˆ˙˝˛˚˜", strict=True))
PDF_DOC |= dict(zip(range(0x80, 0x9F), "•†‡…—–ƒ⁄‹›−‰„“”‘’‚™ﬁﬂŁŒŠŸŽıłœšž", strict=True)) | {0xA0: "€"}
PDF_DOC = {code: chr(code) for code in range(256) if code not in (0x7F, 0x9F, 0xAD)} | PDF_DOC
PDF_DOC_CODES = {character: code for code, character in PDF_DOC.items()}
WIDE_STRING = re.compile(rb"/(?:Name|Contents|T) ?\(\xfe\xff((?:[^\\()]|\\.)*)\)", re.DOTALL)

ESCAPE, ESCAPED = re.compile(rb"\\(.)", re.DOTALL), {b"r": b"\r", b"n": b"\n"}


def string_bytes(value: str) -> bytes:
    """The bytes of a string that holds no UTF-16."""
    if value.startswith("b:"):
        return bytes.fromhex(value[2:])
    return bytes(PDF_DOC_CODES[character] for character in value[2:])


def string_text(value: str) -> str:
    """The characters of a text string."""
    return value[2:] if value.startswith("u:") else "".join(PDF_DOC[code] for code in string_bytes(value))


def check_wide_strings(file: bytes) -> None:
    """Holds the text strings of a PDF file to single bytes wherever these can hold them."""
    for match in WIDE_STRING.finditer(file):
        data = ESCAPE.sub(lambda found: ESCAPED.get(found[1], found[1]), match[1])
        text = data.decode("utf-16-be", "replace")
        require(not set(text) <= set(PDF_DOC_CODES), f"{text!r} is UTF-16 and could be single bytes")


def read_annotation(entries: Entries) -> Annotation:
    """An annotation of a page, held to what every link and comment has."""
    rest = dict(entries)
    left, bottom, right, top = (f32(float(value)) for value in rest.pop("/Rect"))
    rect = (left, bottom, right, top)
    common = {"/Type": "/Annot", "/Border": [0, 0, 0]}
    if rest.get("/Subtype") == "/Link":
        target = rest.get("/A", {}).get("/URI", "u:")
        action = {"/Type": "/Action", "/S": "/URI", "/URI": target}
        require(rest == common | {"/Subtype": "/Link", "/A": action}, f"a link {entries}")
        return Annotation("link", rect, string_bytes(target).decode("latin-1"))
    words, flags = rest.pop("/Contents", "u:"), rest.pop("/F", None)
    require(rest == common | {"/Subtype": "/Square", "/T": COMMENT_TITLE}, f"a comment {entries}")
    require(isinstance(flags, int), f"flags {flags}")
    return Annotation("comment", rect, string_text(words), flags % 0x100000000)


def read_measure(viewports: Any) -> float:
    """The scale of a page's measure, ISO 32000-1, 12.9, whose objects are all direct."""
    try:
        factor = viewports[0]["/Measure"]["/X"][0]["/C"]
    except (LookupError, TypeError):
        factor = 0
    x, one = ([{"/C": value, "/U": "u: "}] for value in (factor, 1))
    measure = {"/Type": "/Measure", "/Subtype": "/RL", "/R": "u: ", "/X": x, "/A": one, "/D": one}
    expected = [{"/Type": "/Viewport", "/BBox": [0, 0, 0, 0], "/Measure": measure}]
    require(viewports == expected, f"viewports {viewports}")
    return f32(float(factor))


def read_layers(properties: Entries, value: Callable[[Any], Any]) -> tuple[list[str], list[str], list[int]]:
    """A document's groups: references and names in the order of first use, and the order of their list."""
    groups = properties.get("/OCGs", [])
    order = properties.get("/D", {}).get("/Order", [])
    expected = {"/OCGs": groups, "/PageMode": "/UseOC", "/D": {"/OFF": [], "/Order": order}}
    require(properties == expected, f"layers {properties}")
    once = sorted(groups) == sorted(order) and len(set(groups)) == len(groups)
    require(once, f"groups {groups}, listed {order}")
    names = []
    for group in map(value, groups):
        require(set(group) == {"/Type", "/Name"} and group["/Type"] == "/OCG", f"a group {group}")
        names.append(string_text(group["/Name"]))
    return groups, names, [groups.index(reference) + 1 for reference in order]


class ImageReader:
    """Reads images; `entries` gives a stream's dictionary, `data` its bytes and `decoded` those of a JPEG."""

    def __init__(
        self,
        value: Callable[[Any], Any],
        entries: Callable[[str], Entries],
        data: Callable[[str], bytes],
        decoded: Callable[[str], bytes],
    ) -> None:
        self._value = value
        self._entries = entries
        self._data = data
        self._decoded = decoded

    def read(self, reference: str) -> PageImage:
        """Reads one image, held to what every image has."""
        image = dict(self._entries(reference))
        width, height = image["/Width"], image["/Height"]
        bits, space = image["/BitsPerComponent"], self._value(image["/ColorSpace"])
        mask = self._mask(image.pop("/SMask"), width, height) if "/SMask" in image else ""
        if image.get("/Filter") == "/DCTDecode":
            require((space, bits) == ("/DeviceRGB", 8), f"a JPEG in {space} of {bits} bits")
            channels = self._decoded(reference)
            require(len(channels) == 3 * width * height, f"{len(channels)} bytes of a JPEG")
            return PageImage(width, height, "jpeg", mean_color(channels), mask)
        data = self._data(reference)
        if bits == 1:
            indexed = space[:3] == ["/Indexed", "/DeviceRGB", 1] and self._table(space[3]) == BLACK_AND_WHITE
            require(indexed and not mask, f"an image of one bit in {space}")
            length = (width + 7) // 8
            require(len(data) == length * height, f"{len(data)} bytes for {width} x {height} bits")
            values = "".join(f"{byte:08b}" for byte in data)
            rows = (values[start : start + width] for start in range(0, len(values), 8 * length))
            return PageImage(width, height, "bits", "".join(rows))
        require((space, bits) == ("/DeviceRGB", 8), f"an image in {space} of {bits} bits")
        require(len(data) == 3 * width * height, f"{len(data)} bytes for {width} x {height} colours")
        return PageImage(width, height, "rgb", data.hex(), mask)

    def _table(self, table: str) -> bytes:
        return self._data(table) if table.endswith(" R") else string_bytes(table)

    def _mask(self, reference: str, width: int, height: int) -> str:
        entries = {key: value for key, value in self._entries(reference).items() if key != "/Length"}
        expected = {"/Type": "/XObject", "/Subtype": "/Image", "/Width": width, "/Height": height}
        expected |= {"/ColorSpace": "/DeviceGray", "/BitsPerComponent": 8}
        require(entries == expected, f"a soft mask {entries}")
        data = self._data(reference)
        require(len(data) == width * height, f"{len(data)} bytes for a mask of {width} x {height}")
        return data.hex()
