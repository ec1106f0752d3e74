"""Reads a PDF with qpdf: check, objects, decoded streams."""

from __future__ import annotations

import base64
import json
import re
import subprocess
from decimal import Decimal
from pathlib import Path
from typing import Any

from pdf_error import PdfError, require

REFERENCE = re.compile(r"^\d+ \d+ R$")
SHOWN_CODES = re.compile(r"/(\S+) (\S+ Tf \d Tr) <(\w*)> Tj")
DATE = re.compile(r"^u:D:\d{14}$")
# Points far off the sheet give valid integers beyond 64 bits, about which qpdf warns.
LARGE_NUMBERS = re.compile(
    r"(?:(?:ERROR|WARNING): .*overflow/underflow converting -?\d+ to 64-bit integer\n)+qpdf: .*\n"
)
HUGE_INTEGER = re.compile(rb"(?<=[\[ ])(-?\d{17,})00(?=[\] ])")


def run_qpdf(*arguments: str) -> str:
    """Runs qpdf and returns its output; any warning but that about large numbers is an error."""
    result = subprocess.run(["qpdf", *arguments], capture_output=True, text=True, check=False)
    if result.returncode != 0 and not LARGE_NUMBERS.fullmatch(result.stderr):
        raise PdfError(f"qpdf {' '.join(arguments)}: {result.stdout}{result.stderr}")
    return result.stdout


class Pdf:
    """A PDF file. Numbers are int or Decimal, which keep their digits."""

    def __init__(self, path: Path) -> None:
        run_qpdf("--check", str(path))
        self.file = path.read_bytes()
        # qpdf drops a page with a huge integer in a link's box, but reads a real number of the same length.
        self._readable = path.with_suffix(".readable.pdf")
        self._readable.write_bytes(HUGE_INTEGER.sub(rb"\1.0", self.file))
        document = self._read("generalized")
        self.objects: dict[str, Any] = document["qpdf"][1]
        self.pages: list[str] = [page["object"] for page in document["pages"]]
        self.trailer: dict[str, Any] = self.objects["trailer"]["value"]
        self._decoded: dict[str, Any] = {}

    def _read(self, decode_level: str) -> Any:
        options = ("--json=2", "--json-stream-data=inline", f"--decode-level={decode_level}")
        return json.loads(run_qpdf(*options, str(self._readable)), parse_float=_number)

    def value(self, value: Any) -> Any:
        """Resolves a value that is a reference."""
        return self._object(value)["value"] if is_reference(value) else value

    def is_stream(self, reference: str) -> bool:
        """Whether an object is a stream."""
        return "stream" in self._object(reference)

    def stream(self, reference: str) -> tuple[dict[str, Any], bytes]:
        """A stream's dictionary without its length, and its data, decoded unless it is a JPEG."""
        stream = self._object(reference)["stream"]
        entries = {key: value for key, value in stream["dict"].items() if key != "/Length"}
        complaint = f"the stream {reference} has the filter {entries.get('/Filter')}"
        require(entries.get("/Filter") in (None, "/DCTDecode"), complaint)
        return entries, base64.b64decode(stream["data"])

    def jpeg_pixels(self, reference: str) -> bytes:
        """The decoded pixels of a JPEG."""
        self._decoded = self._decoded or self._read("all")["qpdf"][1]
        stream = self._decoded[f"obj:{reference}"]["stream"]
        require("/Filter" not in stream["dict"], f"the JPEG {reference} cannot be decoded")
        return base64.b64decode(stream["data"])

    def _object(self, reference: str) -> dict[str, Any]:
        return self.objects[f"obj:{reference}"]


def _number(text: str) -> Decimal | int:
    """A real number, or the huge integer that it replaces."""
    return int(text[:-2] + "00") if len(text) > 18 and text.endswith(".0") else Decimal(text)


def is_reference(value: Any) -> bool:
    """Whether a value is a reference to an indirect object."""
    return isinstance(value, str) and REFERENCE.match(value) is not None
