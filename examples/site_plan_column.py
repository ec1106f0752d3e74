"""The column beside the site plan's map: north arrow, key, scale bar and title."""

from __future__ import annotations

import sheet
from geometry import bulge, polar, rectangle

LEFT = sheet.LEFT + 300.0
RIGHT = sheet.RIGHT
MIDDLE = (LEFT + RIGHT) / 2


def draw_column(plan):
    m, letters = plan.drawing.model, plan.letters
    draw_north_arrow(m, letters, (MIDDLE, 258))
    draw_key(plan, 226)
    draw_scale_bar(m, letters, (LEFT + 9, 70))
    draw_title(m, letters)
    for y in (232, 82, 60):
        m.line((LEFT, y), (RIGHT, y), layer="FRAME_THIN")


def draw_north_arrow(m, letters, center):
    x, y = center
    m.circle(center, 14, layer="FRAME_THIN", lw=35)
    m.circle(center, 12.6, layer="FRAME_THIN", lw=13)
    for i in range(36):
        m.line(
            polar(center, 12.6, 10 * i), polar(center, 11 if i % 9 else 10, 10 * i), layer="FRAME_THIN", lw=13
        )
    tip, foot, left, right = (x, y + 18), (x, y - 8), (x - 5, y - 12), (x + 5, y - 12)
    m.solid([tip, left, foot], layer="FRAME")
    m.hatch([[tip, right, foot]], layer="FRAME", rgb=0xFDFDFD)
    m.polyline([tip, left, foot, right], closed=True, layer="FRAME", lw=35)
    letters.write(m, "N", (x, y + 20.2), 6, "center", lw=70)


def draw_key(plan, top):
    m, letters = plan.drawing.model, plan.letters
    letters.write(m, "KEY", (LEFT + 8, top - 6), 4)
    rows = (
        ("NEW BUILDING", key_building),
        ("EXISTING BUILDING", key_old_building),
        ("CARRIAGEWAY, KERB", key_road),
        ("PAVING", key_paving),
        ("PLOT BOUNDARY, MARK", key_boundary),
        ("CONTOUR LINES 0.5 m", key_contour),
        ("WATER", key_water),
        ("DECIDUOUS TREE", lambda plan, x, y: key_tree(plan, "TREE_LEAF", x, y)),
        ("AVENUE, ORCHARD TREE", lambda plan, x, y: key_tree(plan, "TREE_LIME", x, y)),
        ("CONIFER", lambda plan, x, y: key_tree(plan, "TREE_FIR", x, y)),
        ("SURVEY POINT", key_survey),
    )
    for i, (label, sample) in enumerate(rows):
        y = top - 19 - 11.6 * i
        sample(plan, LEFT + 8, y)
        letters.write(m, label, (LEFT + 33, y + 1.6), 2.5)


def box(x, y):
    return rectangle(x, y - 0.5, 18, 7)


def key_building(plan, x, y):
    plan.m.hatch([box(x, y)], layer="FILL_BUILDING")
    plan.m.hatch([box(x, y)], ("ANSI31", [(45, (0, 0), (-1.6, 1.6), [])]), layer="BUILDING_HATCH")
    plan.m.polyline(box(x, y), closed=True, layer="BUILDING")


def key_old_building(plan, x, y):
    plan.m.hatch([box(x, y)], layer="FILL_BUILDING", rgb=0xE4E2DE)
    plan.m.hatch([box(x, y)], ("TILES", [(90, (x, y), (-1.5, 0), [])]), layer="BUILDING_OLD", lw=13)
    plan.m.polyline(box(x, y), closed=True, layer="BUILDING_OLD", lw=35)


def key_road(plan, x, y):
    plan.m.hatch([box(x, y)], layer="FILL_ROAD")
    for edge in (y - 0.5, y + 6.5):
        plan.m.line((x, edge), (x + 18, edge), layer="ROAD")
    plan.m.line((x, y + 3), (x + 18, y + 3), layer="ROAD_MARKING", ltype="ROADDASH", lts=0.6, lw=35)


def key_paving(plan, x, y):
    plan.m.hatch([box(x, y)], layer="FILL_PAVEMENT")
    brick = [(0, (x, y - 0.5), (0, 2.0), []), (90, (x, y - 0.5), (2.0, 2.0), [2.0, -2.0])]
    plan.m.hatch([box(x, y)], ("PAVING", brick), layer="PAVING")
    plan.m.polyline(box(x, y), closed=True, layer="ROAD_EDGE", lw=18)


def key_boundary(plan, x, y):
    plan.m.line((x, y + 3), (x + 18, y + 3), layer="PLOT")
    for end in (x, x + 18):
        plan.m.insert("BOUNDARY_MARK", (end, y + 3), layer="PLOT", lw=18)


def key_contour(plan, x, y):
    for i, layer in enumerate(("CONTOUR", "CONTOUR_INDEX", "CONTOUR")):
        base = y + 0.2 + 2.6 * i
        points = [
            (x, base),
            (x + 4, base + 1.6),
            (x + 9, base - 0.6),
            (x + 14, base + 1.4),
            (x + 18, base + 0.4),
        ]
        plan.m.spline(points, layer=layer)


def key_water(plan, x, y):
    pool = [
        (x, y + 3, 0),
        (x, y + 2.5, bulge(90)),
        (x + 3, y - 0.5),
        (x + 15, y - 0.5, bulge(90)),
        (x + 18, y + 2.5),
    ]
    pool += [(x + 18, y + 3.5, bulge(90)), (x + 15, y + 6.5), (x + 3, y + 6.5, bulge(90)), (x, y + 3.5)]
    plan.m.hatch([pool], layer="FILL_WATER")
    plan.m.polyline(pool, closed=True, layer="WATER")


def key_tree(plan, block, x, y):
    plan.m.insert(block, (x + 9, y + 3), layer="TREE")


def key_survey(plan, x, y):
    plan.m.point((x + 5, y + 3), layer="SURVEY")
    plan.letters.write(plan.m, "114.25", (x + 6.6, y + 3.9), 1.8, layer="SURVEY", lw=18)


def draw_scale_bar(m, letters, at):
    """Thirty metres, the first ten of them in twos."""
    x, y = at
    letters.write(m, "SCALE 1:500", (x, y + 5), 2.5)
    edges = [0, 2, 4, 6, 8, 10, 20, 30]
    for i, (a, b) in enumerate(zip(edges, edges[1:])):
        m.polyline(rectangle(x + 2 * a, y, 2 * (b - a), 2.2), closed=True, layer="FRAME_THIN")
        half = y if i % 2 else y + 1.1
        m.solid(rectangle(x + 2 * a, half, 2 * (b - a), 1.1), layer="FRAME_THIN")
    for value in (0, 10, 20, 30):
        letters.write(m, str(value), (x + 2 * value, y - 4), 2.5, "center")
    letters.write(m, "m", (x + 65, y - 4), 2.5)


def draw_title(m, letters):
    x = LEFT + 8
    letters.write(m, "SITE PLAN", (x, 44), 7)
    letters.write(m, "SCHOOL AND HOUSING", (x, 34), 3.5)
    m.line((LEFT, 28), (RIGHT, 28), layer="FRAME_THIN")
    m.line((LEFT + 52, 10), (LEFT + 52, 28), layer="FRAME_THIN")
    for label, value, left in (("DRAWING NUMBER", "HDI-EX-01", x), ("SHEET", "1/1", LEFT + 56)):
        letters.write(m, label, (left, 22), 1.8, lw=13)
        letters.write(m, value, (left, 14), 3.5)
