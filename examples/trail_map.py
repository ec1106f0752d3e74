"""A trail map over a relief: an image, translucent zones on layers of their own, links, and labels that hide what
lies below them. A sheet shows it twice, whole and in part, above a gradient."""

from __future__ import annotations

import math
import pathlib
import struct
import zlib

from dxf_writer import Drawing

SHEET = (297.0, 210.0)
MAP = (12.0, 12.0, 273.0, 186.0)  # left, bottom, width, height
PIXELS = (364, 248)
RELIEF = "trail_map_relief.png"

PEAKS = (((70, 150), 40, 1.0), ((190, 60), 46, 1.25), ((235, 160), 30, 0.7), ((120, 40), 34, 0.5))

# Name, place of the label, target of the link.
HUTS = (
    ("Eagle Hut 1840 m", (84, 134), "https://example.org/huts/eagle"),
    ("Larch Lodge 1420 m", (150, 92), "www.example.org/huts/larch"),
    ("Stone Hut 2110 m", (206, 78), "https://example.org/huts/stone"),
)

TRAILS = (
    ("1", 0xC00000, ((20, 30), (52, 62), (70, 110), (84, 134), (112, 150))),
    ("2", 0x0050B0, ((20, 30), (96, 60), (150, 92), (206, 78), (250, 96), (276, 140))),
    ("3", 0x7A3F9D, ((150, 92), (128, 128), (84, 134))),
)

ZONES = (
    ("NATURE_RESERVE", 0x2E8B57, ((150, 104), (196, 112), (250, 108), (268, 150), (230, 186), (176, 168))),
    ("AVALANCHE_ZONE", 0xD97706, ((44, 96), (66, 84), (104, 96), (98, 122), (64, 128))),
)


def height_at(x, y):
    ridge = 0.06 * math.sin(x / 9 + math.cos(y / 14) * 2) + 0.03 * math.sin(y / 5 + x / 11)
    return ridge + sum(h * math.exp(-((x - cx) ** 2 + (y - cy) ** 2) / r**2) for (cx, cy), r, h in PEAKS)


def relief():
    """Rows of palette indices from the top: shade in the low four bits, height above."""
    columns, rows = PIXELS
    step = MAP[2] / columns
    for row in range(rows):
        line = bytearray()
        for column in range(columns):
            x, y = MAP[0] + (column + 0.5) * step, MAP[1] + (rows - row - 0.5) * step
            z = height_at(x, y)
            slope_x, slope_y = height_at(x + step, y) - z, height_at(x, y + step) - z
            light = 0.62 - 5.5 * slope_x + 5.5 * slope_y
            line.append(min(15, max(0, round(15 * light))) | min(15, max(0, round(10 * z))) << 4)
        yield bytes(line)


def palette():
    low, high = (178, 205, 150), (244, 240, 234)
    for index in range(256):
        shade, height = 0.55 + 0.45 * (index & 15) / 15, min(1.0, (index >> 4) / 12)
        yield bytes(round((a + (b - a) * height) * shade) for a, b in zip(low, high))


def write_relief(path):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", *PIXELS, 8, 3, 0, 0, 0)
    rows = zlib.compress(b"".join(b"\0" + row for row in relief()), 9)
    chunks = ((b"IHDR", header), (b"PLTE", b"".join(palette())), (b"IDAT", rows), (b"IEND", b""))
    path.write_bytes(b"\x89PNG\r\n\x1a\n" + b"".join(chunk(*each) for each in chunks))


def make():
    write_relief(pathlib.Path(__file__).with_name(RELIEF))
    drawing = Drawing(SHEET, version="AC1018")
    for name, color in (("RELIEF", 8), ("GRID", 8), ("TRAILS", 1), ("HUTS", 7), ("FRAME", 7)):
        drawing.layer(name, color)
    drawing.style("LABEL", "DejaVuSans.ttf", "DejaVu Sans")
    drawing.style("NOTE", "romans.shx")
    m = drawing.model
    left, bottom, width, height = MAP
    m.image(drawing.image(RELIEF, PIXELS), (left, bottom), width, layer="RELIEF")
    for i in range(1, 7):
        x, y = left + width * i / 7, bottom + height * i / 7
        m.line((x, bottom), (x, bottom + height), layer="GRID", opacity=0.4, lw=13)
        m.line((left, y), (left + width, y), layer="GRID", opacity=0.4, lw=13)
    for name, rgb, corners in ZONES:
        drawing.layer(name, 7, rgb=rgb)
        m.hatch([corners], layer=name, opacity=0.35)
        m.polyline(corners, closed=True, layer=name, lw=35)
        x, y = (sum(values) / len(corners) for values in zip(*corners))
        m.text(name.replace("_", " ").title(), (x, y), 4, "NOTE", "center", layer=name, lw=35, rgb=0x404040)
    for number, rgb, way in TRAILS:
        m.polyline(way, width=1.1, layer="TRAILS", rgb=rgb)
        (x1, y1), (x2, y2) = way[:2]
        x, y = (x1 + x2) / 2, (y1 + y2) / 2
        m.hatch([circle((x, y), 3.4)], layer="TRAILS", rgb=rgb)
        m.text(number, (x, y), 3.4, "LABEL", "center", "middle", layer="TRAILS", rgb=0xFFFFFF)
    for name, (x, y), target in HUTS:
        m.solid([(x - 2, y - 2), (x + 2, y - 2), (x, y + 2.4)], layer="HUTS")
        m.wipeout((x + 4, y - 2.2), (2.35 * len(name) + 2, 6.2), layer="HUTS")
        m.text(name, (x + 5.4, y), 2.9, "LABEL", layer="HUTS", rgb=0x0645AD, link=target)
    m.polyline(rectangle((left, bottom), (width, height)), closed=True, layer="FRAME", lw=70)
    draw_sheet(drawing.sheet("Sheet"))
    return drawing


def draw_sheet(sheet):
    sheet.hatch(
        [rectangle((12, 12), (273, 44))], gradient=("LINEAR", 0.0, 0x2E8B57, 0x0050B0), layer="FRAME"
    )
    sheet.text("Huts and trails", (20, 30), 12, "LABEL", layer="FRAME", rgb=0xFFFFFF)
    sheet.mtext(
        "{\\c16777215;All trails and the weather:\\P\\Lexample.org/trails}",
        (277, 34), 5, "LABEL", attachment=6, layer="FRAME", field="https://example.org/trails",
    )
    left, bottom, width, height = MAP
    middle = (left + width / 2, bottom + height / 2)
    sheet.viewport((97, 134), (170, 116), middle, 0.62, layer="FRAME")
    sheet.viewport((237, 134), (96, 116), (190, 88), 1.6, number=3, frozen=("GRID",), layer="FRAME")


def rectangle(corner, size):
    (x, y), (width, height) = corner, size
    return [(x, y), (x + width, y), (x + width, y + height), (x, y + height)]


def circle(center, radius):
    """As two arcs."""
    return [(center[0] - radius, center[1], 1.0), (center[0] + radius, center[1], 1.0)]
