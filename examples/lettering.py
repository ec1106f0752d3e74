"""Technical lettering of strokes: each character is a block, a string is a row of inserts.

A glyph is written on a grid with capitals of 12 units' height. A stroke is a list of vertices "xy" in base
16; behind a vertex, "<" and ">" make the way to the next one a quarter of a circle to the left or to the
right, "(" and ")" a half circle. "|" begins another stroke.
"""

from __future__ import annotations

from geometry import turned

GRID = 12.0
GAP = 3.0  # between characters
SPACE = 5.0

ARCS = {"<": 0.41421, ">": -0.41421, "(": 1.0, ")": -1.0}

GLYPHS = {
    "A": "00 4c 80|13 73",
    "B": "00 0c 5c) 56) 50 00|06 56",
    "C": "88< 4c< 08 04< 40< 84",
    "D": "00 0c 4c> 88 84> 40 00",
    "E": "7c 0c 00 70|06 56",
    "F": "7c 0c 00|06 56",
    "G": "88< 4c< 08 04< 40< 84 86 56",
    "H": "00 0c|80 8c|06 86",
    "I": "00 0c",
    "J": "6c 63> 30> 03",
    "K": "00 0c|8c 04|37 80",
    "L": "0c 00 70",
    "M": "00 0c 54 ac a0",
    "N": "00 0c 80 8c",
    "O": "04 08> 4c> 88 84> 40> 04",
    "P": "00 0c 5c) 56 06",
    "Q": "04 08> 4c> 88 84> 40> 04|53 80",
    "R": "00 0c 5c) 56 06|46 80",
    "S": "89< 5c 3c< 09< 36 56> 83> 50 30> 03",
    "T": "0c 8c|4c 40",
    "U": "0c 04< 40< 84 8c",
    "V": "0c 40 8c",
    "W": "0c 30 6c 90 cc",
    "X": "00 8c|0c 80",
    "Y": "0c 46 8c|46 40",
    "Z": "0c 8c 00 80",
    "0": "03 09> 3c> 69 63> 30> 03",
    "1": "09 3c 30",
    "2": "09> 3c> 69 68 00 60",
    "3": "0c 6c 26 36> 63> 30> 03",
    "4": "50 5c 03 73",
    "5": "6c 0c 06 36> 63> 30> 03",
    "6": "5c 3c< 09 03< 30< 63< 36< 03",
    "7": "0c 6c 20",
    "8": "36> 09> 3c> 69> 36< 03< 30< 63< 36",
    "9": "10 30< 63 69< 3c< 09< 36< 69",
    "a": "66 60|63< 36< 03< 30< 63",
    "f": "10 19> 4c|07 37",
    "m": "00 06|04> 26> 44 40|44> 66> 84 80",
    "-": "06 56",
    ".": "00 01",
    ",": "12 00",
    ":": "01 02|07 08",
    "/": "00 6c",
    "+": "06 86|4a 42",
    "=": "04 74|08 78",
    "(": "2c 09 03 20",
    ")": "0c 29 23 00",
    "\u00b0": "0a> 2c> 4a> 28> 0a",
    "\u00b1": "07 87|4b 43|00 80",
    "\u00d7": "02 68|08 62",
    "\u00d8": "06> 4a> 86> 42> 06|00 8c",
}


def strokes(character):
    result = []
    for stroke in GLYPHS[character].split("|"):
        vertices = []
        for token in stroke.split():
            x, y = int(token[0], 16) / GRID, int(token[1], 16) / GRID
            vertices.append((x, y, ARCS[token[2]] if len(token) > 2 else 0.0))
        result.append(vertices)
    return result


def advance(character):
    if character == " ":
        return SPACE / GRID
    # A half circle reaches beyond its ends, by half of their distance.
    right = max(
        x + (abs(y2 - y) / 2 if bow == ARCS[")"] else 0.0)
        for stroke in strokes(character)
        for (x, y, bow), (_, y2, _) in zip(stroke, stroke[1:] + stroke[-1:])
    )
    return right + GAP / GRID


def width(text, height):
    return height * (sum(advance(character) for character in text) - GAP / GRID) if text else 0.0


class Lettering:
    """Writes strings into a drawing, and makes a character's block when it is first used."""

    def __init__(self, drawing, layer="LETTERING"):
        self.drawing = drawing
        self.layer = layer

    def write(self, entities, text, at, height, align="left", angle=0.0, **style):
        """`at` is on the base line; the strokes are a tenth of the height, as in ISO 3098 type B."""
        shift = {"left": 0.0, "center": 0.5, "right": 1.0}[align] * width(text, height)
        style.setdefault("layer", self.layer)
        style.setdefault("lw", min((13, 18, 25, 35, 50, 70), key=lambda weight: abs(weight - 10 * height)))
        x = -shift
        for character in text:
            if character != " ":
                dx, dy = turned((x, 0.0), angle)
                place = (at[0] + dx, at[1] + dy)
                entities.insert(self.glyph(character), place, (height, height), angle, **style)
            x += height * advance(character)

    def glyph(self, character):
        name = f"CHAR_{ord(character):02X}"
        if name not in self.drawing.blocks:
            block = self.drawing.block(name)
            for vertices in strokes(character):
                block.polyline(vertices, color=0, lw=-2)
        return name
