#!/usr/bin/env python3
"""Writes the example drawings beside this file, or only those named on the command line.

    python3 make_examples.py [site_plan] [flange] [diagram] [scripts] [trail_map]
"""

import importlib
import pathlib
import sys

NAMES = ("site_plan", "flange", "diagram", "scripts", "trail_map")


def main(arguments):
    unknown = [name for name in arguments if name not in NAMES]
    if unknown:
        sys.exit(f"make_examples.py: there is no drawing {unknown[0]}; there are {', '.join(NAMES)}")
    folder = pathlib.Path(__file__).resolve().parent
    for name in arguments or NAMES:
        drawing = importlib.import_module(name).make()
        path = folder / f"{name}.dxf"
        drawing.save(path)
        print(
            f"{path.name}: {len(drawing.model.items)} entities, {len(drawing.blocks)} blocks, "
            f"{path.stat().st_size / 1000:.0f} kB"
        )


if __name__ == "__main__":
    main(sys.argv[1:])
