#!/usr/bin/env python3
"""Plots the drawings of this folder and compares traces and messages with the expected files.

NAME.dxf is plotted with the options in NAME.args. Expected are NAME.jsonl, the recorded trace; NAME.err, standard
error; NAME.out, standard output after the summary. A missing file stands for an empty one. Both binary forms of the
drawing, and of the examples, must give exactly the same trace.

    check_drawings.py [NAME ...]           compares; default: all drawings
    check_drawings.py --update NAME ...    writes the expected files, for a review of each changed line
"""

import argparse
import concurrent.futures
import dataclasses
import itertools
import json
import math
import os
import pathlib
import shlex
import subprocess
import sys
import tempfile

import binary_dxf

FOLDER = pathlib.Path(__file__).resolve().parent
EXAMPLES = FOLDER.parent.parent / "examples"
RESULTS = ("jsonl", "err", "out")
MOST_DIFFERENCES = 5


@dataclasses.dataclass
class Difference:
    file: str
    line: int
    expected: str
    actual: str


def read(file):
    return file.read_text(encoding="utf-8") if file.exists() else ""


def plot(drawing):
    """Plots a drawing; the results by the extension of the expected file."""
    with tempfile.TemporaryDirectory() as place:
        trace = pathlib.Path(place, "trace.jsonl")
        options = shlex.split(read(FOLDER / f"{drawing.stem}.args"))
        files = ["-o", os.path.join(place, "plot.pdf"), "--record", str(trace)]
        # Without the user's settings, and with the driver's messages in English.
        environment = os.environ | {"HDI_USER_DIR": place, "LC_ALL": "C.UTF-8"}
        done = subprocess.run([os.environ["HDI_HDIPLOT_PATH"], drawing.name, *files, *options], cwd=drawing.parent,
                              env=environment, capture_output=True, encoding="utf-8", check=False, timeout=60)
        summary_end = done.stdout.find("\n") + 1
        crash = "" if done.returncode in (0, 1, 2) else f"ended with {done.returncode}\n"
        return {"jsonl": read(trace), "err": done.stderr + crash, "out": done.stdout[summary_end:]}


def binary_differs(drawing):
    """Whether one of the binary forms, beside the files that drawings refer to, gives another trace."""
    text = plot(drawing)["jsonl"]
    with tempfile.TemporaryDirectory() as place:
        for file in itertools.chain(*map(drawing.parent.glob, ("*.png", "*.ctb", "*.stb"))):
            os.symlink(file, os.path.join(place, file.name))
        binary = pathlib.Path(place, drawing.name)
        for wide in (False, True):
            binary.write_bytes(binary_dxf.converted(drawing.read_bytes(), wide))
            if plot(binary)["jsonl"] != text:
                return True
    return not text


def agree(expected, actual):
    """Equal, except that numbers may differ by the rounding of another C library: a millionth of a dot."""
    if isinstance(expected, dict) and isinstance(actual, dict):
        return expected.keys() == actual.keys() and all(agree(expected[key], actual[key]) for key in expected)
    if isinstance(expected, list) and isinstance(actual, list):
        return len(expected) == len(actual) and all(map(agree, expected, actual))
    if isinstance(expected, (int, float)) and isinstance(actual, (int, float)):
        return math.isclose(expected, actual, rel_tol=1e-9, abs_tol=1e-6)
    return expected == actual


def lines_agree(expected, actual, ending):
    return expected == actual or (ending == "jsonl" and agree(json.loads(expected), json.loads(actual)))


def differences(name, results):
    found = []
    for ending in RESULTS:
        expected = read(FOLDER / f"{name}.{ending}").splitlines()
        actual = results[ending].splitlines()
        for number in range(max(len(expected), len(actual))):
            pair = [lines[number] if number < len(lines) else None for lines in (expected, actual)]
            if None in pair or not lines_agree(*pair, ending):
                found.append(Difference(f"{name}.{ending}", number + 1, *pair))
    return found


def update(name, results):
    for ending in RESULTS:
        file = FOLDER / f"{name}.{ending}"
        if results[ending]:
            file.write_text(results[ending], encoding="utf-8")
        else:
            file.unlink(missing_ok=True)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("names", metavar="NAME", nargs="*")
    parser.add_argument("--update", action="store_true")
    arguments = parser.parse_args()
    if arguments.update and not arguments.names:
        parser.error("--update needs the names of drawings")
    names = arguments.names or sorted(file.stem for file in FOLDER.glob("*.dxf"))
    # The command is another process, so threads are enough.
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        plots = list(pool.map(plot, [FOLDER / f"{name}.dxf" for name in names]))
        plotted = [file for file in FOLDER.glob("*.dxf") if file.with_suffix(".jsonl").exists()]
        drawings = [] if arguments.names else [*plotted, *EXAMPLES.glob("*.dxf")]
        differ = [drawing.name for drawing, differs in zip(drawings, pool.map(binary_differs, drawings)) if differs]
    failed = 0
    for name, results in zip(names, plots):
        if arguments.update:
            update(name, results)
            continue
        found = differences(name, results)
        failed += bool(found)
        for difference in found[:MOST_DIFFERENCES]:
            print(f"{difference.file}:{difference.line}:")
            print(f"  expected {difference.expected}\n  actual   {difference.actual}")
    print(f"{len(names) - failed} of {len(names)} drawings are as expected")
    if differ:
        print(f"binary forms give another trace: {', '.join(differ)}")
    return 1 if failed or differ or not names else 0


if __name__ == "__main__":
    sys.exit(main())
