"""Traces of one page that are made for a check: a sheet without margins, lengths in millimetres, and rasters."""

from __future__ import annotations

import base64
import json
import random

DOTS_AN_INCH = 600
MILLIMETRES_AN_INCH = 25.4
POINTS_A_MILLIMETRE = 72 / MILLIMETRES_AN_INCH
SHEET = {"name": "Card", "width": 1524, "height": 1016, "left": 0, "right": 0, "top": 0, "bottom": 0}
BLACK, WHITE = [0, 0, 0, 255], [255, 255, 255, 255]


def dots(millimetres: float) -> float:
    """A length of the sheet in the trace's coordinates."""
    return millimetres * DOTS_AN_INCH / MILLIMETRES_AN_INCH


def points(*millimetres: tuple[float, float]) -> list[list[float]]:
    """Points of the sheet in the trace's coordinates."""
    return [[dots(x), dots(y)] for x, y in millimetres]


def trace_of(calls: list[dict], **job: object) -> str:
    """A trace of one page."""
    settings = {"dmPrintQuality": DOTS_AN_INCH, "dmPaperSize": 0, "keepFractions": 1}
    lines = [{"job": {"devMode": settings, "customPaper": SHEET, **job}}, {"call": "DevStartPage"}, *calls]
    return "\n".join(json.dumps(line) for line in [*lines, {"call": "DevEndPage"}])


class Raster:
    """A raster of random pixels, as a trace holds it and as the plot must hold it.

    One of 32 bits is of a single colour, so that its compression loses little; its fourth bytes are random.
    """

    def __init__(self, width: int, height: int, bits: int, seed: int, palette: list | None = None, alpha: int = 255):
        chance = random.Random(seed)
        self.size, self.alpha = (width, height), alpha
        self.tolerance = 3 if bits == 32 else 0
        if bits == 32:
            entries = [[30, 90, 180, chance.randrange(256)] for _ in range(width * height)]
        else:
            palette = palette or [[chance.randrange(256) for _ in range(4)] for _ in range(256)]
            values = [chance.randrange(1 << bits) for _ in range(width * height)]
            entries = [palette[value] for value in values]
        self.colors = bytes(entry[2 - channel] for entry in entries for channel in range(3))
        plain = bits == 1 and alpha == 255 and palette in ([BLACK, WHITE], [WHITE, BLACK])
        # Opacity scales the fourth bytes.
        self.mask = None if plain else bytes(int(entry[3] * (alpha / 255) + 0.5) for entry in entries)
        rows = b""
        for row in range(0, width * height, width):
            if bits == 32:
                rows += b"".join(map(bytes, entries[row : row + width]))
            else:
                digits = "".join(f"{value:0{bits}b}" for value in values[row : row + width])
                digits += "0" * (-len(digits) % 32)
                rows += int(digits, 2).to_bytes(len(digits) // 8, "big")
        self.in_trace = {"width": width, "height": height, "bitCount": bits, "hasAlpha": True}
        self.in_trace |= {"palette": palette or [], "pixels": base64.b64encode(rows).decode()}
