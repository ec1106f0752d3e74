"""A site plan at 1:500: a street with a cul-de-sac, a school, parking, houses, trees and contour lines.

The map's own coordinates have their origin in its lower left corner; like everything they are millimetres on
the sheet, so a metre of ground is two units.
"""

from __future__ import annotations

import math
import random

import sheet
from dxf_writer import Drawing, SplineLoop
from geometry import (
    bulge,
    circle_loop,
    contains,
    direction,
    flattened,
    middle,
    placed,
    polar,
    rectangle,
    runs,
    turned,
)
from lettering import Lettering, width
from site_plan_blocks import PAPER, add_blocks
from site_plan_column import draw_column
from street import (
    BEND_ANGLE,
    BEND_CENTER,
    BEND_RADIUS,
    LANE,
    LANE_ANGLE,
    LANE_BEND_END,
    LANE_CENTER,
    LANE_HALF,
    MAP_HEIGHT,
    MAP_WIDTH,
    PAVEMENT,
    STREET,
    STREET_HALF,
    TURNING,
    TURNING_CENTER,
    bend,
    street_outline,
)
from terrain import contour_lines, height_at

ORIGIN = (sheet.LEFT, sheet.BOTTOM)

SCHOOL = [(160, 126), (272, 126), (272, 160), (226, 160), (226, 207), (160, 207)]
COURTYARD = [(178, 146), (206, 146), (206, 187), (178, 187)]
PARKING = rectangle(130, 78, 90, 36)
DRIVE = [(110.5, 90), (130, 90), (130, 102), (110.5, 102)]
COURT = rectangle(196, 224, 84, 42)
TERRACE = [(226, 160), (272, 160), (272, 196, bulge(90)), (260, 207), (226, 207)]
POND = [(34, 12), (52, 7), (74, 10), (88, 17), (84, 28), (66, 31), (50, 27), (33, 26), (26, 19)]

# Middle, width, depth and angle of each house, and where its drive meets the street or the lane.
HOUSES = [
    ((48, 92), 30, 20, 4, (93.2, 90)),
    ((50, 139), 28, 20, -3, (94.8, 136)),
    ((56, 186), 30, 22, 8, (104.9, 184)),
    ((96, 240), 34, 20, -14, (122, 208)),
]
OLD_HOUSES = [((196, 15), 26, 16, 8), ((226, 31), 20, 16, 24)]
FORECOURT = [(168, 114), (218, 114), (218, 126), (168, 126)]
PATHS = [
    [(114.9, 116), (168, 116), (168, 121), (114.9, 121)],
    [(242, 213), (252, 213), (252, 224), (242, 224)],
]
SURVEY_POINTS = ((62, 262), (282, 214), (140, 128), (116, 254), (286, 104), (150, 6), (14, 132))


class SitePlan:
    def __init__(self):
        self.random = random.Random(2024)
        self.drawing = Drawing((sheet.WIDTH, sheet.HEIGHT), "AC1018", point_mode=34, point_size=1.6)
        self.letters = Lettering(self.drawing, "arial.ttf")
        self.m = self.drawing.model
        self.outlines = []  # what contour lines and trees keep out of

    def make(self):
        self.add_tables()
        add_blocks(self.drawing, self.random)
        self.draw_ground()
        self.draw_contours()
        self.draw_street()
        self.draw_parking()
        self.draw_school()
        self.draw_houses()
        self.draw_court()
        self.draw_plots()
        self.draw_survey_points()
        self.draw_trees()
        self.draw_neat_line()
        sheet.draw_frame(self.drawing, self.letters)
        draw_column(self)
        return self.drawing

    def add_tables(self):
        d = self.drawing
        d.line_type("CENTER", "Long dash, short dash", [8, -1.5, 1.5, -1.5])
        d.line_type("DASHED", "Dashes", [4, -2])
        d.line_type("ROADDASH", "Lane marking", [6, -4])
        d.line_type("BOUNDARY", "Dash, dot, dot", [9, -1.5, 0, -1.5, 0, -1.5])
        sheet.add_layers(d)
        d.layer("FILL_LAWN", 51, rgb=0xEFF5E6)
        d.layer("FILL_PLOT", 41, rgb=0xFAF6EA)
        d.layer("FILL_WATER", 151, rgb=0xD2E6F2)
        d.layer("FILL_ROAD", 254, rgb=0xE3E3E3)
        d.layer("FILL_PAVEMENT", 255, rgb=0xF1F0EC)
        d.layer("FILL_BUILDING", 31, rgb=0xF3D3C2)
        d.layer("CONTOUR", 33, lw=13, rgb=0xB98A5A)
        d.layer("CONTOUR_INDEX", 34, lw=25, rgb=0x9A6A3A)
        d.layer("ROAD", 8, lw=25, rgb=0x505050)
        d.layer("ROAD_EDGE", 8, lw=13, rgb=0x808080)
        d.layer("ROAD_MARKING", 8, lw=25, rgb=0x606060)
        d.layer("ROAD_AXIS", 1, "CENTER", lw=13, rgb=0xC03030)
        d.layer("PLOT", 220, "BOUNDARY", lw=35, rgb=0xA01850)
        d.layer("BUILDING", 7, lw=50)
        d.layer("BUILDING_DETAIL", 7, lw=18)
        d.layer("BUILDING_HATCH", 14, lw=13, rgb=0xB4694A)
        d.layer("BUILDING_OLD", 8, lw=25, rgb=0x707070)
        d.layer("PAVING", 8, lw=13, rgb=0xA8A296)
        d.layer("SPORT", 14, lw=25, rgb=0xB5503C)
        d.layer("FILL_SPORT", 31, rgb=0xF0D9C8)
        d.layer("WATER", 150, lw=25, rgb=0x3A7CA5)
        d.layer("TREE", 96, lw=18, rgb=0x3F7A3A)
        d.layer("TREE_FILL", 81, rgb=0xCFE5BE)
        d.layer("CAR", 8, lw=13, rgb=0x44506A)
        d.layer("SURVEY", 7, lw=13)
        d.layer("CONSTRUCTION", 8, lw=13, frozen=True)

    def at(self, vertices):
        return placed(vertices, ORIGIN)

    def fill(self, vertices, layer, **style):
        self.m.hatch([self.at(vertices)], layer=layer, **style)

    def outline(self, vertices, layer, closed=True, **style):
        self.m.polyline(self.at(vertices), closed=closed, layer=layer, **style)

    def keep_free(self, vertices):
        self.outlines.append(flattened(vertices))

    def is_free(self, p):
        return not any(contains(polygon, p) for polygon in self.outlines)

    def draw_ground(self):
        self.fill(rectangle(0, 0, MAP_WIDTH, MAP_HEIGHT), "FILL_LAWN")
        behind = street_outline(PAVEMENT)
        self.fill(self.school_plot(), "FILL_PLOT")
        for plot in self.house_plots():
            self.fill(plot, "FILL_PLOT")
        self.fill(behind, "FILL_PAVEMENT")
        self.fill(street_outline(), "FILL_ROAD")
        self.keep_free(behind)
        for area in (DRIVE, PARKING, SCHOOL, TERRACE, COURT, FORECOURT, *PATHS):
            self.keep_free(area)
        for x, y in SURVEY_POINTS:
            self.keep_free(rectangle(x - 1.2, y - 1.2, 11, 4.5))
        for center, width, depth, angle, *_ in HOUSES + OLD_HOUSES:
            self.keep_free(placed(rectangle(-width / 2, -depth / 2, width, depth), center, angle))
        self.keep_free(POND)
        self.draw_pond()

    def draw_pond(self):
        bank = self.at(POND)
        self.m.hatch([SplineLoop(bank)], layer="FILL_WATER")
        self.m.spline(bank, closed=True, layer="WATER")
        center = (sum(p[0] for p in bank) / len(bank), sum(p[1] for p in bank) / len(bank))
        for part in (0.82, 0.62):  # depth lines
            ring = [(center[0] + (x - center[0]) * part, center[1] + (y - center[1]) * part) for x, y in bank]
            self.m.spline(ring, closed=True, layer="WATER", lw=13)
        brook = [(0, 34), (8, 33), (15, 28), (22, 27), (28, 22), (36, 20)]
        for side in (-1.1, 1.1):
            self.m.spline(self.at([(x, y + side) for x, y in brook[:-1]]), layer="WATER", lw=18)
        path = [(0, 8), (22, 5), (48, 2.5), (82, 4), (98, 14), (101, 26), (104, 40.5)]
        for side in (0.0, 3.4):
            line = [(x, y + side) if x < 90 else (x - side, y) for x, y in path]
            self.m.spline(self.at(line), layer="ROAD_EDGE", ltype="DASHED", lts=0.5)

    def draw_contours(self):
        for level, line, closed in contour_lines(MAP_WIDTH, MAP_HEIGHT):
            index = level % 5 == 0
            layer = "CONTOUR_INDEX" if index else "CONTOUR"
            pieces = runs(line, self.is_free, closed)
            for piece in pieces:
                if len(piece) < 12:
                    continue
                if index and len(piece) > 90:
                    self.draw_labelled(piece, level, layer)
                else:
                    self.draw_contour(piece, layer, closed and len(piece) == len(line))

    def draw_labelled(self, piece, level, layer):
        """Breaks the line for its height, which reads uphill or level, never upside down."""
        at = len(piece) // 3
        text, height = f"{level / 2:.1f}", 1.8
        room = width(text, height) / 2 + 1.2
        before = next(i for i in range(at, 0, -1) if math.dist(piece[i], piece[at]) > room)
        behind = next(i for i in range(at, len(piece)) if math.dist(piece[i], piece[at]) > room)
        self.draw_contour(piece[: before + 1], layer)
        self.draw_contour(piece[behind:], layer)
        angle = direction(piece[before], piece[behind])
        if abs(angle) > 90:
            angle += 180
        x, y = middle(middle(piece[before], piece[behind]), piece[at])
        base = turned((0, -0.9), angle)
        style = dict(layer="CONTOUR_INDEX", lw=18)
        place = (x + base[0] + ORIGIN[0], y + base[1] + ORIGIN[1])
        self.letters.write(self.m, text, place, height, "center", angle, **style)

    def draw_contour(self, piece, layer, closed=False):
        controls = piece[:-1:6] + ([] if closed else [piece[-1]])
        if len(controls) < 4:
            self.outline(piece[:: max(1, len(piece) // 3)], layer, closed=False)
        else:
            self.m.spline(self.at(controls), closed=closed, layer=layer)

    def draw_street(self):
        behind, kerb = street_outline(PAVEMENT), street_outline()
        for outline, layer in ((behind, "ROAD_EDGE"), (kerb, "ROAD")):
            self.outline(outline[:16], layer, closed=False)
            self.outline(outline[16:], layer, closed=False)
        axis = bend(0)
        start = [(LANE + 19, STREET)]
        self.outline([(0, STREET), (LANE - 19, STREET)], "ROAD_MARKING", False, ltype="ROADDASH", lw=35)
        self.outline(start + axis, "ROAD_MARKING", False, ltype="ROADDASH", lw=35)
        lane = [(LANE, STREET), (LANE, LANE_CENTER[1], bulge(-LANE_ANGLE)), LANE_BEND_END, TURNING_CENTER]
        self.outline(lane, "ROAD_AXIS", False)
        island = circle_loop(TURNING_CENTER, 6)
        self.fill(island, "FILL_LAWN")
        self.outline(island, "ROAD", lw=25)
        self.draw_crossing(LANE - 27)
        self.draw_crossing(152)
        stop = STREET + STREET_HALF + 1.5
        self.m.line(*self.at([(LANE - LANE_HALF, stop), (LANE - 0.4, stop)]), layer="ROAD_MARKING", lw=70)
        self.draw_direction_arrow((40, STREET - 3.5), 0)
        self.draw_direction_arrow((60, STREET + 3.5), 180)
        self.draw_direction_arrow((196, STREET - 3.5 + 1.6), 7)
        for x in range(14, 160, 28):
            if abs(x - LANE) > 22:
                place = (x + ORIGIN[0], STREET + STREET_HALF + 1.2 + ORIGIN[1])
                self.m.insert("LAMP", place, (1, -1), layer="ROAD_EDGE")  # the arm points to the street

    def draw_crossing(self, x):
        for i in range(7):
            y = STREET - STREET_HALF + 0.8 + 1.9 * i
            self.fill(rectangle(x - 3, y, 6, 1.0), "ROAD_MARKING", rgb=PAPER)
            self.outline(rectangle(x - 3, y, 6, 1.0), "ROAD_EDGE")

    def draw_direction_arrow(self, at, angle):
        arrow = [(-5, 0, 0.0, 0.45, 0.45), (1, 0, 0.0, 1.5, 0.0), (5, 0, 0.0, 0.0, 0.0)]
        self.m.polyline(self.at(placed(arrow, at, angle)), layer="ROAD_MARKING")

    def draw_parking(self):
        self.fill(DRIVE, "FILL_ROAD")
        self.fill(PARKING, "FILL_ROAD")
        x, y = PARKING[0]
        self.outline(
            [
                (110.5, 90),
                (130, 90),
                (130, y),
                (x + 90, y),
                (x + 90, y + 36),
                (x, y + 36),
                (x, 102),
                (110.5, 102),
            ],
            "ROAD",
            closed=False,
        )
        ox, oy = ORIGIN
        place = (x + 5 + ox, y + oy)
        # The lower row, the upper row turned by half a circle, and two wide places at its end.
        self.m.insert("STALL", place, columns=17, spacing=(5, 0), layer="ROAD_MARKING", lw=18)
        self.m.insert(
            "STALL",
            (x + 85 + ox, y + 36 + oy),
            rotation=180,
            columns=15,
            spacing=(5, 0),
            layer="ROAD_MARKING",
            lw=18,
        )
        for i in range(2):
            self.m.insert("STALL_WIDE", (x + 1.0 + 7 * i + ox, y + 26 + oy), layer="ROAD_MARKING", lw=18)
        colors = (0xC9D2DC, 0xB9C4CF, 0xE2B9A8, 0xD9D9D9, 0xAFC3B4)
        for row, angle in ((y + 5, 90), (y + 31, -90)):
            for i in range(16 if angle > 0 else 14):
                if self.random.random() < 0.58:
                    left = x + 7.5 + 5 * i + (0 if angle > 0 else 10)
                    spot = (left + ox, row + self.random.uniform(-0.5, 0.5) + oy)
                    flip = angle + (180 if self.random.random() < 0.3 else 0)
                    self.m.insert(
                        "CAR",
                        spot,
                        rotation=flip + self.random.uniform(-2, 2),
                        layer="CAR",
                        rgb=self.random.choice(colors),
                    )
        for x_car, y_car, angle in ((182, 48.8, 1), (22, 55.5, 180), (128, 93, 0), (250, 76.5, 206)):
            self.m.insert(
                "CAR", (x_car + ox, y_car + oy), rotation=angle, layer="CAR", rgb=self.random.choice(colors)
            )

    def house_plots(self):
        edge = street_outline(PAVEMENT)
        west, north_west, north_east = (polar(TURNING_CENTER, TURNING + PAVEMENT, a) for a in (178, 150, 48))
        bottom = edge[1][:2]
        touch = edge[6][:2]
        sweep = direction(TURNING_CENTER, touch) % 360 - 150
        return [
            [(8, bottom[1]), edge[1], edge[2], edge[3][:2], (8, 114)],
            [(8, 114), edge[3], edge[4], (8, 162)],
            [(8, 162), edge[4], edge[5], (*touch, bulge(-sweep)), north_west, (8, 212)],
            [(8, 212), (*north_west, bulge(-(150 - 48))), north_east, (152, 270), (8, 270)],
        ]

    def school_plot(self):
        edge = street_outline(PAVEMENT)
        north_east = polar(TURNING_CENTER, TURNING + PAVEMENT, 48)
        touch = edge[7][:2]
        sweep = 48 - direction(TURNING_CENTER, touch)
        right = [(292, edge[15][1] - 8 * math.tan(math.radians(BEND_ANGLE)))]
        return [(152, 270), (*north_east, bulge(-sweep)), *edge[7:15], *right, (292, 270)]

    def draw_plots(self):
        plots = self.house_plots() + [self.school_plot()]
        marks = set()
        for plot in plots:
            self.outline(plot, "PLOT")
            marks.update((round(p[0], 3), round(p[1], 3)) for p in plot)
        for mark in sorted(marks):
            self.m.insert("BOUNDARY_MARK", *self.at([mark]), layer="PLOT", lw=18)

    def draw_school(self):
        hatch = ("ANSI31", [(45, (0, 0), (-1.6, 1.6), [])])
        building, court = self.at(SCHOOL), self.at(COURTYARD)
        self.m.hatch([building, court], layer="FILL_BUILDING")
        self.m.hatch([building, court], hatch, layer="BUILDING_HATCH")
        self.m.polyline(building, closed=True, layer="BUILDING", lw=70)
        self.m.polyline(court, closed=True, layer="BUILDING")
        for inset in (2.0, 2.6):  # the parapet
            inner = [(160 + inset, 126 + inset), (272 - inset, 126 + inset), (272 - inset, 160 - inset)]
            inner += [(226 - inset, 160 - inset), (226 - inset, 207 - inset), (160 + inset, 207 - inset)]
            self.outline(inner, "BUILDING_DETAIL", lw=13)
        for x in range(231, 264, 6):  # roof lights
            self.fill(rectangle(x, 140, 4, 7), "FILL_WATER")
            self.outline(rectangle(x, 140, 4, 7), "BUILDING_DETAIL")
        self.draw_paving(FORECOURT, 2.0)
        self.outline(FORECOURT, "ROAD_EDGE")
        for path in PATHS:
            self.fill(path, "FILL_PAVEMENT")
            for a, b in ((0, 1), (2, 3)) if path[0][0] < 200 else ((1, 2), (3, 0)):
                self.outline([path[a], path[b]], "ROAD_EDGE", False)
        canopy = rectangle(185, 119, 16, 7)
        self.fill(canopy, "FILL_PAVEMENT", rgb=PAPER)
        self.outline(canopy, "BUILDING", lw=35)
        self.m.line(*self.at([(185, 119), (201, 126)]), layer="BUILDING_DETAIL")
        self.m.line(*self.at([(185, 126), (201, 119)]), layer="BUILDING_DETAIL")
        self.m.solid(self.at([(190.5, 115.4), (195.5, 115.4), (193, 118.4)]), layer="BUILDING")
        self.draw_paving(TERRACE, 3.0)
        self.outline(TERRACE, "ROAD")
        self.draw_stairs((240, 207), 5)
        for tree in ((186, 156), (198, 178)):
            self.tree("TREE_LEAF", tree, 0.95)
        for tree in ((199, 153), (184, 172), (188, 181), (201, 165)):
            self.tree("SHRUB", tree, 1.0)

    def draw_paving(self, area, size):
        brick = [(0, (0, 0), (0, size), []), (90, (0, 0), (size, size), [size, -size])]
        self.m.hatch([self.at(area)], layer="FILL_PAVEMENT")
        self.m.hatch([self.at(area)], ("PAVING", brick), layer="PAVING")

    def draw_stairs(self, at, steps):
        for i in range(steps):
            self.outline([(at[0], at[1] + 1.2 * i), (at[0] + 14, at[1] + 1.2 * i)], "BUILDING_DETAIL", False)
        for x in (0, 14):
            self.outline(
                [(at[0] + x, at[1]), (at[0] + x, at[1] + 1.2 * (steps - 1))], "BUILDING_DETAIL", False, lw=35
            )

    def draw_houses(self):
        for center, width, depth, angle, entrance in HOUSES:
            self.draw_house(center, width, depth, angle)
            self.draw_garden(center, width, depth, angle, entrance)
        for center, width, depth, angle in OLD_HOUSES:
            walls = placed(rectangle(-width / 2, -depth / 2, width, depth), center, angle)
            self.fill(walls, "FILL_BUILDING", rgb=0xE4E2DE)
            self.outline(walls, "BUILDING_OLD", lw=35)
            self.outline([middle(walls[0], walls[3]), middle(walls[1], walls[2])], "BUILDING_OLD", False)
            tiles = ("TILES", [(angle + 90, center, turned((0, -1.5), angle + 90), [])])
            self.m.hatch([self.at(walls)], tiles, layer="BUILDING_OLD", lw=13)

    def draw_house(self, center, width, depth, angle):
        """A hipped roof with a chimney."""
        w, h = width / 2, depth / 2
        walls = placed(rectangle(-w, -h, width, depth), center, angle)
        ridge = placed([(-w + h, 0), (w - h, 0)], center, angle)
        self.fill(walls, "FILL_BUILDING")
        sunless = [walls[0], walls[1], ridge[1], ridge[0]]
        tiles = ("TILES", [(angle, center, turned((0, 1.3), angle), [])])
        self.m.hatch([self.at(sunless)], tiles, layer="BUILDING_HATCH")
        for face in ([walls[1], walls[2], ridge[1]], [walls[3], walls[0], ridge[0]]):
            tiles = ("TILES", [(angle + 90, center, turned((0, 1.3), angle + 90), [])])
            self.m.hatch([self.at(face)], tiles, layer="BUILDING_HATCH")
        self.outline(walls, "BUILDING")
        self.outline(ridge, "BUILDING_DETAIL", False, lw=35)
        for corner, end in ((0, 0), (3, 0), (1, 1), (2, 1)):
            self.outline([walls[corner], ridge[end]], "BUILDING_DETAIL", False)
        chimney = placed(rectangle(-1, -1, 2, 2), placed([(w / 3, h / 3)], center, angle)[0], angle)
        self.fill(chimney, "FILL_BUILDING", rgb=PAPER)
        self.outline(chimney, "BUILDING_DETAIL")

    def draw_garden(self, center, width, depth, angle, entrance):
        w, h = width / 2, depth / 2
        terrace = placed([(-w - 9, -h + 2), (-w, -h + 2), (-w, h - 4), (-w - 9, h - 4)], center, angle)
        self.draw_paving(terrace, 2.0)
        self.outline(terrace, "ROAD_EDGE", lw=18)
        door = placed([(w, -2.6), (w, 2.6)], center, angle)
        axis = direction(middle(*door), entrance)
        drive = [door[0], *placed([(2, -2.6), (2, 2.6)], entrance, axis), door[1]]
        self.fill(drive, "FILL_PAVEMENT")
        self.outline([drive[0], drive[1]], "ROAD_EDGE", False, lw=18)
        self.outline([drive[3], drive[2]], "ROAD_EDGE", False, lw=18)
        self.keep_free(drive)
        self.keep_free(terrace)
        hedge = placed([(-w - 9 + 3.2 * i, h + 9) for i in range(int((width + 9) / 3.2))], center, angle)
        for spot in hedge:
            self.tree("SHRUB", spot, 0.62)

    def draw_court(self):
        (x, y), width, height = COURT[0], 84, 42
        self.fill(COURT, "FILL_SPORT")
        self.outline(COURT, "SPORT", lw=35)
        left, bottom, right, top = x + 4, y + 4, x + width - 4, y + height - 4
        center = (left + right) / 2, (bottom + top) / 2
        self.outline(rectangle(left, bottom, right - left, top - bottom), "SPORT")
        self.m.line(*self.at([(center[0], bottom), (center[0], top)]), layer="SPORT")
        self.m.circle(self.at([center])[0], 5, layer="SPORT")
        for goal, side in ((left, 1), (right, -1)):
            # Two quarter circles around the posts and the straight piece between them.
            for radius, ltype in ((12, "Continuous"), (15, "DASHED")):
                area = [
                    (goal, center[1] - 3 - radius, side * bulge(90)),
                    (goal + side * radius, center[1] - 3),
                    (goal + side * radius, center[1] + 3, side * bulge(90)),
                    (goal, center[1] + 3 + radius),
                ]
                self.outline(area, "SPORT", False, ltype=ltype, lts=0.4)
            self.outline(rectangle(min(goal, goal - side * 1.8), center[1] - 3, 1.8, 6), "SPORT")

    def draw_survey_points(self):
        for spot in SURVEY_POINTS:
            place = self.at([spot])[0]
            self.m.point(place, layer="SURVEY")
            text = f"{height_at(*spot):.2f}"
            self.letters.write(self.m, text, (place[0] + 1.6, place[1] + 0.9), 1.8, layer="SURVEY", lw=18)

    def tree(self, block, at, size, layer="TREE"):
        scale = size * self.random.uniform(0.88, 1.12)
        self.m.insert(block, self.at([at])[0], (scale, scale), self.random.uniform(0, 360), layer=layer)

    def draw_trees(self):
        planted = [(spot, 4.0) for spot in self.draw_avenue()]
        # An orchard: one insert, four trees by five.
        self.m.insert(
            "TREE_LIME", (259 + ORIGIN[0], 8 + ORIGIN[1]), (0.62, 0.62), 24, 4, 5, (8.4, 8.4), layer="TREE"
        )
        groups = (
            ("TREE_LEAF", (18, 250), 17, 9, 1.5),
            ("TREE_FIR", (40, 258), 24, 7, 1.1),
            ("TREE_LEAF", (24, 204), 12, 5, 1.2),
            ("TREE_LEAF", (20, 76), 9, 3, 1.2),
            ("TREE_FIR", (20, 122), 10, 4, 0.9),
            ("TREE_LEAF", (136, 252), 14, 4, 1.2),
            ("TREE_LEAF", (22, 160), 10, 3, 1.1),
            ("TREE_LEAF", (284, 186), 16, 6, 1.3),
            ("TREE_FIR", (178, 250), 16, 7, 1.1),
            ("TREE_LEAF", (246, 106), 17, 7, 1.3),
            ("TREE_LEAF", (284, 124), 14, 5, 1.2),
            ("TREE_LEAF", (14, 20), 12, 3, 1.1),
            ("TREE_LEAF", (130, 17), 17, 6, 1.3),
            ("TREE_FIR", (172, 22), 13, 5, 1.0),
            ("TREE_LEAF", (138, 140), 10, 3, 1.2),
            ("SHRUB", (70, 34), 16, 6, 1.0),
            ("SHRUB", (150, 72), 18, 5, 1.0),
            ("TREE_LEAF", (74, 128), 12, 2, 1.0),
            ("TREE_LEAF", (76, 222), 12, 2, 1.2),
            ("TREE_LEAF", (232, 214), 10, 2, 0.9),
            ("TREE_FIR", (286, 250), 12, 4, 1.0),
        )
        for block, center, spread, count, size in groups:
            for spot in self.spots(center, spread, count, 4.6 * size, planted):
                self.tree(block, spot, size)
        self.tree("TREE_LIME", TURNING_CENTER, 1.15)

    def draw_avenue(self):
        """Limes along the street; returns where they stand."""
        behind = STREET_HALF + PAVEMENT + 4.4
        south = [(9 + 13.2 * i, STREET - behind) for i in range(13)]
        north = [(x, STREET + behind) for x in (14, 27, 62, 75, 136, 152, 168)]
        north += [polar(BEND_CENTER, BEND_RADIUS - behind, -82 + 6 * i) for i in range(5)]
        for spot in south + north:
            self.tree("TREE_LIME", spot, 0.76)
        return south + north

    def spots(self, center, spread, count, room, planted):
        """Random places in a round area, apart from each other and from what is built."""
        found = []
        for _ in range(400):
            if len(found) == count:
                break
            spot = polar(center, spread * math.sqrt(self.random.random()), self.random.uniform(0, 360))
            rim = [polar(spot, room * 0.8, 45 * k) for k in range(8)]
            inside = all(3 < p[0] < MAP_WIDTH - 3 and 3 < p[1] < MAP_HEIGHT - 3 for p in rim)
            apart = all(math.dist(spot, other) > (room + other_room) * 0.8 for other, other_room in planted)
            if inside and apart and all(self.is_free(p) for p in rim):
                found.append(spot)
                planted.append((spot, room))
        return found

    def draw_neat_line(self):
        x = sheet.LEFT + MAP_WIDTH
        self.m.line((x, sheet.BOTTOM), (x, sheet.TOP), layer="FRAME", lw=50)


def make():
    return SitePlan().make()
