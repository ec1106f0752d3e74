"""Shows plots in pdf.js: pages look as Poppler renders them, layers switch, texts, links and comments are found.

check_pdfjs.py --hdiplot PATH --examples DIRECTORY --npm PATH --chromium PATH --cache DIRECTORY [--keep DIRECTORY]

All pages are shown in one browser, so each check first plots what it needs and then looks at what was seen. With
--keep the pictures that pdf.js makes are written there.
"""

from __future__ import annotations

import argparse
import shutil
import sys
from collections import Counter
from dataclasses import dataclass, field
from pathlib import Path
from typing import Generator

RENDER = Path(__file__).resolve().parent.parent / "render"
sys.path.append(str(RENDER))

from check_contents import RASTERS  # noqa: E402
from check_examples import EXAMPLES  # noqa: E402
from check_layers import LAYERS, bands, layers_trace  # noqa: E402
from made_traces import POINTS_A_MILLIMETRE, SHEET, dots, points, trace_of  # noqa: E402
from pictures import Picture, Tolerance, averages, compare, write_png  # noqa: E402
from plotting import PlotError, Plotter  # noqa: E402
from viewer import Seen, View, ViewerError, install, show  # noqa: E402

RESOLUTION = 100
# Lines thinner than a pixel are drawn a pixel wide by both, but on whole pixels by Poppler alone.
TO_POPPLER = Tolerance(block=8, level=40, blocks=12, worst=56, mean=3.2)
# Of the traces whose pictures are known, those without a dot of no length, which pdf.js does not draw.
TRACES = ("clips", "curves", "fills", "opacity")
# Marks of direction that Poppler writes around words from right to left.
DIRECTION_MARKS = "\u202a\u202b\u202c"

# How far a place may lie off: comments lie on whole dots.
POINTS_OFF = 0.2

# A check yields the views that it needs and gets what they showed; it ends with its complaints.
Check = Generator[list[View], list[Seen], list[str]]


class Bench:
    """Where plots are made and kept until they are shown."""

    def __init__(self, plotter: Plotter) -> None:
        self.plotter = plotter
        self.folder = plotter.directory / "served"
        self.folder.mkdir()

    def keep(self, name: str) -> str:
        """Puts the plot that was just made among the files to show."""
        shutil.copyfile(self.plotter.pdf, self.folder / f"{name}.pdf")
        return f"{name}.pdf"


def rasters_trace() -> str:
    """Rasters of every kind, some translucent, on a ground of two colours."""
    calls = []
    for color, top in (([250, 220, 160], 0), ([40, 90, 140], 50)):
        ground = points((0, top), (152, top), (152, top + 50), (0, top + 50))
        calls += [{"call": "DevSetBrush", "color": color}, {"call": "DevSetFillMode", "mode": 1}]
        calls += [{"call": "DevPolygon", "points": ground}, {"call": "DevFillPath"}]
    for index, raster in enumerate(RASTERS):
        place = {"originX": dots(4 + 37 * (index % 4)), "originY": dots(15 + 40 * (index // 4))}
        pixel = {"scaleX": dots(34) / raster.size[0], "scaleY": dots(30) / raster.size[1]}
        calls += [{"call": "DevSetAlpha", "alpha": raster.alpha}]
        calls += [{"call": "DevBitmap", "image": raster.in_trace, **place, **pixel}]
    return trace_of(calls)


@dataclass
class Page:
    """A plot's page as it must be seen, and as it must not be: Poppler's renderings."""

    view: View
    picture: Picture
    reduction: int = 1  # pixels to a side of what is compared
    text: str = ""
    others: dict[str, Picture] = field(default_factory=dict)

    def complaints(self, seen: Seen) -> list[str]:
        """What is wrong with what was seen."""
        name = self.view.file
        shown = averages(seen.picture, self.reduction)
        difference = compare(averages(self.picture, self.reduction), shown, TO_POPPLER)
        print(f"{name}: {difference.off} blocks off, {difference.worst} at worst, {difference.mean:.3f} in all")
        messages = []
        if difference.message:
            messages.append(f"{name} does not look as in Poppler: {difference.message}")
        for what, other in self.others.items():
            if not compare(other, shown, TO_POPPLER).message:
                messages.append(f"{name}: the comparison does not notice {what}")
        expected, found = characters(self.text), characters("".join(self.texts_on_page(seen)))
        if found != expected:
            messages.append(f"{name} has {found - expected} in place of {expected - found} in its text")
        return messages

    def texts_on_page(self, seen: Seen) -> list[str]:
        """Texts that begin on the page: Poppler leaves out those beside it, as a clipped view has them."""
        size = (seen.picture.width, seen.picture.height)
        limits = [pixels * 72 / self.view.resolution for pixels in size]
        return [
            item["text"]
            for item in seen.texts
            if all(0 <= place <= limit for place, limit in zip(item["origin"], limits, strict=True))
        ]


def characters(text: str) -> Counter[str]:
    """How often each character occurs; readers put blanks, and order words in two directions, in their own ways."""
    return Counter(letter for letter in text if not letter.isspace() and letter not in DIRECTION_MARKS)


def check_pages(bench: Bench, examples: Path) -> Check:
    """Pages look as Poppler renders them and hold the same text."""
    plotter, pages = bench.plotter, []

    def add(name: str, reduction: int = 1) -> Page:
        resolution = RESOLUTION * reduction
        text = plotter.run("pdftotext", "-raw", str(plotter.pdf), "-").decode()
        pages.append(Page(View(bench.keep(name), resolution), plotter.poppler(resolution), reduction, text))
        return pages[-1]

    for name, changes in EXAMPLES.items():
        file, *own = name.split()
        plotter.plot(examples / file, *own)
        page = add("_".join([Path(file).stem, *own[1:]]))
        for options in changes[:1]:
            plotter.plot(examples / file, *own, *options)
            page.others[" ".join(options)] = plotter.poppler(RESOLUTION)
    for name in TRACES:
        plotter.plot(RENDER / f"{name}.jsonl")
        add(name)
    plotter.plot_text(rasters_trace(), ".jsonl")
    add("rasters", reduction=3)  # renderers put images on whole pixels in their own ways

    shown = yield [page.view for page in pages]
    return [message for page, seen in zip(pages, shown, strict=True) for message in page.complaints(seen)]


def check_layers(bench: Bench) -> Check:
    """A layer that is off takes its objects along and no others."""
    bench.plotter.plot_text(layers_trace(), ".jsonl")
    file = bench.keep("layers")
    choices = [(), *((name,) for name in LAYERS), LAYERS]
    shown = yield [View(file, 72, hidden=hidden) for hidden in choices]
    messages = []
    if sorted(shown[0].layers) != sorted(LAYERS):
        messages.append(f"the layers are {shown[0].layers}")
    pictures = [bands(seen.picture) for seen in shown]
    for hidden, found in zip(choices, pictures, strict=True):
        for name, whole, band in zip(LAYERS, pictures[0], found, strict=True):
            blank = band.count(255) == len(band)
            if blank != (name in hidden) or not (blank or band == whole):
                messages.append(f"without {list(hidden)}, {name} is not as it should be")
    return messages


def check_contents(bench: Bench) -> Check:
    """Texts, links and comments are what the calls have, where the calls have them."""
    links = {
        "https://a.example/größe?a=1": "https://a.example/gr%C3%B6%C3%9Fe?a=1",
        "www.example.org": "http://www.example.org/",
        "C:\\plans\\1.pdf": "file:///C:\\plans\\1.pdf",
    }
    texts = {"Tür 5": (90, 30), "Ωμέγα": (90, 60), "図面": (90, 80)}
    comments = {"図面 – 1:50 😀": (60, 10, 100, 30), "Größe": (20, 70, 60, 90)}  # left, top, right, bottom
    calls, expected = [], []
    for index, (target, address) in enumerate(links.items()):
        top = 10 + 20 * index
        line = {"call": "DevPolyline", "points": points((10, top), (50, top + 10))}
        calls += [{"call": "DevBeginLink", "target": target}, line, {"call": "DevEndLink"}]
        expected.append(("Link", address, "", on_page(10, top + 10, 50, top)))
    for text, (left, top, right, bottom) in comments.items():
        corners = [round(dots(value)) for value in (left, right, top, bottom)]
        calls += [{"call": "DevShxComment", "text": text, "rect": corners, "flags": 4}]
        expected.append(("Square", None, text, on_page(left, bottom, right, top)))
    size = round(dots(5))
    form = {"textHeight": size, "obliqueAngle": 0, "trackingFactor": 1, "widthFactor": 1}
    font = {"lfFaceName": "DejaVu Sans", "lfHeight": -size}
    for text, place in texts.items():
        call = {"call": "DevText", "font": font, "position": points(place)[0], "text": text, **form}
        calls += [call | {"advances": [dots(5)] * len(text)}]

    bench.plotter.plot_text(trace_of(calls), ".jsonl")
    (seen,) = yield [View(bench.keep("contents"), RESOLUTION)]
    words = [("Text", None, item["text"], item["origin"]) for item in seen.texts if item["text"]]
    expected += [("Text", None, text, on_page(*place)) for text, place in texts.items()]
    found = [(note["kind"], note["target"], note["text"], note["rect"]) for note in seen.notes] + words
    same = len(found) == len(expected) and all(
        one[:3] == other[:3] and all(abs(a - b) < POINTS_OFF for a, b in zip(one[3], other[3], strict=True))
        for one, other in zip(expected, found, strict=True)
    )
    return [] if same else ["\n".join(["expected:", *map(str, expected), "found:", *map(str, found)])]


def on_page(*millimetres: float) -> list[float]:
    """X and Y by turns from the sheet's upper left corner, in points from its lower left one."""
    height = SHEET["height"] / 10
    turned = [height - value if index % 2 else value for index, value in enumerate(millimetres)]
    return [POINTS_A_MILLIMETRE * value for value in turned]


def main() -> int:
    """Makes the checks; the exit status is 1 when there is a complaint."""
    parser = argparse.ArgumentParser(description="Show plots in pdf.js and compare with what they hold.")
    for name in ("hdiplot", "examples", "cache"):
        parser.add_argument(f"--{name}", type=Path, required=True)
    for name in ("npm", "chromium"):
        parser.add_argument(f"--{name}", default=name)
    parser.add_argument("--keep", type=Path)
    arguments = parser.parse_args()
    try:
        with Plotter(arguments.hdiplot) as plotter:
            bench = Bench(plotter)
            checks = [check_pages(bench, arguments.examples), check_layers(bench), check_contents(bench)]
            messages = run(checks, bench, arguments)
    except (PlotError, ViewerError, OSError) as error:
        messages = [str(error)]
    print("\n".join([*messages, f"{len(messages)} complaints"]))
    return 1 if messages else 0


def run(checks: list[Check], bench: Bench, arguments: argparse.Namespace) -> list[str]:
    """Shows what the checks ask for, all at once, and gathers their complaints."""
    wanted = [next(check) for check in checks]
    pdfjs = install(arguments.npm, arguments.cache)
    views = [view for some in wanted for view in some]
    seen = iter(show(arguments.chromium, pdfjs, bench.folder, views))
    messages = []
    for check, some in zip(checks, wanted, strict=True):
        shown = [next(seen) for _ in some]
        if arguments.keep:
            arguments.keep.mkdir(parents=True, exist_ok=True)
            for index, (view, one) in enumerate(zip(some, shown, strict=True)):
                write_png(one.picture, arguments.keep / f"{Path(view.file).stem}-{index}.png")
        try:
            check.send(shown)
        except StopIteration as end:
            messages += end.value
    return messages


if __name__ == "__main__":
    sys.exit(main())
