"""Plots traces and compares the results of their calls and their PDFs with the golden files beside them.

check_traces.py --hdiplot PATH [--update] TRACE...

A directory stands for the traces in it. NAME.expected beside NAME.jsonl holds what a trace must give. With --update
the golden files are written anew: read the difference line by line before it is kept.
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
# The fonts of all tests and one here, cut_short.ttf, that cannot be embedded: the magic number of its header is
# wrong, so that no subset comes of it, and a table reaches beyond the file, which bars it as a whole.
FONTS = f"<fontconfig><include>{HERE.parent}/fonts.conf</include><dir>{HERE}</dir></fontconfig>"


class Checker:
    """Plots with one host command, in a directory that also keeps the papers of whoever runs this out of it."""

    def __init__(self, hdiplot: Path, directory: Path, update: bool) -> None:
        self._hdiplot = hdiplot.resolve()
        self._directory = directory
        self._update = update
        fonts = directory / "fonts.conf"
        fonts.write_text(FONTS, encoding="utf-8")
        self._environment = dict(os.environ, HDI_USER_DIR=str(directory), FONTCONFIG_FILE=str(fonts), FC_LANG="en")

    def check(self, trace: Path) -> list[str]:
        """What differs between a plotted trace and its golden file, as lines of a difference."""
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
    """The trace files that the command line names."""
    files = []
    for path in paths:
        files += sorted(path.glob("*.jsonl")) if path.is_dir() else [path]
    return files


def main() -> int:
    """Checks the traces of the command line; the exit status is 1 when one of them differs."""
    parser = argparse.ArgumentParser(description="Compare plotted traces with their golden files.")
    parser.add_argument("traces", nargs="+", type=Path)
    parser.add_argument("--hdiplot", type=Path, required=True)
    parser.add_argument("--update", action="store_true")
    arguments = parser.parse_args()
    files = trace_files(arguments.traces)
    if not files:
        parser.error("no traces there")
    failed = 0
    with tempfile.TemporaryDirectory(prefix="hdi-golden-") as directory, ThreadPoolExecutor() as threads:
        checker = Checker(arguments.hdiplot, Path(directory), arguments.update)
        for trace, messages in zip(files, threads.map(checker.check, files), strict=True):
            failed += bool(messages)
            if messages:
                print(f"{trace.name}:", *messages, sep="\n  ")
    print(f"{len(files)} traces, {failed} of them differ")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
