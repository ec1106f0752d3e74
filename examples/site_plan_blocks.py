"""The site plan's blocks: trees, cars, parking places, lamps and boundary marks."""

from __future__ import annotations

from geometry import circle_loop, polar

PAPER = 0xFDFDFD  # white that stays white: pure white stands for the foreground


def add_blocks(drawing, pick):
    """`pick` is a random number generator."""
    add_tree_blocks(drawing, pick)
    car = drawing.block("CAR")
    body = [(-4.3, -1.2, 0.35), (-3.7, -1.7), (3.4, -1.7, 0.3), (4.4, -0.9), (4.4, 0.9, 0.3), (3.4, 1.7)]
    body += [(-3.7, 1.7, 0.35), (-4.3, 1.2)]
    car.hatch([body], color=0)
    car.polyline(body, closed=True, color=7)
    for front, back, bow in ((2.0, 1.0, -0.12), (-3.2, -2.4, 0.12)):
        glass = [(front, -1.4, -bow), (front, 1.4), (back, 1.2, bow * 0.8), (back, -1.2)]
        car.hatch([glass], rgb=PAPER)
        car.polyline(glass, closed=True, color=7)
    stall = drawing.block("STALL")
    stall.line((0, 0), (0, 10))
    wheel = drawing.block("STALL_WIDE")
    wheel.line((0, 0), (0, 10))
    wheel.circle((3.4, 3.2), 1.3)
    wheel.polyline([(3.2, 6.2), (3.2, 4.0), (4.6, 4.0), (5.2, 2.4)])
    wheel.circle((3.2, 6.9), 0.5)
    mark = drawing.block("BOUNDARY_MARK")
    mark.hatch([circle_loop((0, 0), 0.9)], rgb=PAPER)
    mark.circle((0, 0), 0.9, ltype="Continuous")
    mark.point((0, 0), layer="CONSTRUCTION")
    lamp = drawing.block("LAMP")
    lamp.circle((0, 0), 0.8)
    lamp.hatch([[(0.8, 0, 1.0), (-0.8, 0)]])
    lamp.line((0, 0), (0, 2.4))


def add_tree_blocks(drawing, pick):
    """Crowns of 10 mm; the fill lies in the blocks, so that one tree covers what stands behind it."""
    leaf = drawing.block("TREE_LEAF", "TREE")
    crown = [
        (*polar((0, 0), pick.uniform(4.4, 5.0), 360 * i / 11), pick.uniform(0.42, 0.6)) for i in range(11)
    ]
    leaf.hatch([crown], layer="TREE_FILL")
    leaf.polyline(crown, closed=True)
    for i in range(7):
        angle = 360 * i / 7 + pick.uniform(-14, 14)
        fork, tip = polar((0, 0), pick.uniform(1.4, 2.0), angle), polar(
            (0, 0), 3.6, angle + pick.uniform(-16, 16)
        )
        leaf.polyline([(0, 0), fork, tip], lw=13)
        leaf.line(fork, polar(fork, 1.4, angle + pick.choice((-42, 42))), lw=13)
    leaf.hatch([circle_loop((0, 0), 0.45)])

    lime = drawing.block("TREE_LIME", "TREE")
    lime.hatch([circle_loop((0, 0), 5)], layer="TREE_FILL")
    lime.circle((0, 0), 5)
    for i in range(20):
        inner = 3.1 if i % 2 else 1.6
        lime.line(polar((0, 0), inner, 18 * i), polar((0, 0), 4.6, 18 * i), lw=13)
    lime.hatch([circle_loop((0, 0), 0.45)])

    fir = drawing.block("TREE_FIR", "TREE")
    star = [polar((0, 0), 3.2 if i % 2 else 5, 360 * i / 22) for i in range(22)]
    fir.hatch([star], layer="TREE_FILL", rgb=0xB5D3AE)
    fir.polyline(star, closed=True)
    for i in range(11):
        fir.line((0, 0), polar((0, 0), 4.2, 360 * 2 * i / 22), lw=13)

    shrub = drawing.block("SHRUB", "TREE")
    bush = [(*polar((0, 0), 2.2, 60 * i), 0.75) for i in range(6)]
    shrub.hatch([bush], layer="TREE_FILL")
    shrub.polyline(bush, closed=True, lw=13)
    shrub.point((0, 0), layer="CONSTRUCTION")
