"""A piping and instrumentation diagram: feed tank, distillation column with condenser and reboiler, and
product tank."""

from __future__ import annotations

import math

import sheet
from diagram_symbols import STEEL, add_symbols
from dxf_writer import Drawing
from geometry import along, bulge, direction, rectangle
from lettering import Lettering

COLUMN = (186.0, 105.0, 245.0, 10.0)  # axis, lower and upper tangent line, radius

# Layer, colour and width of each kind of pipe.
PIPES = {
    "FEED": (0x1D4E9B, 1.0),
    "OVERHEAD": (0xD9822B, 1.0),
    "DISTILLATE": (0x2B8A4B, 1.0),
    "BOTTOMS": (0x7A3B1E, 1.0),
    "STEAM": (0xC92A2A, 0.7),
    "CONDENSATE": (0xD98880, 0.7),
    "COOLING_WATER": (0x2E9CCA, 0.7),
    "FLARE": (0x8E6BB0, 0.7),
}

BEND = 2.5  # radius of pipe bends
ARROW_LENGTH, ARROW_WIDTH = 4.0, 2.6


class Diagram:
    def __init__(self):
        self.drawing = Drawing((sheet.WIDTH, sheet.HEIGHT), "AC1018")
        self.letters = Lettering(self.drawing, "DejaVuSansCondensed.ttf")
        self.m = self.drawing.model

    def make(self):
        self.add_tables()
        add_symbols(self.drawing)
        self.draw_hidden_layers()
        self.draw_feed()
        self.draw_overhead()
        self.draw_reflux()
        self.draw_bottoms()
        self.draw_reboiler_pipes()
        self.draw_product()
        self.draw_equipment()
        self.draw_column()
        self.draw_valves()
        self.draw_instruments()
        self.draw_marks()
        self.draw_stream_table()
        self.draw_equipment_list()
        self.draw_legend()
        sheet.draw_frame(self.drawing, self.letters)
        extra = (("PLANT", "UNIT 100"), ("AREA", "DISTILLATION"), ("STATUS", "FOR APPROVAL"))
        sheet.draw_title_block(self.drawing, self.letters, "P+I DIAGRAM", "HDI-EX-03", "-", extra)
        return self.drawing

    def add_tables(self):
        d = self.drawing
        d.line_type("CENTER", "Long dash, short dash", [8, -1.5, 1.5, -1.5])
        d.line_type("SIGNAL", "Short dashes", [2.2, -1.2])
        d.line_type("DOTTED", "Dots", [0, -1.5])
        sheet.add_layers(d)
        for i, (name, (rgb, _)) in enumerate(PIPES.items()):
            d.layer(f"PIPE_{name}", (5, 30, 94, 34, 1, 12, 140, 202)[i], lw=35, rgb=rgb)
        d.layer("EQUIPMENT", 7, lw=50)
        d.layer("EQUIPMENT_THIN", 7, lw=18)
        d.layer("FILL", 254, rgb=STEEL)
        d.layer("SYMBOL", 7, lw=35)
        d.layer("INSTRUMENT", 7, lw=25)
        d.layer("SIGNAL", 8, "SIGNAL", lw=18, rgb=0x555555)
        d.layer("TAG", 7, lw=25)
        d.layer("GRID", 9, "DOTTED", lw=13, frozen=True)
        d.layer("REVISION", 1, lw=50, off=True)

    def draw_hidden_layers(self):
        """What does not plot: a grid on a frozen layer, a revision cloud on one that is off."""
        for i in range(1, 39):
            self.m.line((20 + 10 * i, 10), (20 + 10 * i, 287), layer="GRID")
        for i in range(1, 28):
            self.m.line((20, 10 + 10 * i), (410, 10 + 10 * i), layer="GRID")
        corners = rectangle(112, 160, 44, 40)
        cloud = []
        for a, b in zip(corners, corners[1:] + corners[:1]):
            count = max(1, round(math.dist(a, b) / 6))
            cloud += [(*along(a, b, math.dist(a, b) * k / count), 0.6) for k in range(count)]
        self.m.polyline(cloud, closed=True, layer="REVISION")

    def pipe(self, kind, points, arrow=True):
        """A wide line with round bends and a tapering end."""
        width = PIPES[kind][1]
        layer = f"PIPE_{kind}"
        end = points[-1]
        if arrow:
            foot = along(end, points[-2], ARROW_LENGTH)
            self.m.polyline([(*foot, 0, ARROW_WIDTH, 0.0), (*end, 0, 0.0, 0.0)], layer=layer)
            points = points[:-1] + [foot]
        vertices = [points[0]]
        for a, b, c in zip(points, points[1:], points[2:]):
            turn = (direction(b, c) - direction(a, b) + 180) % 360 - 180
            radius = min(BEND, math.dist(a, b) / 2, math.dist(b, c) / 2)
            cut = radius * abs(math.tan(math.radians(turn / 2)))
            vertices += [(*along(b, a, cut), bulge(turn)), along(b, c, cut)]
        self.m.polyline(vertices + [points[-1]], width=width, layer=layer)

    def signal(self, *points):
        self.m.polyline(list(points), layer="SIGNAL")

    def symbol(self, block, at, rotation=0.0, scale=(1.0, 1.0), layer="SYMBOL"):
        self.m.insert(block, at, scale, rotation, layer=layer)

    def tag(self, text, at, align="center", height=2.5):
        self.letters.write(self.m, text, at, height, align, layer="TAG")

    def off_page(self, text, at, comes_in, width=34.0):
        """A pentagon that points with the flow; `at` is its end on the drawing's side. It lies to the left of
        `at` where `width` is positive."""
        x, y = at
        left, right = (x - width, x) if width > 0 else (x, x - width)
        tip = right if comes_in == (width > 0) else left
        back = left if tip == right else right
        nose = -3 if tip == right else 3
        outline = [(back, y - 3), (tip + nose, y - 3), (tip, y), (tip + nose, y + 3), (back, y + 3)]
        self.m.hatch([outline], layer="FILL", rgb=0xFFF9E5)
        self.m.polyline(outline, closed=True, layer="SYMBOL", lw=25)
        self.letters.write(self.m, text, ((left + right) / 2, y - 1.1), 2.2, "center", layer="TAG")

    def draw_feed(self):
        self.pipe("FEED", [(50, 180), (58, 180), (58, 162)])
        self.off_page("FEED", (50, 180), True, 24)
        self.pipe("FEED", [(66, 122), (85, 122)])
        self.pipe("FEED", [(73, 122), (73, 100), (85, 100)])
        self.pipe("FEED", [(97, 105), (116, 105), (116, 131)], arrow=False)
        self.pipe("FEED", [(97, 127), (116, 127), (116, 172), (137, 172)])
        self.pipe("FEED", [(151, 172), (176, 172)])

    def draw_overhead(self):
        self.pipe("OVERHEAD", [(186, 250), (186, 268), (236, 268), (236, 252)])
        self.pipe("DISTILLATE", [(236, 240), (236, 224)])
        self.pipe("FLARE", [(248, 223), (248, 232), (292, 232)])
        self.off_page("FLARE", (292, 232), False, -34)
        self.pipe("COOLING_WATER", [(292, 249), (251, 249)])
        self.off_page("COOLING WATER", (292, 249), True, -34)
        self.pipe("COOLING_WATER", [(251, 243), (292, 243)])
        self.off_page("CW RETURN", (292, 242.4), False, -34)

    def draw_reflux(self):
        self.pipe("DISTILLATE", [(244, 208), (244, 190), (257, 190)])
        self.pipe("DISTILLATE", [(244, 192), (244, 170), (257, 170)])
        self.pipe("DISTILLATE", [(269, 195), (290, 195), (290, 158), (206, 158), (206, 232), (196, 232)])
        self.pipe("DISTILLATE", [(269, 175), (290, 175)], arrow=False)
        self.pipe("DISTILLATE", [(290, 193), (290, 208), (364, 208), (364, 198)])

    def draw_bottoms(self):
        self.pipe("BOTTOMS", [(186, 101), (186, 80), (173, 80)])
        self.pipe("BOTTOMS", [(186, 83), (186, 60), (173, 60)])
        self.pipe("BOTTOMS", [(161, 65), (144, 65), (144, 89)], arrow=False)
        self.pipe("BOTTOMS", [(161, 85), (144, 85), (144, 165)])
        self.pipe("BOTTOMS", [(144, 179), (144, 205), (56, 205)])
        self.off_page("BOTTOMS", (56, 205), False, 30)

    def draw_reboiler_pipes(self):
        self.pipe("BOTTOMS", [(186, 92), (222, 92), (222, 98)])
        self.pipe("OVERHEAD", [(228, 112), (228, 122), (196, 122)])
        self.pipe("STEAM", [(300, 108), (250, 108)])
        self.off_page("STEAM", (300, 108), True, -30)
        self.pipe("CONDENSATE", [(250, 100), (300, 100)])
        self.off_page("CONDENSATE", (300, 100), False, -30)

    def draw_product(self):
        self.pipe("DISTILLATE", [(350, 154), (340, 154), (340, 125), (353, 125)])
        self.pipe("DISTILLATE", [(365, 130), (384, 130)])
        self.off_page("LOADING", (384, 130), False, -22)

    def draw_equipment(self):
        for at in ((48, 118), (368, 150)):
            self.symbol("TANK", at, scale=(1 if at[0] < 200 else -1, 1), layer="EQUIPMENT")
            x, y = at
            self.m.hatch([rectangle(x - 16, y, 32, 26)], layer="FILL", rgb=0xC9DDF3 if x < 200 else 0xCFE8D5)
            self.m.polyline([(x - 16, y), (x - 16, y + 42), (x + 16, y + 42), (x + 16, y)], layer="SYMBOL")
            self.m.line((x - 16, y + 26), (x + 16, y + 26), layer="EQUIPMENT_THIN")
            for i in range(3):
                self.m.line((x - 4 + i, y + 25 - i), (x + 4 - i, y + 25 - i), layer="EQUIPMENT_THIN", lw=13)
            for ring in (12, 34):
                self.m.line((x - 16, y + ring), (x + 16, y + ring), layer="EQUIPMENT_THIN", lw=13)
        pumps = (
            ("P-101 A", (90, 122), 1),
            ("P-101 B", (90, 100), 1),
            ("P-102 A", (262, 190), 1),
            ("P-102 B", (262, 170), 1),
            ("P-103 A", (168, 80), -1),
            ("P-103 B", (168, 60), -1),
            ("P-104", (358, 125), 1),
        )
        for name, at, side in pumps:
            self.symbol("PUMP", at, scale=(side, 1), layer="EQUIPMENT")
            beside = name.startswith("P-102")  # there is a pipe below
            place = (at[0] + 6, at[1] - 6.8) if beside else (at[0], at[1] - 10.6)
            self.tag(name, place, "left" if beside else "center", 2.2)
        self.symbol("EXCHANGER", (144, 172), layer="EQUIPMENT")
        self.symbol("SHELL_AND_TUBE", (236, 246), layer="EQUIPMENT")
        self.symbol("DRUM", (236, 216), layer="EQUIPMENT")
        self.symbol("KETTLE", (232, 104), layer="EQUIPMENT")
        for text, at in (
            ("T-101", (48, 123.6)),
            ("T-102", (368, 155.6)),
            ("E-101", (155, 163)),
            ("E-102", (209, 245)),
            ("D-101", (243, 210.2)),
            ("E-103", (238, 91.5)),
            ("C-101", (174, 255)),
        ):
            self.tag(text, at, height=2.8)

    def draw_column(self):
        x, low, high, r = COLUMN
        m = self.m
        shell = [(x - r, low, bulge(126)), (x + r, low), (x + r, high, bulge(126)), (x - r, high)]
        m.hatch([shell], layer="FILL")
        sump = [(x - r, low, bulge(126)), (x + r, low), (x + r, low + 9), (x - r, low + 9)]
        m.hatch([sump], layer="FILL", rgb=0xE3CBBE)
        m.line((x - r, low + 9), (x + r, low + 9), layer="EQUIPMENT_THIN")
        m.polyline(shell, closed=True, layer="EQUIPMENT", lw=70)
        for y in (low, high):
            m.line((x - r, y), (x + r, y), layer="EQUIPMENT_THIN")
        for i in range(18):
            y = 129 + 6 * i
            if abs(y - 172) < 4:
                continue
            left = -r if i % 2 else -r + 4
            m.line((x + left, y), (x + left + 2 * r - 4, y), layer="EQUIPMENT_THIN", lw=25)
            weir = x + (r - 4 if i % 2 else -r + 4)
            m.line((weir, y + 1.4), (weir, y - 4), layer="EQUIPMENT_THIN", lw=25)
            for k in range(5):
                m.arc((x + left + 3 + 2.5 * k, y), 0.7, 0, 180, layer="EQUIPMENT_THIN", lw=13)
        skirt = [(x - r, low), (x - r, low - 9), (x - r - 2, low - 9), (x - r - 2, low - 10.4)]
        m.polyline(skirt, layer="EQUIPMENT_THIN", lw=25)
        m.polyline([(2 * x - px, py) for px, py in skirt], layer="EQUIPMENT_THIN", lw=25)
        m.circle((x, 234.9 + 5.6), 1.6, layer="EQUIPMENT_THIN", lw=25)

    def draw_valves(self):
        for at in (
            (79, 122),
            (79, 100),
            (110.5, 127),
            (110.5, 105),
            (179.5, 80),
            (179.5, 60),
            (150, 85),
            (150, 65),
            (250.5, 190),
            (250.5, 170),
            (283, 195),
            (282, 175),
            (262, 249),
            (262, 243),
            (284, 108),
            (346.5, 125),
            (62, 205),
        ):
            self.symbol("VALVE", at)
        for at in ((103, 127), (103, 105), (275.5, 195), (275.5, 175)):
            self.symbol("CHECK_VALVE", at)
        for at in ((155.8, 85), (155.8, 65)):
            self.symbol("CHECK_VALVE", at, scale=(-1, 1))
        self.symbol("VALVE", (340, 140), 90)
        for at in ((130, 172), (110, 205), (270, 108), (276, 249), (310, 208)):
            self.symbol("CONTROL_VALVE", at)
        self.symbol("CONTROL_VALVE", (255, 158), scale=(1, -1))
        self.symbol("SAFETY_VALVE", (268, 232))
        self.symbol("STEAM_TRAP", (272, 100))
        for at in ((121.5, 172), (272, 158), (374, 130)):
            self.symbol("ORIFICE", at)

    def bubble(self, letters, number, at, panel=False):
        self.symbol("PANEL_BUBBLE" if panel else "FIELD_BUBBLE", at, layer="INSTRUMENT")
        x, y = at
        self.letters.write(self.m, letters, (x, y + 0.8), 2.0, "center", layer="TAG", lw=18)
        self.letters.write(self.m, number, (x, y - 3.0), 2.0, "center", layer="TAG", lw=18)

    def tap(self, *points):
        self.m.polyline(list(points), layer="INSTRUMENT")

    def draw_instruments(self):
        self.tap((121.5, 172), (121.5, 179))
        self.signal((121.5, 189), (121.5, 193), (125, 193))
        self.signal((130, 188), (130, 179.4))
        self.bubble("FT", "101", (121.5, 184))
        self.bubble("FIC", "101", (130, 193), True)

        self.tap((176, 118), (170, 118), (170, 106), (176, 106))
        self.tap((170, 112), (166, 112))
        self.signal((161, 117), (161, 127))
        self.signal((161, 137), (161, 216), (110, 216), (110, 212.4))
        self.bubble("LT", "102", (161, 112))
        self.bubble("LIC", "102", (161, 132), True)

        self.tap((196, 134), (207, 134))
        self.signal((217, 134), (224, 134))
        self.signal((234, 134), (270, 134), (270, 115.4))
        self.bubble("TT", "103", (212, 134))
        self.bubble("TIC", "103", (229, 134), True)

        self.tap((206, 268), (206, 272))
        self.signal((211, 277), (220, 277))
        self.signal((230, 277), (276, 277), (276, 256.4))
        self.bubble("PT", "104", (206, 277))
        self.bubble("PIC", "104", (225, 277), True)

        self.tap((256, 216), (263, 216))
        self.signal((273, 216), (283, 216))
        self.signal((293, 216), (302, 216), (302, 219), (310, 219), (310, 215.4))
        self.bubble("LT", "105", (268, 216))
        self.bubble("LIC", "105", (288, 216), True)

        self.tap((272, 158), (272, 149))
        self.signal((267, 144), (260, 144))
        self.signal((255, 149), (255, 150.6))
        self.bubble("FT", "106", (272, 144))
        self.bubble("FIC", "106", (255, 144), True)

        self.tap((374, 130), (374, 137))
        self.bubble("FQ", "107", (374, 142))
        for letters, number, at, taps in (
            ("PI", "108", (104, 150), [(109, 150), (116, 150)]),
            ("TI", "109", (165, 186), [(165, 181), (165, 172)]),
            ("TI", "110", (162, 240), [(167, 240), (176, 240)]),
            ("LI", "111", (76, 140), [(64, 140), (71, 140)]),
            ("LI", "112", (336, 176), [(341, 176), (352, 176)]),
            ("PI", "113", (302, 184), [(297, 184), (290, 184)]),
            ("PI", "114", (130, 100), [(135, 100), (144, 100)]),
        ):
            self.tap(*taps)
            self.bubble(letters, number, at)

    def draw_marks(self):
        for number, at in (
            (1, (116, 160)),
            (2, (212, 268)),
            (3, (206, 190)),
            (4, (334, 208)),
            (5, (144, 130)),
            (6, (214, 122)),
        ):
            self.symbol("STREAM_MARK", at)
            self.letters.write(self.m, str(number), (at[0], at[1] - 1.1), 2.2, "center", layer="TAG", lw=25)

    def draw_stream_table(self):
        x, y, label, column, row = 334.0, 232.0, 17.0, 9.4, 6.6
        rows = (
            ("STREAM", "1", "2", "3", "4", "5", "6"),
            ("FLOW", "12.0", "14.4", "9.6", "4.8", "7.2", "16.1"),
            ("TEMP. \u00b0C", "25", "78", "40", "40", "104", "106"),
            ("BAR", "4.2", "1.1", "5.6", "5.6", "5.1", "1.3"),
            ("FRACTION", "0.41", "0.96", "0.96", "0.96", "0.04", "0.07"),
        )
        width, height = label + 6 * column, row * len(rows)
        self.m.hatch([rectangle(x, y + height - row, width, row)], layer="FILL", rgb=0xFFF4CC)
        self.m.polyline(rectangle(x, y, width, height), closed=True, layer="FRAME_THIN", lw=35)
        for i in range(1, len(rows)):
            self.m.line((x, y + row * i), (x + width, y + row * i), layer="FRAME_THIN")
        for i in range(6):
            self.m.line((x + label + column * i, y), (x + label + column * i, y + height), layer="FRAME_THIN")
        for i, (name, *values) in enumerate(rows):
            base = y + height - row * (i + 1) + 2.3
            self.letters.write(self.m, name, (x + 2, base), 2.0)
            for k, value in enumerate(values):
                self.letters.write(self.m, value, (x + label + column * (k + 0.5), base), 2.0, "center")

    def draw_equipment_list(self):
        x, y, row = 312.0, 52.0, 5.2
        rows = (
            ("T-101", "FEED TANK"),
            ("E-101", "FEED PREHEATER"),
            ("C-101", "COLUMN, 17 TRAYS"),
            ("E-102", "CONDENSER"),
            ("D-101", "REFLUX DRUM"),
            ("E-103", "KETTLE REBOILER"),
            ("T-102", "PRODUCT TANK"),
        )
        width, height = 95.0 - 0.5, row * len(rows)
        self.m.polyline(rectangle(x, y, width, height), closed=True, layer="FRAME_THIN", lw=35)
        self.m.line((x + 20, y), (x + 20, y + height), layer="FRAME_THIN")
        for i, (name, text) in enumerate(rows):
            base = y + height - row * (i + 1)
            if i:
                self.m.line((x, base + row), (x + width, base + row), layer="FRAME_THIN")
            self.letters.write(self.m, name, (x + 3, base + 1.6), 2.0)
            self.letters.write(self.m, text, (x + 23, base + 1.6), 2.0)

    def draw_legend(self):
        x, y, row = 26.0, 39.0, 8.0
        for i, kind in enumerate(PIPES):
            at = (x + 52 * (i // 4), y - row * (i % 4))
            self.pipe(kind, [at, (at[0] + 14, at[1])])
            self.letters.write(self.m, kind.replace("_", " "), (at[0] + 17, at[1] - 1.1), 2.2)
        symbols = (
            ("VALVE", "VALVE", 0, 0),
            ("CHECK VALVE", "CHECK_VALVE", 0, 1),
            ("STEAM TRAP", "STEAM_TRAP", 0, 2),
            ("ORIFICE", "ORIFICE", 0, 3),
            ("SAFETY VALVE", "SAFETY_VALVE", 1, 0),
            ("CONTROL VALVE", "CONTROL_VALVE", 1, 1.7),
            ("SIGNAL", None, 1, 3),
        )
        for text, block, column, line in symbols:
            at = (x + 104 + 50 * column, y - row * line)
            layer, lw = ("EQUIPMENT_THIN", 25) if block else ("SIGNAL", None)
            self.m.line(at, (at[0] + 14, at[1]), layer=layer, lw=lw)
            if block:
                self.symbol(block, (at[0] + 7, at[1]))
            self.letters.write(self.m, text, (at[0] + 17, at[1] - 1.1), 2.2)
        self.m.line((20, 46), (230, 46), layer="FRAME_THIN")


def make():
    return Diagram().make()
