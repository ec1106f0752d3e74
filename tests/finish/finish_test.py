"""Finished PDFs: held to the rules of PDF/A, read back by other readers, and compared with what they were made from."""

from __future__ import annotations

import base64
import json
import os
import re
import subprocess
import tempfile
import unittest
from collections.abc import Callable
from pathlib import Path
from typing import Any

import check_pdfa

SOURCE = Path(os.environ["HDI_SOURCE_DIR"])
EXAMPLES = SOURCE / "examples"
MAP = EXAMPLES / "trail_map.dxf"
SET = EXAMPLES / "sheets.dxf"
TITLE = "Größe <名> & 😀"


class Breaker:
    """Changes the objects of a conforming file, found by what they are."""

    def __init__(self, path: Path) -> None:
        options = ("--json-output", "--json-stream-data=inline", "--decode-level=generalized")
        run = subprocess.run(["qpdf", *options, str(path)], capture_output=True, check=True)
        self.json = json.loads(run.stdout)
        self.objects = self.json["qpdf"][1]

    def stream(self, **entries: str) -> Json:
        """The first stream whose dictionary has these entries."""
        wanted = {f"/{key}": value for key, value in entries.items()}.items()
        return next(item["stream"] for item in self.objects.values() if "stream" in item and wanted <= plain(item["stream"]["dict"]))

    def find(self, **entries: str) -> Json:
        """The first dictionary, within others too, that has these entries."""
        wanted = {f"/{key}": value for key, value in entries.items()}.items()
        values = check_pdfa.Document.values(self.objects)
        return next(value for value in values if isinstance(value, dict) and wanted <= plain(value))

    def with_key(self, key: str) -> Json:
        """The first dictionary that has an entry."""
        return next(value for value in check_pdfa.Document.values(self.objects) if isinstance(value, dict) and key in value)

    def edit(self, stream: Json, change: Callable[[bytes], bytes]) -> None:
        """Changes the data of a stream."""
        stream["data"] = base64.b64encode(change(base64.b64decode(stream["data"]))).decode()

    def content(self, change: Callable[[bytes], bytes]) -> None:
        """Changes the page's drawing operators, whose stream is the one that has text."""
        streams = (item["stream"] for item in self.objects.values() if "stream" in item)
        self.edit(next(stream for stream in streams if b"> Tj" in base64.b64decode(stream["data"])), change)

    def write(self, path: Path) -> None:
        """Streams stay as they are given here."""
        source = path.with_suffix(".json")
        source.write_text(json.dumps(self.json), encoding="utf-8")
        subprocess.run(["qpdf", "--json-input", "--stream-data=preserve", "--newline-before-endstream", str(source), str(path)], check=True)


Json = Any


def plain(entries: dict[str, Json]) -> Any:
    """The entries whose values can be compared in sets."""
    return {key: value for key, value in entries.items() if isinstance(value, str)}.items()


def put(entries: Json, key: str, value: Json) -> None:
    """An assignment, as an expression."""
    entries[key] = value


# What breaks each rule: objects that are changed, by the clause that it breaks.
BROKEN_OBJECTS: list[tuple[str, Callable[[Breaker], object]]] = [
    ("6.1.7", lambda b: b.stream(Subtype="/Image").update(data="gEBA", dict=b.stream(Subtype="/Image")["dict"] | {"/Filter": "/LZWDecode"})),
    ("6.1.7", lambda b: put(b.stream(Subtype="/Image")["dict"], "/FFilter", "/FlateDecode")),
    ("6.1.13", lambda b: put(b.find(Type="/Page"), "/Rotate", 2**31)),
    ("6.1.13", lambda b: put(b.find(Type="/Page"), "/MediaBox", [0, 0, 14401, 500])),
    ("6.1.13", lambda b: put(b.find(Subtype="/Square"), "/Contents", "u:" + "x" * 32768)),
    ("6.1.13", lambda b: put(b.find(Type="/Page"), "/" + "x" * 128, 1)),
    ("6.1.13", lambda b: b.content(lambda data: data + b" q")),
    ("6.1.13", lambda b: b.content(lambda data: b"q " * 29 + data + b" Q" * 29)),
    ("6.1.13", lambda b: b.content(lambda data: data + b" 2147483648 w")),
    ("6.2.2", lambda b: b.content(lambda data: data + b" BX foo EX")),
    ("6.2.2", lambda b: b.content(lambda data: data + b" /None gs")),
    ("6.2.3", lambda b: b.objects[root(b)]["value"].pop("/OutputIntents")),
    ("6.2.3", lambda b: b.edit(b.objects["obj:" + b.find(S="/GTS_PDFA1")["/DestOutputProfile"]]["stream"], lambda data: data[:12] + b"scnr" + data[16:])),
    ("6.2.4", lambda b: put(b.stream(Subtype="/Image")["dict"], "/ColorSpace", "/DeviceCMYK")),
    ("6.2.5", lambda b: put(b.with_key("/ca"), "/TR", "/Identity")),
    ("6.2.5", lambda b: put(b.with_key("/ca"), "/BM", "/Shine")),
    ("6.2.8", lambda b: put(b.stream(Subtype="/Image")["dict"], "/Interpolate", True)),
    ("6.2.8", lambda b: put(b.stream(Subtype="/Form")["dict"], "/Ref", {})),
    ("6.2.11.2", lambda b: b.find(Subtype="/Type0").pop("/BaseFont")),
    ("6.2.11.3", lambda b: b.find(Subtype="/CIDFontType2").pop("/CIDToGIDMap")),
    ("6.2.11.4", lambda b: b.with_key("/FontFile2").pop("/FontFile2")),
    ("6.2.11.5", lambda b: put(b.find(Subtype="/CIDFontType2"), "/W", [1, 60, 2])),
    ("6.2.11.8", lambda b: b.content(lambda data: re.sub(rb"<(....)", rb"<0000\1", data, count=1))),
    ("6.3", lambda b: put(b.find(Subtype="/Link"), "/F", 6)),
    ("6.3", lambda b: b.find(Subtype="/Link").pop("/F")),
    ("6.3", lambda b: b.find(Subtype="/Square").pop("/AP")),
    ("6.3", lambda b: put(b.find(Subtype="/Link"), "/Subtype", "/Movie")),
    ("6.5", lambda b: put(b.find(S="/URI"), "/S", "/Launch")),
    ("6.5", lambda b: put(b.find(Type="/Page"), "/AA", {})),
    ("6.6", lambda b: b.objects[root(b)]["value"].pop("/Metadata")),
    ("6.6", lambda b: b.edit(b.stream(Subtype="/XML"), lambda data: data.replace(b"?xpacket begin", b"?xpacket bytes='9' begin"))),
    ("6.6", lambda b: b.edit(b.stream(Subtype="/XML"), lambda data: data.replace(b"</x:xmpmeta>", b""))),
    ("6.6", lambda b: b.edit(b.stream(Subtype="/XML"), lambda data: data.replace(b"part>3<", b"part>1<"))),
    ("6.6", lambda b: b.edit(b.stream(Subtype="/XML"), lambda data: data.replace(b"dc:format", b"dc:formats"))),
    ("6.6", lambda b: put(b.with_key("/Producer"), "/Title", "u:Another")),
    ("6.8", lambda b: b.with_key("/AFRelationship").pop("/AFRelationship")),
    ("6.8", lambda b: b.objects[root(b)]["value"].pop("/AF")),
    ("6.8", lambda b: b.stream(Type="/EmbeddedFile")["dict"].pop("/Subtype")),
    ("6.9", lambda b: b.with_key("/Order").pop("/Name")),
    ("6.9", lambda b: b.with_key("/Order")["/Order"].pop()),
    ("6.9", lambda b: put(b.with_key("/Order"), "/AS", [])),
    ("6.9", lambda b: put(b.with_key("/OCGs"), "/PageMode", "/UseOC")),
    ("6.1.12", lambda b: put(b.objects[root(b)]["value"], "/Requirements", [])),
]

# And bytes.
BROKEN_BYTES: list[tuple[str, Callable[[bytes], bytes]]] = [
    ("6.1.2", lambda data: re.sub(rb"\n%....", b"\n%abcd", data, count=1)),
    ("6.1.3", lambda data: data.replace(b"/ID [", b"/IX [")),
    ("6.1.3", lambda data: data + b"more"),
    ("6.1.7", lambda data: data.replace(b"\nendstream", b" endstream", 1)),
]


def root(breaker: Breaker) -> str:
    """The name of the catalog."""
    return "obj:" + breaker.objects["trailer"]["value"]["/Root"]


class FinishTest(unittest.TestCase):
    """Plots and passes by the command."""

    def setUp(self) -> None:
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory(prefix="hdi-finish-")))
        self.environment = dict(os.environ, HDI_USER_DIR=str(self.folder), SOURCE_DATE_EPOCH="1700000000")

    def run_command(self, *command: object, status: int = 0) -> str:
        """What a command prints on both streams."""
        words = list(map(str, command))
        run = subprocess.run(words, capture_output=True, text=True, env=self.environment, cwd=self.folder, check=False)
        self.assertEqual(run.returncode, status, run.stdout + run.stderr)
        return run.stdout + run.stderr

    def plot(self, name: str, *words: object, status: int = 0) -> Path:
        """A PDF of this name."""
        self.run_command(os.environ["HDI_HDIPLOT_PATH"], *words, "-q", "-o", name, status=status)
        return self.folder / name

    def pages(self, pdf: Path) -> list[str]:
        """All pages as Poppler and MuPDF show them."""
        self.run_command("pdftoppm", "-r", 50, pdf, "page")
        self.run_command("mutool", "draw", "-q", "-r", 50, "-o", "mupdf-%d.ppm", pdf)
        return [file.read_bytes().hex() for file in sorted(self.folder.glob("*.ppm"))]

    def conforming(self) -> Path:
        """A plot of everything that rules are about."""
        words = ("--layout", "all", "--shx-comments", "--title", TITLE, "--attach", MAP, "--pdfa", "3b")
        return self.plot("good.pdf", MAP, *words)

    def test_conforming(self) -> None:
        """Every example conforms, and shows what it did."""
        for drawing in sorted(EXAMPLES.glob("*.dxf")):
            for level in ("2b", "3b"):
                plain_pdf = self.plot("plain.pdf", drawing, "--layout", "sheets", "--no-bookmarks")
                before = self.pages(plain_pdf)
                pdf = self.plot("pdfa.pdf", "--finish", plain_pdf, "--pdfa", level, "--bookmarks", "--compact", "--linearize")
                self.assertEqual(check_pdfa.check(pdf), [])
                self.assertEqual(self.pages(pdf), before)
                self.run_command("qpdf", "--check", pdf)

    def test_broken(self) -> None:
        """The check finds every break, and finds none in the file that is broken."""
        good = self.conforming()
        self.assertEqual(check_pdfa.check(good), [])
        for number, (clause, change) in enumerate(BROKEN_OBJECTS + BROKEN_BYTES):
            with self.subTest(clause=clause, number=number):
                broken = self.folder / "broken.pdf"
                if number < len(BROKEN_OBJECTS):
                    breaker = Breaker(good)
                    change(breaker)
                    breaker.write(broken)
                else:
                    broken.write_bytes(change(good.read_bytes()))
                self.assertTrue(any(line.startswith(clause) for line in check_pdfa.check(broken)), check_pdfa.check(broken))

    def test_refused(self) -> None:
        """What cannot conform is named; the plain PDF stays."""
        pdf = self.plot("plain.pdf", MAP)
        breaker = Breaker(pdf)
        breaker.find(Type="/Page")["/MediaBox"] = [0, 0, 14401, 500]
        breaker.write(pdf)
        before = pdf.read_bytes()
        told = self.run_command(os.environ["HDI_HDIPLOT_PATH"], "--finish", pdf, "--pdfa", "2b", status=2)
        self.assertIn("cannot become PDF/A-2b: page 1: a side has 14401 units", told)
        self.assertEqual(pdf.read_bytes(), before)

    def test_glyphs_and_levels(self) -> None:
        """Text without glyphs is left out and told; states that nothing restores go."""
        words = "q 1 0 0 1 5 5 cm /FXF1 20 Tf BT 3 Tr <00000005> Tj 0 Tr <000000050000> Tj ET 2147483648 w Q Q"
        pdf = self.plot("plain.pdf", MAP)
        breaker = Breaker(pdf)
        breaker.content(lambda data: data + words.encode() + b" q" * 30)
        breaker.write(pdf)
        told = self.run_command(os.environ["HDI_HDIPLOT_PATH"], "-q", "--finish", pdf, "--pdfa", "2b", status=1)
        self.assertIn("page 1: 2 characters", told)
        self.assertEqual(check_pdfa.check(pdf), [])

    def test_outline_and_metadata(self) -> None:
        """Poppler and MuPDF read back names and properties; the same input gives the same file."""
        options = ("--layout", "sheets", "--title", TITLE, "--author", "Ä", "--keywords", "a, b", "--lang", "de-CH")
        pdf, again = (self.plot(name, SET, EXAMPLES / "flange.dxf", *options) for name in ("set.pdf", "again.pdf"))
        self.assertEqual(pdf.read_bytes(), again.read_bytes())
        outline = re.findall(r'([|+-]\s+)"(.*)"\s+#page=(\d+)', self.run_command("mutool", "show", pdf, "outline"))
        names = ["sheets", "A-101", "A-102", "A-103", "flange"]
        self.assertEqual([(title, page) for _, title, page in outline], list(zip(names, "11234", strict=True)))
        labels = check_pdfa.read_json(pdf, "--json-key=pagelabels", "--json-key=qpdf")
        (tree,) = (item["value"] for item in labels.values() if "/Nums" in item.get("value", {}))
        self.assertEqual([label["/P"] for label in tree["/Nums"][1::2]], [f"u:{name}" for name in names[1:]])
        meta = self.run_command("pdfinfo", "-meta", pdf)
        self.assertIn("Größe &lt;名&gt; &amp; 😀</rdf:li>", meta)
        information = self.run_command("pdfinfo", "-isodates", pdf)
        for line in (f"Title: +{TITLE}", "Keywords: +a, b", "Author: +Ä", "CreationDate: +2023-11-14T22:13:20Z"):
            self.assertRegex(information, line)
        self.assertIn("/Lang(de-CH)", self.run_command("mutool", "show", "-g", pdf, "trailer/Root").replace(" ", ""))

    def test_size_and_encryption(self) -> None:
        """Equal images are kept once; an encrypted file opens with its password alone."""
        plain_pdf = self.plot("plain.pdf", MAP, MAP, MAP, "--no-bookmarks")
        compact = self.plot("compact.pdf", "--finish", plain_pdf, "--compact")
        self.assertEqual(self.pages(compact), self.pages(plain_pdf))
        objects = check_pdfa.read_json(compact).values()
        images = [item for item in objects if item.get("stream", {"dict": {}})["dict"].get("/Subtype") == "/Image"]
        self.assertEqual(len(images), 2)  # the relief and its mask
        (self.folder / "password").write_text("geheim\n", encoding="utf-8")
        locked = self.plot("locked.pdf", "--finish", compact, "--encrypt", "password", "--no-printing", "--linearize")
        self.run_command("pdfinfo", locked, status=1)
        told = self.run_command("pdfinfo", "-upw", "geheim", locked)
        self.assertRegex(told, r"print:no copy:yes .*AES-256\)\nPage(.*\n)*Optimized: +yes")
        self.assertIn("is encrypted", self.run_command(os.environ["HDI_HDIPLOT_PATH"], "--finish", locked, "--compact", status=2))


if __name__ == "__main__":
    unittest.main()
