"""Runs the host command and the renderers."""

from __future__ import annotations

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from pictures import Picture, read_ppm

TIME_LIMIT_SECONDS = 120


class PlotError(Exception):
    """A failed plot or rendering, or a PDF with faults."""


class Plotter:
    """Plots with one host command and renders the result, in a directory of its own."""

    def __init__(self, hdiplot: Path) -> None:
        self._hdiplot = hdiplot.resolve()
        self._directory = tempfile.TemporaryDirectory(prefix="hdi-render-")
        self.directory = Path(self._directory.name)
        self.pdf = self.directory / "plot.pdf"
        # Without the papers and settings of the user who runs the tests.
        self._environment = dict(os.environ, HDI_USER_DIR=self._directory.name)

    def __enter__(self) -> Plotter:
        return self

    def __exit__(self, *_: object) -> None:
        self._directory.cleanup()

    def plot(self, source: Path, *options: str) -> bytes:
        """Plots a drawing or a trace. Returns the standard output."""
        self.pdf.unlink(missing_ok=True)
        return self.run(*self.command(), self.name(source), "-o", self.name(self.pdf), *options)

    def command(self) -> list[str]:
        """The start of the command line."""
        return [str(self._hdiplot)]

    def name(self, path: Path) -> str:
        """A path as the host command takes it."""
        return str(path)

    def plot_text(self, text: str, ending: str, *options: str) -> None:
        """Plots a drawing or a trace from a string."""
        source = self.directory / f"source{ending}"
        source.write_text(text, encoding="utf-8")
        self.plot(source, *options)

    def check(self) -> None:
        """Checks the PDF's structure."""
        self.run("qpdf", "--check", str(self.pdf))

    def poppler(self, resolution: float, page: int = 1) -> Picture:
        """Renders a page with Poppler, `resolution` in pixels per inch."""
        pages = ("-f", str(page), "-l", str(page))
        return read_ppm(self.run("pdftoppm", "-q", "-r", f"{resolution:g}", *pages, str(self.pdf)))

    def mupdf(self, resolution: float, page: int = 1) -> Picture:
        """Renders a page with MuPDF, `resolution` in pixels per inch."""
        form = ("-q", "-F", "ppm", "-c", "rgb", "-r", f"{resolution:g}")
        return read_ppm(self.run("mutool", "draw", *form, "-o", "-", str(self.pdf), str(page)))

    def run(self, *command: str) -> bytes:
        """Returns the standard output of a command. Raises PlotError if it fails."""
        run = subprocess.run(
            command, capture_output=True, env=self._environment, timeout=TIME_LIMIT_SECONDS, check=False
        )
        if run.returncode != 0:
            output = (run.stdout[-500:] + run.stderr[-2000:]).decode(errors="replace")
            raise PlotError(f"{Path(command[0]).name}: exit status {run.returncode}\n{output}")
        return run.stdout


class PlotTestCase(unittest.TestCase):
    """A test that plots with the host command of the build."""

    def setUp(self) -> None:
        self.plotter = self.enterContext(Plotter(Path(os.environ["HDI_HDIPLOT_PATH"])))
