"""Plots with this machine's hdiplot and with the Windows one under Wine, and compares what comes out.

same_output.py --hdiplot PATH --windows PATH --wine PATH [--random COUNT] [SOURCE...]

A source is a trace, a drawing, or a directory with some. Results of calls and everything in the PDFs must be the
same, page streams byte for byte. Of embedded fonts the names, the characters and the look are compared: Wine's font
packager hands back whole fonts.
"""

from __future__ import annotations

import argparse
import re
import subprocess
import sys
from itertools import zip_longest
from pathlib import Path

from pdf_lines import PdfLines, differences, one_of_a_glyph

TESTS = Path(__file__).resolve().parent.parent
sys.path += [str(TESTS / "reference"), str(TESTS / "render")]

import trace_generator  # noqa: E402
from pdf_error import PdfError  # noqa: E402
from pictures import Tolerance, compare  # noqa: E402
from plotting import PlotError, Plotter  # noqa: E402
from trace_file import write_trace  # noqa: E402

RESOLUTION = 60
SAME_LOOK = Tolerance(block=4, level=16, blocks=0, worst=16, mean=0.1)

# What stands in for fonts that are not installed is each system's own choice. Here it is that of fonts.conf.
SUBSTITUTES_KEY = r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\FontSubstitutes"
SUBSTITUTES = {"MS Shell Dlg": "DejaVu Sans"}

# What is changed in sources or left out, as it cannot come out the same, with the reason.
EXCEPTIONS = {
    "Wine tells no italic angle, so a face that leans of its own is slanted once more": [
        ('("lfItalic": )1', r"\g<1>0"),
        (r"(\\f[^;|]*(?:\|[^;|i]*)*\|i)1", r"\g<1>0"),
    ],
    "What stands in for a font that nobody has": [('^.*"No Such Face".*$', "")],
    "The packager hands a collection back whole, of which the engine takes the first font": [
        ('^.*"lfFaceName": "(?:WenQuanYi Zen Hei Mono|文泉驛等寬正黑|文泉驿点阵正黑)".*$', "")
    ],
    "The engine finds no characters in a font of symbols that nobody has packed": [('^.*"Wingdings".*$', "")],
}

# Text is white until there is a brush, and looks the same then whatever it is.
STARTED_PAGE = re.compile('^.*"call": "DevStartPage".*$', re.MULTILINE)
BLACK_BRUSH = '{"call": "DevSetBrush", "color": [0, 0, 0]}'


class WinePlotter(Plotter):
    """Plots with a Windows host command."""

    def __init__(self, hdiplot: Path, wine: Path) -> None:
        super().__init__(hdiplot)
        self._wine = str(wine.resolve())

    def __enter__(self) -> WinePlotter:
        # As long as one program runs, others start fast. The services that Wine starts with the first hold what
        # it prints to open: so it is up before any output is waited for.
        pipes = {"stdin": subprocess.PIPE, "stdout": subprocess.PIPE, "stderr": subprocess.DEVNULL}
        self._idle = subprocess.Popen([self._wine, "cmd"], **pipes)
        self._idle.stdout.readline()
        for name, font in SUBSTITUTES.items():
            self.run(self._wine, "reg", "add", SUBSTITUTES_KEY, "/v", name, "/d", font, "/f")
        return self

    def __exit__(self, *problem: object) -> None:
        self._idle.stdin.close()
        self._idle.wait(timeout=60)
        self._idle.stdout.close()
        super().__exit__(*problem)

    def command(self) -> list[str]:
        return [self._wine, *map(self.name, super().command())]

    def name(self, path: Path | str) -> str:
        # Wine shows the whole file system as drive Z.
        return "Z:" + str(path).replace("/", "\\")


def check(linux: Plotter, windows: Plotter, source: Path, is_random: bool) -> list[str]:
    """What differs between the two plots of a source. Random pages may take very long to render."""
    options = ["--results"] if source.suffix == ".jsonl" else ["--quiet"]
    results = [plotter.plot(source, *options).splitlines() for plotter in (linux, windows)]
    for one, other in zip_longest(*results):
        if one != other:
            return [f"{other!r} and not {one!r}"]
    one, other = PdfLines(linux.pdf), PdfLines(windows.pdf)
    messages = differences(one.lines, other.lines)
    if one.has_text and not messages:
        messages += check_words(linux, windows)
        if not is_random:
            messages += check_look(linux, windows, one.page_count)
    return messages


def check_words(linux: Plotter, windows: Plotter) -> list[str]:
    """What differs in what a reader finds in two plots."""
    words = []
    for plotter in (linux, windows):
        text = plotter.run("pdftotext", "-enc", "UTF-8", str(plotter.pdf), "-").decode("utf-8")
        words.append(one_of_a_glyph(text).split(" "))
    for one, other in zip_longest(*words):
        if one != other:
            return [f"reads {other!r} and not {one!r}"]
    return []


def check_look(linux: Plotter, windows: Plotter, page_count: int) -> list[str]:
    """What differs in the look of two plots."""
    messages = []
    for page in range(1, page_count + 1):
        difference = compare(linux.poppler(RESOLUTION, page), windows.poppler(RESOLUTION, page), SAME_LOOK)
        if difference.message:
            messages.append(f"page {page} looks otherwise: {difference.message}")
    return messages


def comparable(source: Path, directory: Path) -> Path:
    """The source, or one in the directory that lacks what cannot come out the same and shows its text."""
    text = changed = source.read_bytes().decode("utf-8", errors="surrogateescape")
    for changes in EXCEPTIONS.values():
        for pattern, replacement in changes:
            changed = re.sub(pattern, replacement, changed, flags=re.MULTILINE)
    if '"call": "DevText"' in text:
        changed = STARTED_PAGE.sub(rf"\g<0>\n{BLACK_BRUSH}", changed)
    if changed == text:
        return source
    path = directory / source.name
    path.write_bytes(changed.encode("utf-8", errors="surrogateescape"))
    return path


def random_traces(directory: Path, count: int) -> list[Path]:
    """Random traces, in fonts and with words for which no other font is searched, or the same everywhere."""
    trace_generator.FACES[:] = ["DejaVu Sans", "DejaVu Serif", "Liberation Sans"]
    odd = {"\t", "\x7f", "\U0001d400", "\uf06c"}
    trace_generator.WORDS[:] = [word for word in trace_generator.WORDS if not odd & set(word)]
    paths = []
    for seed in range(1, count + 1):
        paths.append(directory / f"seed-{seed}.jsonl")
        paths[-1].write_text(write_trace(trace_generator.TraceGenerator(seed).lines()), encoding="utf-8")
    return paths


def source_files(paths: list[Path]) -> list[Path]:
    """The traces and drawings that the command line names."""
    files = []
    for path in paths:
        files += sorted([*path.glob("*.jsonl"), *path.glob("*.dxf")]) if path.is_dir() else [path]
    return files


def main() -> int:
    """Compares all sources; the exit status is 1 when a plot differs."""
    parser = argparse.ArgumentParser(description="Compare plots of two platforms.")
    parser.add_argument("--hdiplot", type=Path, required=True)
    parser.add_argument("--windows", type=Path, required=True)
    parser.add_argument("--wine", type=Path, required=True)
    parser.add_argument("--random", type=int, default=0)
    parser.add_argument("sources", type=Path, nargs="*")
    arguments = parser.parse_args()
    failed = 0
    with Plotter(arguments.hdiplot) as linux, WinePlotter(arguments.windows, arguments.wine) as windows:
        at_random = random_traces(linux.directory, arguments.random)
        sources = source_files(arguments.sources) + at_random
        if not sources:
            parser.error("no sources there")
        for source in sources:
            try:
                changed = comparable(source.resolve(), windows.directory)
                messages = check(linux, windows, changed, source in at_random)
            except (PlotError, PdfError) as error:
                messages = [str(error)]
            failed += bool(messages)
            for message in messages:
                print(f"{source.name}: {message}")
    print(f"{len(sources)} sources, the plots of {failed} differ")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
