"""Plots elliptic arcs and holds their curves to the ellipse: how an arc is cut is the host library's choice.

check_arcs.py --hdiplot PATH
"""

from __future__ import annotations

import argparse
import math
import sys
from dataclasses import dataclass
from pathlib import Path

from player import Player, PlayError
from trace_file import write_trace

# The most that a curve may lie off its ellipse, in dots, and what f32 and five decimals add to it.
TOLERANCE = 0.05
NOISE = 0.01
SAMPLES = 24

# A resolution at which the printable height of the default sheet is a whole number of dots.
DOTS_PER_INCH = 254
PRINTABLE_HEIGHT = 2630.0
JOB: dict[str, object] = {"job": {"devMode": {"dmPrintQuality": DOTS_PER_INCH}}}

TURN = 2 * math.pi

Curve = tuple[complex, complex, complex, complex]


@dataclass(frozen=True)
class Arc:
    """The arguments of one call; angles in radians."""

    center: tuple[float, float]
    a: float
    b: float
    c: float
    d: float
    e: float

    def call(self) -> dict[str, object]:
        """The call line of the arc."""
        values = {"a": self.a, "b": self.b, "c": self.c, "d": self.d, "e": self.e}
        return {"call": "DevArc", "center": list(self.center), **values}

    def in_own_axes(self, point: complex) -> complex:
        """A page point, in dots with Y up, seen from the center along the ellipse's axes."""
        center = complex(self.center[0], PRINTABLE_HEIGHT - self.center[1])
        return (point - center) * complex(math.cos(self.c), -math.sin(self.c))

    def parameter(self, point: complex) -> float:
        """The ellipse's parameter of the point nearest to a page point close to the ellipse."""
        local = self.in_own_axes(point)
        guess = math.atan2(local.imag / self.b, local.real / self.a)
        low, high = guess - 0.1, guess + 0.1
        for _ in range(60):
            third = (high - low) / 3
            if abs(self._at(low + third) - local) < abs(self._at(high - third) - local):
                high -= third
            else:
                low += third
        return (low + high) / 2

    def distance(self, point: complex) -> float:
        """How far a page point lies off the ellipse."""
        return abs(self._at(self.parameter(point)) - self.in_own_axes(point))

    def _at(self, parameter: float) -> complex:
        return complex(self.a * math.cos(parameter), self.b * math.sin(parameter))


ARCS = [
    Arc((1000, 1000), 500, 500, 0, 0, TURN),
    Arc((1000, 1000), 500, 500, 0, TURN, 0),
    Arc((1000.25, 1000.75), 300, 300, 0, 0.2, 1.9),
    Arc((1000, 1200), 300, 300, 0, 1.9, 0.2),
    Arc((900, 1300), 800, 150, 0, -0.5, 4.0),
    Arc((900, 1300), 150, 800, 0.7, 3.0, 7.5),
    Arc((900, 1300), 640, 5, -1.1, 0, TURN),
    Arc((0, 0), 20000, 30000, 0.3, 0.0, 5.5),
    Arc((10, 10), 0.5, 0.5, 0, 0, TURN),
    Arc((500, 500), 1500, 1500, 0, 1.0, 1.001),
]


def read_subpaths(content: str) -> list[list[Curve]]:
    """The curves of a content stream, one list for each subpath; lines are cubic curves, too."""
    subpaths: list[list[Curve]] = []
    current = 0j
    numbers: list[float] = []
    for word in content.split():
        if word == "m":
            current = complex(*numbers)
            subpaths.append([])
        elif word == "l":
            end = complex(*numbers)
            step = (end - current) / 3
            subpaths[-1].append((current, current + step, end - step, end))
            current = end
        elif word == "c":
            x1, y1, x2, y2, x3, y3 = numbers
            end = complex(x3, y3)
            subpaths[-1].append((current, complex(x1, y1), complex(x2, y2), end))
            current = end
        try:
            numbers.append(float(word))
        except ValueError:
            numbers.clear()
    return subpaths


def point_on(curve: Curve, t: float) -> complex:
    """The point of a cubic curve at t from 0 to 1."""
    p0, p1, p2, p3 = curve
    s = 1 - t
    return s**3 * p0 + 3 * s * s * t * p1 + 3 * s * t * t * p2 + t**3 * p3


def check_arc(arc: Arc, curves: list[Curve]) -> list[str]:
    """What is wrong with the curves of an arc: they run from the parameter e to d and stay on the ellipse."""
    points = [point_on(curve, step / SAMPLES) for curve in curves for step in range(SAMPLES + 1)]
    worst = max(arc.distance(point) for point in points)
    messages = []
    if worst > TOLERANCE + NOISE:
        messages.append(f"lies {worst:.4f} dots off the ellipse")
    parameters = [arc.parameter(point) for point in points]
    pairs = zip(parameters, parameters[1:], strict=False)
    steps = [math.remainder(after - before, TURN) for before, after in pairs]
    span = arc.d - arc.e
    slack = (TOLERANCE + NOISE) / min(arc.a, arc.b)
    if abs(math.remainder(parameters[0] - arc.e, TURN)) > slack:
        messages.append(f"starts at {parameters[0]:.5f} and not at {arc.e:.5f}")
    if abs(sum(steps) - span) > 2 * slack:
        messages.append(f"runs through {sum(steps):.5f} and not through {span:.5f}")
    if min(step * math.copysign(1, span) for step in steps) < -slack:
        messages.append("turns back on itself")
    return messages


def check_each(player: Player) -> list[str]:
    """Plots every arc as a path of its own."""
    lines = [JOB, {"call": "DevStartPage"}]
    for arc in ARCS:
        lines += [arc.call(), {"call": "DevBeginPath"}]
    job = player.play_text(write_trace([*lines, {"call": "DevEndPage"}]))
    messages = [f"unexpected result {line}" for line in job.results if not line.endswith(" 1")]
    subpaths = read_subpaths(job.pages[0].streams[1])
    if len(subpaths) != len(ARCS):
        return messages + [f"{len(ARCS)} arcs give {len(subpaths)} subpaths"]
    for arc, curves in zip(ARCS, subpaths, strict=True):
        messages += [f"{arc}: {text}" for text in check_arc(arc, curves)]
    return messages


def check_joining(player: Player) -> list[str]:
    """A line to where an arc starts and the arc are one subpath; an arc without a span adds nothing."""
    lines: list[dict[str, object]] = [
        JOB,
        {"call": "DevStartPage"},
        {"call": "DevPolyline", "points": [[500, 100], [400, 300]]},
        Arc((300, 300), 100, 100, 0, 2.0, 0).call(),
        Arc((300, 300), 50, 50, 0, 1.0, 1.0).call(),
        {"call": "DevEndPage"},
    ]
    subpaths = read_subpaths(player.play_text(write_trace(lines)).pages[0].streams[1])
    if len(subpaths) != 1:
        return [f"a line and the arc at its end give {len(subpaths)} subpaths"]
    return check_arc(Arc((300, 300), 100, 100, 0, 2.0, 0), subpaths[0][1:])


def main() -> int:
    """Checks the arcs; the exit status is 1 when one of them is wrong."""
    parser = argparse.ArgumentParser(description="Hold plotted arcs to their ellipses.")
    parser.add_argument("--hdiplot", type=Path, required=True)
    with Player(parser.parse_args().hdiplot) as player:
        try:
            messages = check_each(player) + check_joining(player)
        except PlayError as error:
            messages = [str(error)]
    print("\n".join([*messages, f"{len(ARCS)} arcs, {len(messages)} complaints"]))
    return 1 if messages else 0


if __name__ == "__main__":
    sys.exit(main())
