"""Plots with the native hdiplot and with the Windows one under Wine, and compares the results.

same_output.py HDIPLOT WINDOWS_HDIPLOT WINE DIRECTORY    the directory has traces and drawings

Results of calls and everything in the PDFs must be the same, page streams byte for byte. Wine's font packager returns
whole fonts, so embedded fonts are compared by name, by the rendered page and by the extracted text.
"""

from __future__ import annotations

import base64
import difflib
import hashlib
import itertools
import json
import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path
from typing import Any, Iterator

RESOLUTION = "60"

# Substitutes for missing fonts are up to the system. This one is the choice of fonts.conf.
SUBSTITUTES = r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes"
INTERFACE_FONT = ("/v", "MS Shell Dlg", "/d", "DejaVu Sans", "/f")

# Changes to sources for what cannot be the same, with the reason.
EXCEPTIONS = {
    "Wine reports no italic angle, so italic faces are slanted twice": [
        ('("lfItalic": )1', r"\g<1>0"),
        (r"(\\f[^;|]*(?:\|[^;|i]*)*\|i)1", r"\g<1>0"),
    ],
    "Substitutes for a missing font": [('^.*"No Such Face".*$', "")],
    "The packager returns a whole collection, and the engine takes its first font": [
        ('^.*"lfFaceName": "(?:WenQuanYi Zen Hei Mono|文泉驛等寬正黑|文泉驿点阵正黑)".*$', "")
    ],
    "The engine finds no characters in an unpackaged symbol font": [('^.*"Wingdings".*$', "")],
}

# Text is white until a brush is set, and then white text looks the same whatever it says.
STARTED_PAGE = re.compile('^.*"call": "DevStartPage".*$', re.MULTILINE)
BLACK_BRUSH = '{"call": "DevSetBrush", "color": [0, 0, 0]}'

# Font entries that depend on how much of the font is embedded.
FONT_DATA = ("/W", "/ToUnicode", "/FontFile2")
SHOWN_CODES = re.compile(r"<(\w*)> Tj")
DATE = re.compile(r'"u:D:\d{14}"')
# Characters that share a glyph in many fonts. Which of them a code maps to depends on how much is embedded.
SHARED_GLYPHS = str.maketrans("\u00a0\u00ad\u037e", " -;")


def run(*command: str) -> bytes:
    """Returns the standard output of a command; raises CalledProcessError if it fails."""
    return subprocess.run(command, stdout=subprocess.PIPE, check=True, timeout=120).stdout


def document_lines(pdf: Path) -> Iterator[str]:
    """Yields everything in a PDF except font data, by object; shown codes are replaced by their number."""
    read = run("qpdf", "--json=2", "--json-stream-data=inline", "--decode-level=generalized", str(pdf))
    objects: dict[str, Any] = json.loads(read)["qpdf"][1]
    values = [entry.get("value") for entry in objects.values()]
    fonts = {f"obj:{value[key]}" for value in values if isinstance(value, dict) for key in FONT_DATA if key in value}
    for name, entry in objects.items():
        if name == "trailer" or name in fonts:
            continue
        stream = entry.get("stream", {"data": ""})
        data = base64.b64decode(stream.pop("data")).decode("latin-1")
        yield f"{name} {DATE.sub('a date', json.dumps(entry))}"
        for line in data.split("\n"):
            yield f"{name} {SHOWN_CODES.sub(lambda shown: f'{len(shown[1]) // 4} codes Tj', line)}"


def comparable(source: Path, directory: Path) -> Path:
    """Returns the source, or a changed copy without what cannot be the same and with visible text."""
    text = changed = source.read_text(encoding="utf-8", errors="surrogateescape")
    for changes in EXCEPTIONS.values():
        for pattern, replacement in changes:
            changed = re.sub(pattern, replacement, changed, flags=re.MULTILINE)
    if '"call": "DevText"' in text:
        changed = STARTED_PAGE.sub(rf"\g<0>\n{BLACK_BRUSH}", changed)
    if changed == text:
        return source
    path = directory / source.name
    path.write_text(changed, encoding="utf-8", errors="surrogateescape")
    return path


def differences(source: Path, commands: list[list[str]], directory: Path) -> list[str]:
    """Returns the differences between the plots of a source by two commands."""
    options = ["--results"] if source.suffix == ".jsonl" else ["--quiet"]
    pdf = directory / "plot.pdf"
    found = []
    for command in commands:
        pdf.unlink(missing_ok=True)
        printed = run(*command, str(source), "-o", str(pdf), *options).decode("utf-8").splitlines()
        text = run("pdftotext", "-enc", "UTF-8", str(pdf), "-").decode("utf-8").translate(SHARED_GLYPHS)
        look = hashlib.sha256(run("pdftoppm", "-r", RESOLUTION, str(pdf))).hexdigest()
        found.append([*printed, *document_lines(pdf), *text.splitlines(), f"look {look}"])
    one, other = found
    changes = [] if one == other else difflib.unified_diff(one, other, n=0, lineterm="")
    return [f"{source.name}: {change[:300]}" for change in itertools.islice(changes, 8)]


def main() -> int:
    """Compares the plots of all sources; returns exit status 1 if some differ."""
    hdiplot, windows, wine, folder = sys.argv[1:]
    sources = sorted([*Path(folder).glob("*.jsonl"), *Path(folder).glob("*.dxf")])
    failed = 0
    # While one program runs, others start quickly.
    quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
    with subprocess.Popen([wine, "cmd"], stdin=subprocess.PIPE, **quiet):
        run(wine, "reg", "add", SUBSTITUTES, *INTERFACE_FONT)
        for source in sources:
            with tempfile.TemporaryDirectory() as directory:
                # A separate user directory keeps the caller's papers and settings out.
                os.environ["HDI_USER_DIR"] = directory
                changed = comparable(source.resolve(), Path(directory))
                messages = differences(changed, [[hdiplot], [wine, windows]], Path(directory))
            failed += bool(messages)
            for message in messages:
                print(message)
    print(f"{len(sources)} sources, the plots of {failed} differ")
    return 1 if failed or not sources else 0


if __name__ == "__main__":
    sys.exit(main())
