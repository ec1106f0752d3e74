"""The sheet around a drawing: A3 lying, with trimming marks, grid reference border, frame and centring marks
in the manner of ISO 5457, and a title block in the manner of ISO 7200."""

from __future__ import annotations

from geometry import rectangle

WIDTH, HEIGHT = 420.0, 297.0
LEFT, BOTTOM, RIGHT, TOP = 20.0, 10.0, 410.0, 287.0  # the frame
BORDER = 5.0  # from the frame to the outer line of the grid reference fields


def add_layers(drawing):
    drawing.layer("FRAME", 7, lw=70)
    drawing.layer("FRAME_THIN", 7, lw=18)
    drawing.layer("LETTERING", 7, lw=25)


def draw_frame(drawing, lettering):
    m = drawing.model
    m.polyline(rectangle(LEFT, BOTTOM, RIGHT - LEFT, TOP - BOTTOM), closed=True, layer="FRAME")
    outer = rectangle(LEFT - BORDER, BOTTOM - BORDER, RIGHT - LEFT + 2 * BORDER, TOP - BOTTOM + 2 * BORDER)
    m.polyline(outer, closed=True, layer="FRAME_THIN")
    draw_trimming_marks(m)
    draw_grid(m, lettering)


def draw_trimming_marks(m):
    for x, sx in ((0.0, 1), (WIDTH, -1)):
        for y, sy in ((0.0, 1), (HEIGHT, -1)):
            m.solid([(x, y), (x + sx * 4, y), (x + sx * 4, y + sy * 1.5), (x, y + sy * 1.5)], layer="FRAME")
            m.solid([(x, y), (x + sx * 1.5, y), (x + sx * 1.5, y + sy * 4), (x, y + sy * 4)], layer="FRAME")


def draw_grid(m, lettering):
    """Fields of 50 mm, counted from the sheet's middle, and a centring mark on each side."""
    middle_x, middle_y = WIDTH / 2, HEIGHT / 2
    for edge, out in ((BOTTOM, -BORDER), (TOP, BORDER)):
        m.line((middle_x, edge + out), (middle_x, edge - out), layer="FRAME")
        for i in (-3, -2, -1, 1, 2, 3):
            m.line((middle_x + 50 * i, edge), (middle_x + 50 * i, edge + out), layer="FRAME_THIN")
        for i in range(8):
            x = middle_x - 175 + 50 * i
            lettering.write(m, str(i + 1), (x, edge + out / 2 - 1.25), 2.5, "center")
    for edge, out in ((LEFT, -BORDER), (RIGHT, BORDER)):
        m.line((edge + out, middle_y), (edge - out, middle_y), layer="FRAME")
        for i in (-2, -1, 1, 2):
            m.line((edge, middle_y + 50 * i), (edge + out, middle_y + 50 * i), layer="FRAME_THIN")
        for i, letter in enumerate("FEDCBA"):
            y = middle_y - 125 + 50 * i
            lettering.write(m, letter, (edge + out / 2, y - 1.25), 2.5, "center")


def draw_title_block(drawing, lettering, title, number, scale, extra):
    """180 by 36 mm in the lower right corner. `extra` are up to three (label, value) for the left column."""
    m = drawing.model
    x, y = RIGHT - 180, BOTTOM
    m.polyline([(x, y), (x, y + 36), (RIGHT, y + 36)], layer="FRAME", lw=50)
    for a, b in (
        ((x + 62, y), (x + 62, y + 36)),
        ((x, y + 12), (x + 62, y + 12)),
        ((x, y + 24), (x + 62, y + 24)),
        ((x + 62, y + 13), (RIGHT, y + 13)),
        ((x + 104, y), (x + 104, y + 13)),
        ((x + 136, y), (x + 136, y + 13)),
        ((x + 158, y), (x + 158, y + 13)),
    ):
        m.line(a, b, layer="FRAME_THIN", lw=25)

    def field(label, value, fx, fy, height=3.5):
        lettering.write(m, label, (fx + 2, fy + 8.6), 1.8, lw=13)
        lettering.write(m, value, (fx + 2, fy + 2.5), height)

    for i, (label, value) in enumerate(extra):
        field(label, value, x, y + 24 - 12 * i)
    lettering.write(m, "TITLE", (x + 64, y + 31.6), 1.8, lw=13)
    lettering.write(m, title, (x + 66, y + 19), 7.0)
    field("DRAWING NUMBER", number, x + 62, y)
    field("SCALE", scale, x + 104, y)
    field("SHEET", "1/1", x + 136, y)
    draw_projection_symbol(m, (x + 169, y + 6.5))


def draw_projection_symbol(m, at):
    """First angle projection: the cone's side to the left, its view from the left to the right of it."""
    x, y = at
    m.polyline(
        [(x - 8, y - 2), (x - 8, y + 2), (x - 1.5, y + 3.5), (x - 1.5, y - 3.5)],
        True,
        layer="FRAME_THIN",
        lw=25,
    )
    m.circle((x + 5, y), 3.5, layer="FRAME_THIN", lw=25)
    m.circle((x + 5, y), 2, layer="FRAME_THIN", lw=25)
    for a, b in (((x - 9.5, y), (x + 9.5, y)), ((x + 5, y - 4.5), (x + 5, y + 4.5))):
        m.line(a, b, layer="FRAME_THIN", ltype="CENTER", lts=0.25, lw=13)
