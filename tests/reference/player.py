"""Plays plot traces with the host command and looks at what comes out."""

from __future__ import annotations

import os
import subprocess
import tempfile
from pathlib import Path

from pdf_error import PdfError
from pdf_inspection import Pdf
from plotted_job import PlottedJob, result_line

TIME_LIMIT_SECONDS = 120


class PlayError(Exception):
    """A trace that could not be played, or a PDF that no plot may give."""


class Player:
    """Plays traces with one host command, in a directory of its own."""

    def __init__(self, hdiplot: Path) -> None:
        self._hdiplot = hdiplot.resolve()
        self._directory = tempfile.TemporaryDirectory(prefix="hdi-reference-")
        # A user directory of its own keeps the papers of whoever runs this out of it.
        self._environment = dict(os.environ, HDI_USER_DIR=self._directory.name)

    def __enter__(self) -> Player:
        return self

    def __exit__(self, *_: object) -> None:
        self._directory.cleanup()

    def play(self, trace: Path) -> PlottedJob:
        """Plays a trace file, checks the document, and gives results and pages."""
        output = Path(self._directory.name) / "out.pdf"
        output.unlink(missing_ok=True)
        job = PlottedJob(results=self._results(trace, output))
        try:
            pdf = Pdf(output)
            pdf.check_document(creator=self._hdiplot.stem)
            job.layers, job.layer_order = pdf.layers()
            job.pages = pdf.pages()
        except PdfError as error:
            raise PlayError(str(error)) from error
        return job

    def play_text(self, text: str) -> PlottedJob:
        """Plays a trace that is given as text."""
        path = Path(self._directory.name) / "trace.jsonl"
        path.write_text(text, encoding="utf-8")
        return self.play(path)

    def _results(self, trace: Path, output: Path) -> list[str]:
        command = [str(self._hdiplot), str(trace), "-o", str(output), "--results"]
        run = subprocess.run(
            command,
            capture_output=True,
            text=True,
            env=self._environment,
            timeout=TIME_LIMIT_SECONDS,
            check=False,
        )
        if run.returncode != 0:
            raise PlayError(f"exit status {run.returncode}\n{run.stdout}{run.stderr}")
        return [self._read_result(line) for line in run.stdout.splitlines()]

    @staticmethod
    def _read_result(line: str) -> str:
        try:
            number, name, result = line.split(" ")
            return result_line(int(number), name, int(result))
        except ValueError as error:
            raise PlayError(f"not a result line: {line!r}") from error
