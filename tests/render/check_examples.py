"""Plots the examples, has the PDFs checked, and compares how Poppler and MuPDF render them with each other
and with small pictures that are kept beside this file.

check_examples.py --hdiplot PATH --examples DIRECTORY [--update]

With --update the pictures are written anew from what Poppler renders; look at the plots before keeping them.
"""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from pictures import Tolerance, averages, compare, quantised, read_png, write_png
from plotting import PlotError, Plotter

RESOLUTION = 100
# The kept pictures are averages over so many pixels, their colours in steps of so many levels.
REDUCTION = 4
COLOR_STEP = 5
EXPECTED = Path(__file__).resolve().parent / "expected"

# Poppler draws thin lines a pixel wide on whole pixels, MuPDF where they are and as faint as they are thin.
BETWEEN_RENDERERS = Tolerance(block=8, level=48, blocks=20, worst=80, mean=4.0)
TO_KEPT_PICTURES = Tolerance(block=2, level=32, blocks=20, worst=80, mean=3.0)

# Each example, with the options that it is plotted with, and further ones with which its plot must not be taken for
# the kept picture.
EXAMPLES: dict[str, list[list[str]]] = {
    "site_plan.dxf": [
        ["--skip-layer", "*TREE*"],
        ["--monochrome"],
        ["--margins", "17,5,17,7"],
        ["--background", "#F0F0D0"],
    ],
    "flange.dxf": [
        ["--skip-layer", "CENTER"],
        ["--skip-layer", "SYMBOL"],
        ["--skip-layer", "DIM*"],
        ["--margins", "17,5,17,7"],
    ],
    "diagram.dxf": [["--skip-layer", "PIPE_FEED"], ["--monochrome"], ["--margins", "17,5,17,7"]],
    "scripts.dxf": [["--monochrome"], ["--margins", "17,5,17,7"]],
    "trail_map.dxf": [["--skip-layer", "RELIEF"], ["--skip-layer", "*ZONE*"], ["--margins", "17,5,17,7"]],
    "trail_map.dxf --layout Sheet": [["--skip-layer", "RELIEF"], ["--skip-layer", "FRAME"], ["--monochrome"]],
    "hello.jsonl": [],
}


def check_example(plotter: Plotter, folder: Path, name: str, update: bool) -> list[str]:
    """What is wrong with an example's plot."""
    file, *own = name.split()
    source = folder / file
    kept = EXPECTED / f"{'_'.join([source.stem, *own[1:]]).lower()}.png"
    plotter.plot(source, *own)
    plotter.check()
    found = plotter.poppler(RESOLUTION)
    if update:
        EXPECTED.mkdir(exist_ok=True)
        write_png(quantised(averages(found, REDUCTION), COLOR_STEP), kept)
    expected = read_png(kept)
    messages = []
    for what, difference in (
        ("the kept picture", compare(expected, averages(found, REDUCTION), TO_KEPT_PICTURES)),
        ("MuPDF's rendering", compare(plotter.mupdf(RESOLUTION), found, BETWEEN_RENDERERS)),
    ):
        figures = f"{difference.off} blocks off, {difference.worst} at worst, {difference.mean:.3f} in all"
        print(f"{name}, {what}: {figures}")
        if difference.message:
            messages.append(f"{name}: Poppler's rendering is not {what}: {difference.message}")
    for options in EXAMPLES[name]:
        plotter.plot(source, *own, *options)
        changed = compare(expected, averages(plotter.poppler(RESOLUTION), REDUCTION), TO_KEPT_PICTURES)
        if not changed.message:
            messages.append(f"{name}: the comparison does not notice {' '.join(options)}")
    return messages


def main() -> int:
    """Checks the examples; the exit status is 1 when there is a complaint."""
    parser = argparse.ArgumentParser(description="Compare renderings of the examples.")
    parser.add_argument("--hdiplot", type=Path, required=True)
    parser.add_argument("--examples", type=Path, required=True)
    parser.add_argument("--update", action="store_true")
    arguments = parser.parse_args()
    messages = []
    with Plotter(arguments.hdiplot) as plotter:
        for name in EXAMPLES:
            try:
                messages += check_example(plotter, arguments.examples, name, arguments.update)
            except (PlotError, OSError) as error:
                messages.append(f"{name}: {error}")
    print("\n".join([*messages, f"{len(EXAMPLES)} examples, {len(messages)} complaints"]))
    return 1 if messages else 0


if __name__ == "__main__":
    sys.exit(main())
