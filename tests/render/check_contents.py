"""Reads back what a plot holds beside its lines: images, links, comments and the measure.

check_contents.py --hdiplot PATH

The plots are of traces made here, so what they must hold is known without the driver.
"""

from __future__ import annotations

import argparse
import json
import math
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from made_traces import BLACK, POINTS_A_MILLIMETRE, WHITE, Raster, dots, points, trace_of
from pictures import Picture, read_ppm
from plotting import PlotError, Plotter

RASTERS = (
    Raster(19, 7, 8, seed=2),
    Raster(8, 4, 8, seed=3, alpha=100),
    Raster(37, 5, 1, seed=4, palette=[BLACK, WHITE]),
    Raster(37, 5, 1, seed=5, palette=[WHITE, BLACK]),
    Raster(37, 5, 1, seed=6, palette=[WHITE, BLACK], alpha=254),
    Raster(33, 3, 1, seed=7, palette=[[10, 20, 30, 0], [200, 100, 50, 128]]),
    Raster(16, 16, 32, seed=8),
    Raster(16, 16, 32, seed=9, alpha=128),
)


def read_extracted(path: Path) -> Picture:
    """A picture as pdfimages writes it: one bit a pixel, 1 black, or three bytes."""
    data = path.read_bytes()
    if path.suffix == ".ppm":
        return read_ppm(data)
    _, width, height, rows = data.split(maxsplit=3)
    length = (int(width) + 7) // 8
    digits = [f"{int.from_bytes(rows[row * length :][:length], 'big'):0{8 * length}b}" for row in range(int(height))]
    pixels = b"".join(b"\0\0\0" if digit == "1" else b"\xff\xff\xff" for row in digits for digit in row[: int(width)])
    return Picture(int(width), int(height), pixels)


def check_images(plotter: Plotter) -> list[str]:
    """Images and their masks hold the rasters' pixels."""
    calls = []
    for index, raster in enumerate(RASTERS):
        place = {"originX": dots(10 + 15 * index), "originY": dots(10), "scaleX": 5, "scaleY": 5}
        calls += [{"call": "DevSetAlpha", "alpha": raster.alpha}]
        calls += [{"call": "DevBitmap", "image": raster.in_trace, **place}]
    plotter.plot_text(trace_of(calls), ".jsonl")
    plotter.check()
    plotter.run("pdfimages", str(plotter.pdf), str(plotter.directory / "image"))
    found = [read_extracted(path) for path in sorted(plotter.directory.glob("image-*"))]
    expected = []
    for index, raster in enumerate(RASTERS):
        expected.append((f"image {index}", raster.size, raster.colors, raster.tolerance))
        if raster.mask is not None:
            gray = bytes(value for value in raster.mask for _ in range(3))
            expected.append((f"mask {index}", raster.size, gray, 0))
    if len(found) != len(expected):
        return [f"{len(found)} images and masks in place of {len(expected)}"]
    messages = []
    for picture, (what, size, pixels, tolerance) in zip(found, expected):
        same = (picture.width, picture.height) == size and len(picture.pixels) == len(pixels)
        if not same or max(abs(a - b) for a, b in zip(picture.pixels, pixels)) > tolerance:
            messages.append(f"{what} does not hold the raster's pixels")
    return messages


READ_COMMENTS = """
var file = (Document.openDocument || function (name) { return new Document(name); })(scriptArgs[0]);
file.loadPage(0).getAnnotations().forEach(function (note) {
  print(JSON.stringify([note.getType(), note.getContents(), note.getRect()]));
});
"""


def check_annotations(plotter: Plotter) -> list[str]:
    """Links are read by Poppler, and comments, which none of its tools prints, by MuPDF."""
    targets = ["https://a.example/größe?a=1", "www.example.org", "C:\\plans\\第1.pdf"]
    addresses = [targets[0], "http://" + targets[1], "file:///" + targets[2]]
    words = ["Tür 5", "図面 – 1:50 😀"]
    calls = []
    for index, target in enumerate(targets):
        covered = {"call": "DevPolyline", "points": points((10, 10 + 20 * index), (50, 20 + 20 * index))}
        calls += [{"call": "DevBeginLink", "target": target}, covered, {"call": "DevEndLink"}]
    corners = [round(dots(value)) for value in (100, 60, 10, 30)]  # both X, both Y
    calls += [{"call": "DevShxComment", "text": text, "rect": corners, "flags": 4} for text in words]
    plotter.plot_text(trace_of(calls), ".jsonl")
    plotter.check()
    listed = plotter.run("pdfinfo", "-url", str(plotter.pdf)).decode().splitlines()[1:]
    found = [line.split(maxsplit=2)[2] for line in listed]
    messages = [] if found == addresses else [f"the links are {found}"]

    script = plotter.directory / "comments.js"
    script.write_text(READ_COMMENTS, encoding="utf-8")
    notes = [json.loads(line) for line in plotter.run("mutool", "run", str(script), str(plotter.pdf)).splitlines()]
    box = [value * POINTS_A_MILLIMETRE for value in (60, 10, 100, 30)]  # of a page that is seen from its top
    if [note[:2] for note in notes] != [["Square", text] for text in words]:
        messages.append(f"the comments are {notes}")
    elif any(abs(a - b) > 0.2 for note in notes for a, b in zip(note[2], box)):
        messages.append(f"the comments' boxes are {[note[2] for note in notes]} in place of {box}")
    return messages


def check_measure(plotter: Plotter) -> list[str]:
    """100 mm on paper are 100 mm for a reader that measures, or what they stand for at another scale."""
    ways = [(100, 0), (0, 100), (60, 80)]
    calls = [{"call": "DevSetPen", "style": 65536, "width": 2, "color": [0, 0, 0]}]
    for x, y in ways:
        calls += [{"call": "DevPolyline", "points": points((1, 0.5), (1 + x, 0.5 + y))}]
    messages = []
    for scale in (1, 50, 0.001):
        plotter.plot_text(trace_of(calls, lineScale=dots(1) / scale), ".jsonl")
        value = plotter.run("mutool", "show", str(plotter.pdf), "pages/1/VP/1/Measure/X/1/C")
        drawn = plotter.run("mutool", "draw", "-q", "-F", "trace", str(plotter.pdf))
        lengths = [length * float(value) for length in line_lengths(drawn)]
        if len(lengths) != len(ways) or any(abs(length / scale - 100) > 0.001 for length in lengths):
            messages.append(f"100 mm at a scale of 1:{scale:g} measure {lengths}")
    return messages


def check_drawn_lengths(plotter: Plotter) -> list[str]:
    """100 units of a drawing are measured as such at any scale, and are 100 mm of paper at 1:1."""
    ways = [(100, 0), (0, 100), (60, 80)]
    messages = []
    for scale in (1, 50):
        entities = [line for x, y in ways for line in (0, "LINE", 10, 3, 20, 7, 11, 3 + x * scale, 21, 7 + y * scale)]
        drawing = "\n".join(map(str, [0, "SECTION", 2, "ENTITIES", *entities, 0, "ENDSEC", 0, "EOF", ""]))
        plotter.plot_text(drawing, ".dxf", "--scale", f"1:{scale}", "--keep-fractions")
        value = float(plotter.run("mutool", "show", str(plotter.pdf), "pages/1/VP/1/Measure/X/1/C"))
        on_page = line_lengths(plotter.run("mutool", "draw", "-q", "-F", "trace", str(plotter.pdf)))
        lengths = [(length / POINTS_A_MILLIMETRE, length * value / scale) for length in on_page]
        if len(lengths) != len(ways) or any(abs(length - 100) > 0.001 for pair in lengths for length in pair):
            messages.append(f"100 mm of a drawing at 1:{scale} are {lengths} on paper and by measure")
    return messages


def line_lengths(trace: bytes) -> list[float]:
    """The lengths of the lines that MuPDF strokes, in points of the page."""
    lengths = []
    for path in ElementTree.fromstring(trace).iter("stroke_path"):
        a, b, c, d, *_ = map(float, path.get("transform").split())
        start = (0.0, 0.0)
        for node in path:
            x, y = float(node.get("x")), float(node.get("y"))
            if node.tag == "lineto":
                dx, dy = x - start[0], y - start[1]
                lengths.append(math.hypot(a * dx + c * dy, b * dx + d * dy))
            start = (x, y)
    return lengths


def main() -> int:
    """Makes the checks; the exit status is 1 when there is a complaint."""
    parser = argparse.ArgumentParser(description="Read back images, links, comments and the measure.")
    parser.add_argument("--hdiplot", type=Path, required=True)
    messages = []
    with Plotter(parser.parse_args().hdiplot) as plotter:
        for check in (check_images, check_annotations, check_measure, check_drawn_lengths):
            try:
                messages += check(plotter)
            except (PlotError, OSError) as error:
                messages.append(f"{check.__name__}: {error}")
    print("\n".join([*messages, f"{len(messages)} complaints"]))
    return 1 if messages else 0


if __name__ == "__main__":
    sys.exit(main())
