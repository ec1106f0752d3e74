"""Looks into a PDF through qpdf: pages, decoded streams, resources and the document's own entries."""

from __future__ import annotations

import base64
import json
import re
import subprocess
from pathlib import Path
from typing import Any

from embedded_fonts import EmbeddedFont, FontReader
from page_resources import ImageReader, check_wide_strings, read_annotation, read_layers, read_measure
from pdf_error import PdfError
from plotted_job import PageImage, PlottedPage

REFERENCE = re.compile(r"^\d+ \d+ R$")
SHOWN_CODES = re.compile(r"/(\S+) (\S+ Tf \d Tr) <(\w*)> Tj")
DATE = re.compile(r"^u:D:\d{14}$")
# qpdf reads a whole number in a page stream as a 64-bit integer and stops at one that is larger. A point far
# off the sheet gives such a number by right.
LARGE_NUMBER = re.compile(r"overflow/underflow converting -?\d+ to 64-bit integer\nqpdf: errors detected")
HUGE_INTEGER = re.compile(rb"(?<=[\[ ])(-?\d{17,})\d\d(?=[\] ])")
PAGE_KEYS = {"/Type", "/Parent", "/MediaBox", "/Rotate", "/Resources", "/Contents", "/Annots", "/VP"}
RESOURCES = {"/ExtGState", "/Font", "/Properties", "/XObject"}
CATALOG_KEYS = {"/Type", "/Pages", "/OCProperties"}
PRODUCER = "pdf-ov.hdi"


def run_qpdf(*arguments: str) -> str:
    """Runs qpdf and gives its output; a warning counts as an error."""
    result = subprocess.run(["qpdf", *arguments], capture_output=True, text=True, check=False)
    if result.returncode != 0:
        complaint = result.stdout + result.stderr
        if not LARGE_NUMBER.search(complaint):
            raise PdfError(f"qpdf {' '.join(arguments)}: {complaint}")
    return result.stdout


class Pdf:
    """One PDF file, read whole."""

    def __init__(self, path: Path) -> None:
        # A link may cover such a point too, and qpdf loses the page then. As a real number of the same length,
        # a hundredth of the integer, it can be read.
        file = HUGE_INTEGER.sub(rb"\1.0", path.read_bytes())
        path.write_bytes(file)
        run_qpdf("--check", str(path))
        check_wide_strings(file)
        self._path = path
        document = self._read("generalized")
        self._objects: dict[str, Any] = document["qpdf"][1]
        self._page_keys: list[str] = [page["object"] for page in document["pages"]]
        self._trailer: dict[str, Any] = self._objects["trailer"]["value"]
        self._fonts: dict[str, EmbeddedFont] = {}
        self._groups: list[str] = []
        self._decoded: dict[str, Any] | None = None

    def _read(self, decode_level: str) -> Any:
        options = ("--json=2", "--json-stream-data=inline", f"--decode-level={decode_level}")
        return json.loads(run_qpdf(*options, str(self._path)))

    def layers(self) -> tuple[list[str], list[int]]:
        """The names of the layers' groups in the order of first use, and the order of a reader's list."""
        properties = self._value(self._trailer["/Root"]).get("/OCProperties")
        if properties is None:
            return [], []
        self._groups, names, order = read_layers(properties, self._value)
        return names, order

    def pages(self) -> list[PlottedPage]:
        """The pages, each held to what every page has; the layers are read before."""
        self._read_fonts()
        return [self._page(self._value(key)) for key in self._page_keys]

    def _read_fonts(self) -> None:
        """Reads all the fonts of the document, on pages or not; each may be there once."""
        reader = FontReader(self._value, self._stream_data)
        for key, entry in self._objects.items():
            value = entry.get("value")
            if isinstance(value, dict) and value.get("/Subtype") == "/Type0":
                self._fonts[key.removeprefix("obj:")] = reader.read(value)
        names = [font.page_font.name for font in self._fonts.values()]
        if len(set(names)) != len(names):
            raise PdfError(f"a font is embedded more than once: {sorted(names)}")

    def check_document(self, creator: str) -> None:
        """Holds the information dictionary and the catalog to what every plot has."""
        info = self._value(self._trailer["/Info"])
        if set(info) != {"/Producer", "/Creator", "/CreationDate"}:
            raise PdfError(f"information entries {sorted(info)}")
        if info["/Producer"] != f"u:{PRODUCER}" or info["/Creator"] != f"u:{creator}":
            raise PdfError(f"made by {info['/Producer']} and {info['/Creator']}")
        if not DATE.match(info["/CreationDate"]):
            raise PdfError(f"creation date {info['/CreationDate']}")
        unexpected = set(self._value(self._trailer["/Root"])) - CATALOG_KEYS
        if unexpected:
            raise PdfError(f"catalog entries {sorted(unexpected)}")

    def _page(self, page: dict[str, Any]) -> PlottedPage:
        if not set(page) <= PAGE_KEYS:
            raise PdfError(f"page entries {sorted(set(page) - PAGE_KEYS)}")
        if page["/Rotate"] != 0:
            raise PdfError(f"page turned by {page['/Rotate']}")
        resources = self._value(page["/Resources"])
        if not set(resources) <= RESOURCES:
            raise PdfError(f"resources {sorted(resources)}")
        fonts = {name[1:]: self._fonts[key] for name, key in self._value(resources.get("/Font", {})).items()}
        box = [float(value) for value in self._value(page["/MediaBox"])]
        return PlottedPage(
            media_box=(box[0], box[1], box[2], box[3]),
            graphic_states=self._graphic_states(resources),
            fonts={name: font.page_font for name, font in fonts.items()},
            scale=read_measure(page["/VP"]) if "/VP" in page else None,
            layers=self._page_layers(resources),
            images=self._images(resources),
            annotations=[read_annotation(annotation) for annotation in page.get("/Annots", [])],
            streams=[self._readable(stream, fonts) for stream in self._streams(page)],
        )

    def _page_layers(self, resources: dict[str, Any]) -> dict[str, int]:
        properties = self._value(resources.get("/Properties", {}))
        if not set(properties.values()) <= set(self._groups):
            raise PdfError(f"layers {properties} of a page beside {self._groups}")
        return {name[1:]: self._groups.index(group) + 1 for name, group in properties.items()}

    def _images(self, resources: dict[str, Any]) -> dict[str, PageImage]:
        reader = ImageReader(
            self._value, lambda key: self._object(key)["stream"]["dict"], self._stream_data, self._decoded_jpeg
        )
        images = self._value(resources.get("/XObject", {}))
        return {name[1:]: reader.read(reference) for name, reference in images.items()}

    def _decoded_jpeg(self, reference: str) -> bytes:
        if self._decoded is None:
            self._decoded = self._read("all")["qpdf"][1]
        stream = self._decoded[f"obj:{reference}"]["stream"]
        if "/Filter" in stream["dict"]:
            raise PdfError(f"the JPEG {reference} cannot be decoded")
        return base64.b64decode(stream["data"])

    def _graphic_states(self, resources: dict[str, Any]) -> dict[str, dict[str, float | str]]:
        states = {}
        for name, state in self._value(resources.get("/ExtGState", {})).items():
            entries = self._value(state)
            if not REFERENCE.match(str(state)):
                raise PdfError(f"the graphic state {name} is no indirect object")
            states[name[1:]] = {
                key[1:]: value[1:] if isinstance(value, str) else float(value)
                for key, value in entries.items()
            }
        return states

    def _streams(self, page: dict[str, Any]) -> list[str]:
        if "/Contents" not in page:
            return []
        contents = page["/Contents"]
        target = self._object(contents) if isinstance(contents, str) else {"value": contents}
        pieces = target["value"] if "value" in target else [contents]
        return [self._stream_text(piece) for piece in pieces]

    @staticmethod
    def _readable(stream: str, fonts: dict[str, EmbeddedFont]) -> str:
        """A stream with characters in the place of codes."""

        def read(match: re.Match[str]) -> str:
            name, middle, codes = match.groups()
            return f"/{name} {middle} <{json.dumps(fonts[name].decode(codes))}> Tj"

        return SHOWN_CODES.sub(read, stream)

    def _stream_text(self, reference: str) -> str:
        return self._stream_data(reference).decode("latin-1")

    def _stream_data(self, reference: str) -> bytes:
        stream = self._object(reference)["stream"]
        if "/Filter" in stream["dict"]:
            raise PdfError(f"the stream {reference} is not of a plain filter")
        return base64.b64decode(stream["data"])

    def _object(self, reference: str) -> dict[str, Any]:
        return self._objects[f"obj:{reference}"]

    def _value(self, value: Any) -> Any:
        """A value with a reference followed."""
        if isinstance(value, str) and REFERENCE.match(value):
            return self._object(value)["value"]
        return value
