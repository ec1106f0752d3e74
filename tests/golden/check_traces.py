"""Plots traces and compares the results of the calls and the PDFs with golden files.

check_traces.py --hdiplot PATH [--update] TRACE...

A directory stands for the traces in it. NAME.expected is the golden file of NAME.jsonl. --update writes the golden
files: review each changed line.
"""

from __future__ import annotations

import argparse
import difflib
import os
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from pdf_error import PdfError
from pdf_inspection import Pdf
from pdf_text import PdfText

TIME_LIMIT_SECONDS = 120
MOST_LINES = 30
HERE = Path(__file__).resolve().parent
# The fonts of all tests, and cut_short.ttf, which cannot be embedded: the wrong magic number in its header prevents a
# subset, and a table that extends beyond the file prevents embedding it whole.
FONTS = f"<fontconfig><include>{HERE.parent}/fonts.conf</include><dir>{HERE}</dir></fontconfig>"


class Checker:
    """Plots with one host command, in a directory that also isolates it from the user's settings."""

    def __init__(self, hdiplot: Path, directory: Path, update: bool) -> None:
        self._hdiplot = hdiplot.resolve()
        self._directory = directory
        self._update = update
        fonts = directory / "fonts.conf"
        fonts.write_text(FONTS, encoding="utf-8")
        self._environment = dict(os.environ, HDI_USER_DIR=str(directory), FONTCONFIG_FILE=str(fonts), FC_LANG="en")

    def check(self, trace: Path) -> list[str]:
        """Lines of a diff between the golden file and the plotted trace; empty if they agree."""
        golden = trace.with_suffix(".expected")
        try:
            found = self._plot(trace)
        except PdfError as error:
            return [str(error)]
        if self._update:
            golden.write_text(found, encoding="utf-8")
        wanted = golden.read_text(encoding="utf-8")
        names = ("expected", "found")
        lines = difflib.unified_diff(wanted.splitlines(), found.splitlines(), *names, n=1, lineterm="")
        return list(lines)[:MOST_LINES]

    def _plot(self, trace: Path) -> str:
        output = self._directory / f"{trace.stem}.pdf"
        run = subprocess.run(
            [self._hdiplot, trace, "-o", output, "--results"],
            capture_output=True,
            text=True,
            env=self._environment,
            timeout=TIME_LIMIT_SECONDS,
            check=False,
        )
        if run.returncode != 0:
            raise PdfError(f"exit status {run.returncode}\n{run.stdout}{run.stderr}")
        results = [f"  {line}" for line in run.stdout.splitlines()]
        lines = ["results", *results, "", *PdfText(Pdf(output)).lines]
        return "\n".join(lines) + "\n"


def trace_files(paths: list[Path]) -> list[Path]:
    """The trace files among and below the paths."""
    files = []
    for path in paths:
        files += sorted(path.glob("*.jsonl")) if path.is_dir() else [path]
    return files


def main() -> int:
    """Checks the traces of the command line. Returns 1 if one differs."""
    parser = argparse.ArgumentParser(description="Compare plotted traces with their golden files.")
    parser.add_argument("traces", nargs="+", type=Path)
    parser.add_argument("--hdiplot", type=Path, required=True)
    parser.add_argument("--update", action="store_true")
    arguments = parser.parse_args()
    files = trace_files(arguments.traces)
    if not files:
        parser.error("no traces found")
    failed = 0
    with tempfile.TemporaryDirectory(prefix="hdi-golden-") as directory, ThreadPoolExecutor() as threads:
        checker = Checker(arguments.hdiplot, Path(directory), arguments.update)
        for trace, messages in zip(files, threads.map(checker.check, files), strict=True):
            failed += bool(messages)
            if messages:
                print(f"{trace.name}:", *messages, sep="\n  ")
    print(f"{len(files)} traces, {failed} differ")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
