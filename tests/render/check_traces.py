"""Holds the renderings of plotted traces to pictures that are drawn straight from the traces' calls.

check_traces.py --hdiplot PATH TRACE...

Each trace is also changed in many small ways, and the comparison has to notice every one of them: what it
lets pass would not be worth much otherwise.
"""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from pictures import Tolerance, compare
from plotting import PlotError, Plotter
from trace_changes import changed_traces
from trace_picture import draw_trace

# Pixels an inch, with how far off what Poppler renders may be: more where there are thin lines, which it
# moves to whole pixels. Shapes of half the contrast need a closer look.
USUAL = (72.0, Tolerance(block=4, level=32, blocks=3, worst=72, mean=0.8))
LOOKS = {
    "opacity": (72.0, Tolerance(block=4, level=13, blocks=3, worst=40, mean=0.8)),
    "landscape": (36.0, Tolerance(block=4, level=28, blocks=3, worst=72, mean=0.8)),
}
# Rims of areas are as thin as a renderer can make them, which MuPDF takes for thinner.
MUPDF = Tolerance(block=4, level=48, blocks=3, worst=80, mean=1.6)


def check_trace(plotter: Plotter, path: Path) -> tuple[list[str], int]:
    """What is wrong with a trace's plot or its comparison, and how many changes were tried."""
    resolution, tolerance = LOOKS.get(path.stem, USUAL)
    text = path.read_text(encoding="utf-8")
    expected = draw_trace(text, resolution)
    plotter.plot(path)
    plotter.check()
    messages = []
    for renderer, found, allowed in (
        ("Poppler", plotter.poppler(resolution), tolerance),
        ("MuPDF", plotter.mupdf(resolution), MUPDF),
    ):
        difference = compare(expected, found, allowed)
        if difference.message:
            messages.append(f"{path.name}, {renderer}: {difference.message}")
    count = 0
    dots_a_pixel = _dots_an_inch(text) / resolution
    for what, changed in changed_traces(text, dots_a_pixel):
        plotter.plot_text(changed, ".jsonl")
        count += 1
        if not compare(expected, plotter.poppler(resolution), tolerance).message:
            messages.append(f"{path.name}: the comparison does not notice a change: {what}")
    if not count:
        messages.append(f"{path.name}: there was nothing to change")
    return messages, count


def _dots_an_inch(text: str) -> float:
    return float(text.split('"dmPrintQuality": ')[1].split(",")[0].rstrip("} \n"))


def main() -> int:
    """Checks the traces; the exit status is 1 when there is a complaint."""
    parser = argparse.ArgumentParser(description="Hold renderings of traces to pictures of their calls.")
    parser.add_argument("--hdiplot", type=Path, required=True)
    parser.add_argument("traces", type=Path, nargs="+")
    arguments = parser.parse_args()
    complaints = 0
    with Plotter(arguments.hdiplot) as plotter:
        for path in arguments.traces:
            try:
                messages, count = check_trace(plotter, path)
            except PlotError as error:
                messages, count = [f"{path.name}: {error}"], 0
            complaints += len(messages)
            print("\n".join([*messages, f"{path.name}: {count} changes tried, {len(messages)} complaints"]))
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
