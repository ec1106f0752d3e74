"""A flanged bearing hub on A3 at 1:1: view, two sections, a detail and an isometric picture.

The part is a solid of revolution with holes. Its profile is given by `a`, the distance along the axis from
the flange's mating face (the hub points to positive `a`), and `r`, the distance from the axis.
"""

from __future__ import annotations

import math

import sheet
from dimensions import Dimensions, draw_arrow
from dxf_writer import Drawing
from flange_isometric import draw_isometric
from geometry import bulge, circle_loop, polar, rectangle
from lettering import Lettering

VIEW = (112.0, 196.0)
SECTION = (234.0, 196.0)  # a = 0 on the axis
RING = (66.0, 63.0)  # section B-B
DETAIL, DETAIL_SCALE, DETAIL_RADIUS = (164.0, 64.0), 5.0, 30.0
ISOMETRIC = (356.0, 186.0)

BOLT_CIRCLE, BOLT, HEAD = 57.0, 5.5, 9.0  # radii
TAPPED_CIRCLE, TAPPED, CORE = 34.0, 3.0, 2.5
CHANNEL_CIRCLE, CHANNEL = 33.5, 4.0
BORE, KEY_HALF, KEY_TOP = 20.0, 6.0, 23.3
KEY_EDGE = math.sqrt(BORE**2 - KEY_HALF**2)  # where the key's side meets the bore
OIL = 36.0  # the oil bore's axis, and the plane of section B-B

SPIGOT_END = [(0, 51.5), (0, 45), (-4, 45), (-5, 44)]
FLANGE_FACE = [(22, 40, bulge(-90)), (16, 46), (16, 48), (10, 48), (10, 51.5)]
HUB_FACE = [
    (50, 28),
    (59, 28),
    (60, 29),
    (60, 31.5),
    (44, 31.5),
    (42.56, 34),
    (44, 36.5),
    (60, 36.5),
    (60, 38.5),
    (58.5, 40),
]
RIM = [(0, 62.5), (10, 62.5), (10, 66), (16, 66), (16, 68.5), (14.5, 70), (1.5, 70), (0, 68.5)]
UPPER = [(-5, KEY_TOP), (50, KEY_TOP), *HUB_FACE, *FLANGE_FACE, *SPIGOT_END]
LOWER_LEFT = [(-5, 21), (-4, 20), (33.5, 20), (33.5, 32), (31, 32), (31, 40), *FLANGE_FACE, *SPIGOT_END]
LOWER_RIGHT = [(38.5, 20), (50, 20), *HUB_FACE, (41, 40), (41, 32), (38.5, 32)]

# The relief between spigot and flange, of the detail.
RELIEF = [
    (-5, 44),
    (-4, 45),
    (-2.5, 45),
    (-1.38, 44.7),
    (-0.4, 44.7, bulge(90)),
    (0.2, 45.3),
    (0.2, 46),
    (0, 46.75),
]


def steel(spacing=2.6, turn=45.0):
    offset = polar((0, 0), spacing, turn + 90)
    return ("ANSI31", [(turn, (0, 0), offset, [])])


class Flange:
    def __init__(self):
        self.drawing = Drawing((sheet.WIDTH, sheet.HEIGHT))
        self.letters = Lettering(self.drawing, "romans.shx")
        self.dimensions = Dimensions(self.drawing, self.letters)
        self.m = self.drawing.model

    def make(self):
        self.add_tables()
        self.add_blocks()
        self.draw_view()
        self.draw_section()
        self.draw_ring()
        self.draw_detail()
        draw_isometric(self.m, ISOMETRIC)
        self.dimension_view()
        self.dimension_section()
        self.dimension_ring_and_detail()
        self.draw_notes()
        sheet.draw_frame(self.drawing, self.letters)
        extra = (("MATERIAL", "EN-GJL-250"), ("GENERAL TOLERANCES", "ISO 2768-m"), ("MASS", "2.7 KG"))
        sheet.draw_title_block(self.drawing, self.letters, "FLANGED HUB", "HDI-EX-02", "1:1", extra)
        return self.drawing

    def add_tables(self):
        d = self.drawing
        d.line_type("CENTER", "Long dash, short dash", [12, -1.5, 1.5, -1.5])
        d.line_type("HIDDEN", "Short dashes", [3, -1.5])
        d.line_type("CUTTING", "Long dash, dot", [10, -2, 1, -2])
        sheet.add_layers(d)
        d.layer("OUTLINE", 7, lw=50)
        d.layer("EDGE_THIN", 7, lw=18)
        d.layer("HIDDEN", 94, "HIDDEN", lw=25)
        d.layer("CENTER", 12, "CENTER", lw=18)
        d.layer("HATCH", 8, lw=13)
        d.layer("DIMENSION", 174, lw=18)
        d.layer("CUTTING", 12, "CUTTING", lw=35)
        d.layer("SYMBOL", 174, lw=25)
        d.layer("DEFPOINTS", 8, lw=13, plots=False)

    def add_blocks(self):
        d = self.drawing
        bolt = d.block("BOLT_HOLE", "OUTLINE")  # in the view, on the positive X axis of the bolt circle
        bolt.circle((0, 0), BOLT)
        bolt.circle((0, 0), HEAD)
        bolt.line((-HEAD - 3, 0), (HEAD + 3, 0), layer="CENTER", lts=0.5)
        tapped = d.block("TAPPED_HOLE", "OUTLINE")
        tapped.circle((0, 0), CORE)
        tapped.arc((0, 0), TAPPED, -80, 190, layer="EDGE_THIN")
        for a, b in (((-5, 0), (5, 0)), ((0, -5), (0, 5))):
            tapped.line(a, b, layer="CENTER", lts=0.3)
        channel = d.block("CHANNEL", "OUTLINE")
        channel.circle((0, 0), CHANNEL)
        for a, b in (((-6, 0), (6, 0)), ((0, -6), (0, 6))):
            channel.line(a, b, layer="CENTER", lts=0.35)

        half = d.block("SECTION_HALF", "OUTLINE")  # what both halves of section A-A have, above the axis
        half.polyline(RIM, closed=True)
        for a in (0, 16):
            half.line((a, 45 if a == 0 else 46), (a, 66))
        half.line((10, 51.5), (10, 62.5))
        half.line((-8, BOLT_CIRCLE), (20, BOLT_CIRCLE), layer="CENTER", lts=0.6)
        half.line((38, TAPPED_CIRCLE), (64, TAPPED_CIRCLE), layer="CENTER", lts=0.6)
        for r in (TAPPED_CIRCLE - TAPPED, TAPPED_CIRCLE + TAPPED):
            half.line((48, r), (60, r), layer="EDGE_THIN")
        half.line((48, 31), (48, 37))
        half.line((44, 31.5), (44, 36.5))
        half.line((60, 31.5), (60, 36.5))
        for a, low, high in ((50, 0, 28), (59, 0, 28), (60, 0, 29)):
            half.line((a, low), (a, high))

        rough = d.block("ROUGHNESS", "SYMBOL")
        rough.polyline([(-1.75, 3.03), (1.75, 3.03)])
        rough.polyline([(-1.75, 3.03), (0, 0), (3.5, 6.06), (14, 6.06)])
        datum = d.block("DATUM", "SYMBOL")
        datum.solid([(0, 0), (-2, 3), (2, 3)])
        datum.line((0, 3), (0, 6))
        datum.polyline(rectangle(-3, 6, 6, 6), closed=True)

    def in_section(self, vertices, side=1):
        x, y = SECTION
        return [(x + v[0], y + side * v[1], *(side * b for b in v[2:])) for v in vertices]

    def draw_view(self):
        m, c = self.m, VIEW
        for radius in (70, 68.5, 40, 38.5, 29, 28):
            m.circle(c, radius, layer="OUTLINE", lw=35 if radius in (68.5, 38.5, 29) else 50)
        m.circle(c, 46, layer="EDGE_THIN")
        self.draw_bore(c, "OUTLINE")
        for radius in (45, 44):
            m.circle(c, radius, layer="HIDDEN")
        for x in (-5, -2.5, 2.5, 5):
            low, high = (32, 39.7) if abs(x) > 3 else (BORE, 32)
            m.line((c[0] + x, c[1] - high), (c[0] + x, c[1] - low), layer="HIDDEN")
        for i in range(8):
            m.insert("BOLT_HOLE", polar(c, BOLT_CIRCLE, 45 * i), rotation=45 * i, layer="OUTLINE")
        for i in range(4):
            m.insert("TAPPED_HOLE", polar(c, TAPPED_CIRCLE, 90 * i), rotation=90 * i, layer="OUTLINE")
            m.insert("CHANNEL", polar(c, CHANNEL_CIRCLE, 90 * i + 45), rotation=90 * i + 45, layer="OUTLINE")
        m.circle(c, BOLT_CIRCLE, layer="CENTER")
        m.circle(c, TAPPED_CIRCLE, layer="CENTER", lts=0.7)
        m.line((c[0] - 76, c[1]), (c[0] + 76, c[1]), layer="CENTER")
        m.line((c[0], c[1] - 74), (c[0], c[1] + 74), layer="CENTER")
        self.draw_cut("A", (c[0], c[1] + 81), (c[0], c[1] - 81), 0)

    def draw_bore(self, c, layer, **style):
        """The bore with its keyway as one closed line."""
        angle = math.degrees(math.asin(KEY_HALF / BORE))
        self.m.polyline(self.bore_loop(c, angle), closed=True, layer=layer, **style)

    @staticmethod
    def bore_loop(c, angle=math.degrees(math.asin(KEY_HALF / BORE))):
        x, y = c
        return [
            (x - KEY_HALF, y + KEY_EDGE, bulge(360 - 2 * angle)),
            (x + KEY_HALF, y + KEY_EDGE),
            (x + KEY_HALF, y + KEY_TOP),
            (x - KEY_HALF, y + KEY_TOP),
        ]

    def draw_cut(self, letter, a, b, look):
        """The ends of a cutting plane; arrows show where one looks from them."""
        m = self.m
        way = math.degrees(math.atan2(b[1] - a[1], b[0] - a[0]))
        for end, inward in ((a, way), (b, way + 180)):
            m.line(end, polar(end, 7, inward), layer="CUTTING", ltype="Continuous", lw=70)
            foot = polar(polar(end, 1.5, inward), -10, look)
            tip = polar(end, 1.5, inward)
            m.line(foot, tip, layer="CUTTING", ltype="Continuous", lw=25)
            draw_arrow(m, tip, look, 4.0, layer="CUTTING")
            x, y = polar(foot, 4.0, look + 180)
            self.letters.write(m, letter, (x, y - 2.5), 5, "center")

    def draw_section(self):
        m, (x, y) = self.m, SECTION
        loops = [
            self.in_section(UPPER),
            self.in_section(RIM),
            self.in_section(LOWER_LEFT, -1),
            self.in_section(LOWER_RIGHT, -1),
            self.in_section(RIM, -1),
        ]
        m.hatch(loops, steel(), layer="HATCH")
        m.polyline(loops[0], closed=True, layer="OUTLINE")
        m.polyline(loops[2], closed=True, layer="OUTLINE")
        m.polyline(loops[3], closed=True, layer="OUTLINE")
        m.insert("SECTION_HALF", SECTION, layer="OUTLINE")
        m.insert("SECTION_HALF", SECTION, (1, -1), layer="OUTLINE")
        m.line((x - 5, y + KEY_EDGE), (x + 50, y + KEY_EDGE), layer="OUTLINE")
        m.line((x - 5, y - 21), (x - 5, y + KEY_TOP), layer="OUTLINE")
        m.line((x - 4, y - 20), (x - 4, y + KEY_EDGE), layer="OUTLINE", lw=35)
        # The oil bore: its mouth in the bore bends inwards, its head lies in the hub's surface.
        m.arc((x + OIL, y - 27.75), 8.14, 72.1, 107.9, layer="OUTLINE")
        m.line((x + 31, y - 32), (x + 41, y - 32), layer="OUTLINE")
        m.arc((x + OIL, y - 30.1), 11.1, 243.2, 296.8, layer="OUTLINE")
        m.line((x + OIL, y - 14), (x + OIL, y - 46), layer="CENTER", lts=0.6)
        m.line((x - 10, y), (x + 66, y), layer="CENTER")
        self.draw_cut("B", (x + OIL, y + 64), (x + OIL, y - 64), 180)
        m.circle((x, y + 45), 6, layer="EDGE_THIN")
        self.letters.write(m, "C", (x - 11, y + 47), 5)
        self.letters.write(m, "A-A", (x + 30, y + 76), 5, "center")

    def draw_ring(self):
        m, c = self.m, RING
        x, y = c
        edge = math.sqrt(40**2 - 2.5**2)
        mouth = math.sqrt(40**2 - 5**2)
        rim = math.sqrt(BORE**2 - 2.5**2)
        arc = bulge(2 * math.degrees(math.asin(5 / 40)))
        hole = [
            (x - 5, y - mouth, arc),
            (x + 5, y - mouth),
            (x + 5, y - 32),
            (x + 2.5, y - 32),
            (x + 2.5, y - rim),
        ]
        hole[-1] = (*hole[-1], bulge(-2 * math.degrees(math.asin(2.5 / BORE))))
        hole += [(x - 2.5, y - rim), (x - 2.5, y - 32), (x - 5, y - 32)]
        channels = [circle_loop(polar(c, CHANNEL_CIRCLE, 45 + 90 * i), CHANNEL) for i in range(4)]
        m.hatch([circle_loop(c, 40), self.bore_loop(c), hole, *channels], steel(), layer="HATCH")
        m.circle(c, 40, layer="OUTLINE")
        self.draw_bore(c, "OUTLINE")
        m.polyline(
            [(x - 5, y - mouth), (x - 5, y - 32), (x + 5, y - 32), (x + 5, y - mouth)], layer="OUTLINE"
        )
        for side in (-2.5, 2.5):
            m.line((x + side, y - rim), (x + side, y - 32), layer="OUTLINE")
        for i in range(4):
            m.insert("CHANNEL", polar(c, CHANNEL_CIRCLE, 45 + 90 * i), rotation=45 + 90 * i, layer="OUTLINE")
        m.circle(c, CHANNEL_CIRCLE, layer="CENTER", lts=0.7)
        m.line((x - 44, y), (x + 44, y), layer="CENTER")
        m.line((x, y - edge - 4), (x, y + 44), layer="CENTER")
        self.letters.write(m, "B-B", (x - 30, y + 43), 5, "center")

    def in_detail(self, vertex):
        x, y = DETAIL
        return (x + DETAIL_SCALE * vertex[0], y + DETAIL_SCALE * (vertex[1] - 45), *vertex[2:])

    def draw_detail(self):
        m, c = self.m, DETAIL
        low = 45 - math.sqrt((DETAIL_RADIUS / DETAIL_SCALE) ** 2 - 25)
        profile = [self.in_detail(v) for v in [(-5, low), *RELIEF, (0, 51)]]
        end_angle = math.degrees(math.atan2(low - 45, -5))
        cut = bulge(-(90 - end_angle))
        m.hatch([[*profile[:-1], (*profile[-1][:2], cut)]], steel(4.5), layer="HATCH")
        m.polyline(profile, layer="OUTLINE", lw=70)
        m.circle(c, DETAIL_RADIUS, layer="EDGE_THIN")
        self.letters.write(m, "C (5:1)", (c[0] - 30, c[1] + 34), 5)

    def dimension_view(self):
        d, c = self.dimensions, VIEW
        d.diameter(polar(c, BOLT_CIRCLE, 45), HEAD, 60, 15, "8\u00d7\u00d811 / \u00d818\u00d76")
        d.diameter(c, BOLT_CIRCLE, 157.5, 22, "\u00d8114", -1)
        d.diameter(polar(c, TAPPED_CIRCLE, 270), TAPPED, 235, 50, "4\u00d7M6", -1)
        d.diameter(polar(c, CHANNEL_CIRCLE, -45), CHANNEL, -52, 46, "4\u00d7\u00d88")
        d.angular(c, 180, 225, 77, "45\u00b0")

    def dimension_section(self):
        d, (x, y) = self.dimensions, SECTION

        def across(radius, a, at, text, shift=0.0):
            d.linear((x + a, y - radius), (x + a, y + radius), (x + at, y), 90, text, shift)

        across(20, -4, -11, "\u00d840 H7")
        across(45, -4, -19.5, "\u00d890 f7")
        across(70, 1.5, -28, "\u00d8140")
        across(28, 59, 67, "\u00d856", -6)
        across(40, 58.5, 75, "\u00d880", -6)
        d.linear((x, y - 68.5), (x + 16, y - 68.5), (x, y - 77), 0, "16")
        d.linear((x - 5, y - 44), (x, y - 68.5), (x, y - 77), 0, "5", -10)
        d.linear((x - 5, y - 44), (x + 60, y - 38.5), (x, y - 94), 0, "65")
        d.linear((x + 50, y + 28), (x + 60, y + 38.5), (x, y + 54), 0, "10", 12)
        d.linear((x, y - 68.5), (x + OIL, y - 57), (x, y - 85.5), 0, "36")
        d.radius((x + 22, y - 46), 6, 135, -13, "R6")
        d.leader((x + 59.2, y + 39.3), (x + 65, y + 45), "1.5\u00d745\u00b0")
        d.leader((x + 41, y - 37), (x + 53, y - 51), "\u00d85 / \u00d810\u00d78")

    def dimension_ring_and_detail(self):
        d, (x, y) = self.dimensions, RING
        d.linear((x - KEY_HALF, y + KEY_TOP), (x + KEY_HALF, y + KEY_TOP), (x, y + 46), 0, "12 P9")
        d.linear((x, y - BORE), (x + KEY_HALF, y + KEY_TOP), (x + 48, y), 90, "43.3")

        at = self.in_detail
        d.linear(at((-2.5, 45)), at((0, 46.75)), at((0, 49)), 0, "2.5")
        d.linear(at((-4, 45)), at((-1.38, 44.7)), at((-7.2, 45)), 90, "0.3", 9)
        d.radius(at((-0.4, 45.3)), 0.6 * DETAIL_SCALE, -45, 20, "R0.6")
        d.linear(at((-5, 44)), at((-4, 45)), at((0, 40.4)), 0, "1", -9)

    def draw_notes(self):
        m, write = self.m, self.letters.write
        x, y = 236.0, 84.0
        lines = ("BREAK SHARP EDGES 0.2", "CASTING RADII R3", "HUB AND SPIGOT TURNED IN ONE SETTING")
        for i, line in enumerate(lines):
            write(m, f"{i + 1}", (x, y - 6 * i), 2.5)
            write(m, line, (x + 5, y - 6 * i), 2.5)
        for at, value in (((350, 62), "Ra 3.2"), ((371, 62), "Ra 1.6")):
            m.insert("ROUGHNESS", at, layer="SYMBOL")
            write(m, value, (at[0] + 2.2, at[1] + 1.2), 2.5, layer="SYMBOL")
        for side, bow in ((368.2, 0.35), (387, -0.35)):
            m.polyline([(side, 70, bow), (side, 59)], layer="SYMBOL")
        self.draw_tolerances()

    def draw_tolerances(self):
        """Feature control frames, a datum and surface marks at the section."""
        m, (x, y), write = self.m, SECTION, self.letters.write
        m.insert("DATUM", (x + 29, y + 40), layer="SYMBOL")
        write(m, "A", (x + 29, y + 47.4), 3.5, "center", layer="SYMBOL")
        self.draw_frame((x + 58, y + 63.7), "0.02")
        self.dimensions.leader((x + 16, y + 67.2), (x + 58, y + 67.2), "")
        m.insert("ROUGHNESS", (x + 8, y - 20), layer="SYMBOL")
        write(m, "Ra 0.8", (x + 10.2, y - 18.8), 2.5, layer="SYMBOL")
        self.draw_fits(322, 84)

    def draw_fits(self, x, y):
        """The limits of the fits that the drawing names."""
        m, write = self.m, self.letters.write
        rows = (
            ("FIT", "MAX", "MIN"),
            ("\u00d840 H7", "40.025", "40.000"),
            ("\u00d890 f7", "89.964", "89.929"),
            ("12 P9", "11.982", "11.939"),
        )
        columns = (0, 26, 53, 80)
        m.polyline(rectangle(x, y, columns[-1], 7 * len(rows)), closed=True, layer="FRAME_THIN", lw=35)
        for left in columns[1:-1]:
            m.line((x + left, y), (x + left, y + 7 * len(rows)), layer="FRAME_THIN")
        for i, row in enumerate(rows):
            base = y + 7 * (len(rows) - 1 - i)
            if i:
                m.line(
                    (x, base + 7), (x + columns[-1], base + 7), layer="FRAME_THIN", lw=35 if i == 1 else 18
                )
            for left, text in zip(columns, row):
                write(m, text, (x + left + 3, base + (2.25 if i else 2.5)), 2.5 if i else 2.0)

    def draw_frame(self, at, value):
        """Runout of the face the leader points to, against datum A."""
        m, (x, y), write = self.m, at, self.letters.write
        for left, size in ((0, 7), (7, 14), (21, 7)):
            m.polyline(rectangle(x + left, y, size, 7), closed=True, layer="SYMBOL")
        m.line((x + 1.8, y + 1.4), (x + 5.2, y + 5.4), layer="SYMBOL")
        draw_arrow(m, (x + 5.2, y + 5.4), math.degrees(math.atan2(4, 3.4)), 2.2, layer="SYMBOL")
        write(m, value, (x + 14, y + 1.8), 3.5, "center", layer="SYMBOL")
        write(m, "A", (x + 24.5, y + 1.8), 3.5, "center", layer="SYMBOL")


def make():
    return Flange().make()
