"""Lettering of a drawing: TEXT entities in one style."""

from __future__ import annotations

# Advance widths in heights of the capitals, good enough to leave room for a text.
NARROW, WIDE = 0.5, 1.3
CAPITAL, SMALL, DIGIT = 1.03, 0.9, 0.93


def width(text, height):
    """About how wide `text` comes out."""
    return height * sum(advance(character) for character in text)


def advance(character):
    if character in " .,:;/()'|!iljtfI":
        return NARROW
    if character in "mMwW@":
        return WIDE
    if character.isdigit():
        return DIGIT
    return CAPITAL if character.isupper() else SMALL


class Lettering:
    """Writes strings into a drawing in the font `file`, a stroke font (.shx) or a TrueType file."""

    def __init__(self, drawing, file, layer="LETTERING"):
        self.style = "LETTERING"
        self.layer = layer
        drawing.style(self.style, file)

    def write(self, entities, text, at, height, align="left", angle=0.0, **look):
        """`at` is on the base line; strokes are a tenth of the height, as in ISO 3098 type B."""
        look.setdefault("layer", self.layer)
        look.setdefault("lw", min((13, 18, 25, 35, 50, 70), key=lambda weight: abs(weight - 10 * height)))
        entities.text(text, at, height, self.style, align, rotation=angle, **look)
