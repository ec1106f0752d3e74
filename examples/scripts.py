"""A sheet of lettering: one sentence in many scripts, stroke fonts, and what a text can look like."""

from __future__ import annotations

import math

from dxf_writer import Drawing

SHEET = (297.0, 210.0)
MARGIN = 12.0

SENTENCES = (
    ("English", "All dimensions in millimetres unless noted otherwise."),
    ("Deutsch", "Alle Maße in Millimetern, wenn nicht anders angegeben."),
    ("Français", "Toutes les cotes sont en millimètres, sauf indication contraire."),
    ("Polski", "Wszystkie wymiary w milimetrach, o ile nie podano inaczej."),
    ("Ελληνικά", "Όλες οι διαστάσεις σε χιλιοστά, εκτός αν σημειώνεται αλλιώς."),
    ("Русский", "Все размеры в миллиметрах, если не указано иное."),
    ("עברית", "כל המידות במילימטרים אלא אם צוין אחרת."),
    ("العربية", "جميع الأبعاد بالمليمتر ما لم يذكر خلاف ذلك."),
    ("中文", "除非另有说明，所有尺寸均以毫米为单位。"),
    ("日本語", "特記なき限り、寸法の単位はミリメートルとする。"),
)

STROKE_FONTS = ("romans", "romanc", "romant", "italicc", "scripts", "gothice")

# Paragraphs hang behind a tab; stacks, colours, widths, slants, spacing and another font within one text.
NOTE = (
    r"{\LGeneral notes\l}\P"
    r"\pi-1.5,l1.5,t1.5;{\H0.8x;1.^IBore %%c25 {\H0.7x;\S+0.021^ 0;}, depth 30 %%p0.5, to a depth that leaves the "
    r"flange whole.\P"
    r"2.^IChamfer edges 1 x 45%%d; radii \S1#4; inch where none is shown.\P"
    r"3.^I{\C1;Weld seams in red} are to be tested {\W0.7;before painting}, "
    r"{\fDejaVu Serif|b0|i1|c0|p0;as sheet 2 has it}.\P"
    r"4.^I{\Q15;Surfaces} {\T1.4;sand-blasted} to {\OSa 2\S1#2;\o}.}"
)


def make():
    drawing = Drawing(SHEET, version="AC1018")
    drawing.layer("FRAME", 7, lw=50)
    drawing.layer("TEXT", 7, lw=25)
    drawing.layer("GUIDE", 8, lw=13, rgb=0xA0A0A0)
    drawing.style("SANS", "DejaVuSans.ttf", "DejaVu Sans")
    drawing.style("SERIF", "times.ttf", "Times New Roman")
    for name in STROKE_FONTS:
        drawing.style(name.upper(), f"{name}.shx")
    m = drawing.model
    frame = [(MARGIN, MARGIN), (SHEET[0] - MARGIN, MARGIN), (SHEET[0] - MARGIN, SHEET[1] - MARGIN)]
    m.polyline([*frame, (MARGIN, SHEET[1] - MARGIN)], closed=True, layer="FRAME")
    m.text("Lettering", (MARGIN + 6, 182), 10, "SERIF", layer="TEXT", rgb=0x1F4E79)
    draw_sentences(m)
    draw_stroke_fonts(m)
    draw_fan(m, (227, 130))
    draw_places(m, (150, 57))
    m.mtext(NOTE, (MARGIN + 6, 70), 3.5, "SANS", width=112, layer="TEXT")
    return drawing


def draw_sentences(m):
    for i, (language, sentence) in enumerate(SENTENCES):
        y = 170 - 9 * i
        m.text(language, (MARGIN + 6, y), 2.6, "SANS", layer="TEXT", rgb=0x808080)
        m.text(sentence, (MARGIN + 28, y), 2.8, "SANS", layer="TEXT")
        m.line((MARGIN + 6, y - 2.2), (MARGIN + 156, y - 2.2), layer="GUIDE")


def draw_stroke_fonts(m):
    for i, name in enumerate(STROKE_FONTS):
        y = 68 - 8.5 * i
        m.text(f"Stroke font {name} 1:50", (SHEET[0] - MARGIN - 6, y), 4, name.upper(), "right", layer="TEXT")


def draw_fan(m, center):
    """Texts at many angles, in colours around the wheel."""
    for i in range(16):
        angle = 22.5 * i
        direction = (math.cos(math.radians(angle)), math.sin(math.radians(angle)))
        place = (center[0] + 12 * direction[0], center[1] + 12 * direction[1])
        colour = sum(round(127 + 110 * math.cos(math.radians(angle - turn))) << shift
                     for turn, shift in ((0, 16), (120, 8), (240, 0)))
        m.text(f"rotated {angle:g}\u00b0", place, 4, "SANS", line="middle", rotation=angle, layer="TEXT", rgb=colour)
    m.circle(center, 10, layer="GUIDE")


def draw_places(m, at):
    """Width factors, slants and mirrored text."""
    for i, (text, look) in enumerate((
        ("narrow 0.6", {"width": 0.6}),
        ("wide 1.5", {"width": 1.5}),
        ("oblique 20\u00b0", {"oblique": 20.0}),
    )):
        m.text(text, (at[0], at[1] - 10 * i), 5, "SANS", layer="TEXT", **look)
