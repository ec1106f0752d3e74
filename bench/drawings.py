#!/usr/bin/python3
"""Compares hdiplot with other programs that plot DXF files, on generated drawings and as whole commands.

Prints the median time from start to end of the process, its peak resident memory and the size of the PDF; peaks
below about 20 MB are those of this script. Runs are interleaved. A program that is not installed is left out; one
that exceeds the limit is stopped and not run again on that drawing. "hdiplot --list" only reads the drawing.
hdiplot and LibreCAD fit drawings to A4.
"""

import argparse
import dataclasses
import math
import multiprocessing
import os
import pathlib
import random
import shutil
import statistics
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]

WIDTH, HEIGHT = 420.0, 297.0  # millimetres: an A3 sheet
COLORS = 7
WORDS = "PUMP VALVE Section Detail level 4.250 DN 150 see sheet Foundation AXIS north".split()


def random_point(rng):
    """A point of the sheet, away from its edges."""
    return rng.uniform(15, WIDTH - 15), rng.uniform(15, HEIGHT - 15)


def nearby(rng, point, reach):
    """A point at most `reach` away from another in x and in y."""
    return point[0] + rng.uniform(-reach, reach), point[1] + rng.uniform(-reach, reach)


def color(rng):
    return {"color": rng.randint(1, COLORS)}


def add_lines(drawing, rng, count):
    model = drawing.modelspace()
    for _ in range(count):
        start = random_point(rng)
        model.add_line(start, nearby(rng, start, 10), color(rng))


def add_polylines(drawing, rng, count):
    """Open ones of 11 points."""
    model = drawing.modelspace()
    for _ in range(count):
        points = [random_point(rng)]
        while len(points) < 11:
            points.append(nearby(rng, points[-1], 1.5))
        model.add_lwpolyline(points, dxfattribs=color(rng))


def add_texts(drawing, rng, count):
    """Alternately in a stroke font and in a TrueType font."""
    drawing.styles.new("STROKE", {"font": "txt.shx"})
    drawing.styles.new("TRUETYPE", {"font": "LiberationSans-Regular.ttf"})
    model = drawing.modelspace()
    for i in range(count):
        look = {
            "insert": random_point(rng),
            "height": rng.choice((1.8, 2.5, 3.5)),
            "rotation": rng.choice((0, 0, 0, 90, 30)),
            "style": "TRUETYPE" if i % 2 else "STROKE",
        }
        model.add_text(" ".join(rng.choices(WORDS, k=3)), dxfattribs=look | color(rng))


def add_inserts(drawing, rng, count):
    """Inserts of a block of 40 entities, rotated and scaled."""
    block = drawing.blocks.new("PART")
    for _ in range(10):
        center = rng.uniform(-5, 5), rng.uniform(-5, 5)
        block.add_line(center, nearby(rng, center, 3))
        block.add_circle(center, rng.uniform(0.2, 1))
        block.add_arc(center, rng.uniform(1, 2), rng.uniform(0, 180), rng.uniform(190, 350))
        block.add_lwpolyline([nearby(rng, center, 2) for _ in range(4)], close=True)
    model = drawing.modelspace()
    for _ in range(count):
        size = rng.uniform(0.3, 1)
        look = {"xscale": size, "yscale": size, "rotation": rng.uniform(0, 360)}
        model.add_blockref("PART", random_point(rng), look)


def add_hatches(drawing, rng, count):
    """Polygons of eight corners in ANSI31, which LibreCAD draws as its own pattern of that name."""
    model = drawing.modelspace()
    for _ in range(count):
        x, y = random_point(rng)
        corners = [(rng.uniform(5, 15), k * math.pi / 4) for k in range(8)]
        hatch = model.add_hatch(dxfattribs=color(rng))
        hatch.set_pattern_fill("ANSI31", definition=[(45, (0, 0), (-1, 1), [])])
        hatch.paths.add_polyline_path([(x + r * math.cos(angle), y + r * math.sin(angle)) for r, angle in corners])


CONTENTS = {  # what is added, and how many at scale 1
    "lines": (add_lines, 200_000),
    "polylines": (add_polylines, 100_000),
    "texts": (add_texts, 50_000),
    "inserts": (add_inserts, 5_000),
    "hatches": (add_hatches, 2_000),
}


def write_drawing(name, count, path):
    """Writes the same entities for the same name and count."""
    import ezdxf  # in the writer's process only, see compare()

    drawing = ezdxf.new("R2000", units=ezdxf.units.MM)
    CONTENTS[name][0](drawing, random.Random(name), count)
    drawing.saveas(path)


@dataclasses.dataclass
class Contestant:
    """A program. `arguments` hold {dxf}, and {pdf} or its {folder} where it writes one."""

    title: str
    arguments: list

    def command(self, dxf, pdf):
        return [argument.format(dxf=dxf, pdf=pdf, folder=pdf.parent) for argument in self.arguments]

    def writes(self):
        return any(place in self.arguments for place in ("{pdf}", "{folder}"))


@dataclasses.dataclass
class Score:
    """What the runs of a contestant on one drawing took."""

    seconds: list = dataclasses.field(default_factory=list)
    peak: int = 0  # bytes
    size: int = 0  # of the PDF, bytes
    outcome: str = ""  # why there are no more runs

    def row(self, ours):
        """Formats the columns of the table; `ours` is the score that the time is compared with."""
        if self.outcome:
            return f"{self.outcome:>9}"
        size = f"{self.size / 1e6:9.2f}" if self.size else " " * 9
        ratio = ""
        if ours.seconds and not ours.outcome:
            ratio = f"{statistics.median(self.seconds) / statistics.median(ours.seconds):9.2f}"
        return f"{statistics.median(self.seconds):9.3f}{self.peak / 1e6:9.1f}{size}{ratio}"


def contestants(hdiplot):
    """hdiplot, its reading alone, and the other programs that are installed."""
    lineup = [
        Contestant("hdiplot", [hdiplot, "-q", "-o", "{pdf}", "{dxf}"]),
        Contestant("hdiplot --list", [hdiplot, "--list", "{dxf}"]),
    ]
    peers = [  # LibreCAD names the PDF after the drawing
        Contestant("librecad", ["librecad", "dxf2pdf", "-a", "-t", "{folder}", "{dxf}"]),
        Contestant("ezdxf", ["ezdxf", "draw", "-o", "{pdf}", "{dxf}"]),
    ]
    for peer in peers:
        if shutil.which(peer.arguments[0]):
            lineup.append(peer)
        else:
            print(f"drawings.py: {peer.title} is not installed, so it is left out", file=sys.stderr)
    return lineup


def measure(contestant, dxf, pdf, limit, score):
    """Runs a contestant once and adds the result to its score."""
    pdf.parent.mkdir(exist_ok=True)
    pdf.unlink(missing_ok=True)
    command = contestant.command(dxf, pdf)
    log = pdf.with_suffix(".log")
    stopped = threading.Event()
    # LibreCAD needs a display even where it opens no window.
    environment = os.environ | {"QT_QPA_PLATFORM": "offscreen"}
    with open(log, "wb") as output:
        start = time.perf_counter()
        process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT, env=environment
        )
        timer = threading.Timer(limit, lambda: (stopped.set(), process.kill()))
        timer.start()
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - start
        timer.cancel()
        process.returncode = os.waitstatus_to_exitcode(status)
    if stopped.is_set():
        score.outcome = f"> {limit:g} s"
    elif process.returncode != 0 or (contestant.writes() and not pdf.exists()):
        score.outcome = "failed"
        print(f"{' '.join(command)}: status {process.returncode}", file=sys.stderr)
        print(*log.read_text("utf-8", "replace").splitlines()[-5:], sep="\n", file=sys.stderr)
    else:
        score.seconds.append(seconds)
        score.peak = max(score.peak, usage.ru_maxrss * 1024)
        score.size = pdf.stat().st_size if pdf.exists() else 0


def compare(name, count, lineup, options, folder):
    """Prints the table of one drawing. Returns whether hdiplot plotted it."""
    dxf = folder / f"{name}.dxf"
    # In a process of its own: the peak of this one counts as memory of the programs that it starts.
    writer = multiprocessing.Process(target=write_drawing, args=(name, count, dxf))
    writer.start()
    writer.join()
    if writer.exitcode != 0:
        sys.exit(f"drawings.py: {dxf} could not be written")
    scores = [Score() for _ in lineup]
    for _ in range(options.runs):
        for contestant, score in zip(lineup, scores):
            if not score.outcome:
                pdf = folder / contestant.title / f"{name}.pdf"
                measure(contestant, dxf, pdf, options.limit, score)
    title = f"{count:,} {name}, {dxf.stat().st_size / 1e6:.1f} MB"
    print(f"\n{title:<32}{'time s':>9}{'peak MB':>9}{'PDF MB':>9}{'times':>9}")
    for contestant, score in zip(lineup, scores):
        print(f"  {contestant.title:<30}{score.row(scores[0])}", flush=True)
    return not scores[0].outcome


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench --drawings", description=__doc__.splitlines()[0])
    parser.add_argument("--hdiplot", default=str(ROOT / "build/hdiplot"), help="the program to compare")
    parser.add_argument("--runs", type=int, default=3, help="runs of each program, the median is printed (default 3)")
    parser.add_argument("--scale", type=float, default=1.0, help="factor on the number of entities (default 1)")
    parser.add_argument("--limit", type=float, default=120.0, help="seconds a run may take (default 120)")
    parser.add_argument("--drawing", action="append", choices=CONTENTS, help="only this one (repeatable)")
    parser.add_argument("--keep", type=pathlib.Path, metavar="FOLDER", help="keep the drawings and PDFs here")
    options = parser.parse_args()
    if options.runs < 1 or options.scale <= 0 or options.limit <= 0:
        parser.error("--runs, --scale and --limit must be above 0")
    if shutil.which(options.hdiplot) is None:
        parser.error(f"cannot find the program {options.hdiplot}")
    lineup = contestants(options.hdiplot)
    with tempfile.TemporaryDirectory() as temporary:
        folder = options.keep or pathlib.Path(temporary)
        folder.mkdir(parents=True, exist_ok=True)
        plotted = [
            compare(name, max(1, round(CONTENTS[name][1] * options.scale)), lineup, options, folder.resolve())
            for name in options.drawing or CONTENTS
        ]
    return 0 if all(plotted) else 1


if __name__ == "__main__":
    sys.exit(main())
