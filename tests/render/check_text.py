"""Plots lettering as text and as outlines, and compares how Poppler and MuPDF render the two.

check_text.py --hdiplot PATH DRAWING...

What draws text are the embedded fonts, with the PDF's widths and matrices; what draws outlines are the host's
own curves from the installed fonts.
"""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from pictures import Tolerance, averages, compare
from plotting import PlotError, Plotter

RESOLUTION = 144
REDUCTION = 3  # pixels to a side of what is compared: renderers hint and smooth text in their own ways
SAME_GLYPHS = Tolerance(block=4, level=32, blocks=4, worst=48, mean=1.0)

# Other fonts in the place of the drawing's, which the comparison must notice.
OTHER_FONTS = "dejavu sans = Liberation Sans\narial.ttf = DejaVu Sans\n"


def check_drawing(plotter: Plotter, drawing: Path) -> list[str]:
    """What is wrong with a drawing's text."""

    def render(*options: str):
        plotter.plot(drawing, *options)
        return [averages(page(RESOLUTION), REDUCTION) for page in (plotter.poppler, plotter.mupdf)]

    fonts = plotter.directory / "other.map"
    fonts.write_text(OTHER_FONTS, encoding="utf-8")
    texts, outlines = render(), render("--text-as-geometry")
    others = render("--text-as-geometry", "--font-map", str(fonts))
    messages = []
    for renderer, text, outline, other in zip(("Poppler", "MuPDF"), texts, outlines, others):
        difference = compare(outline, text, SAME_GLYPHS)
        figures = f"{difference.off} blocks off, {difference.worst} at worst, {difference.mean:.3f} in all"
        print(f"{drawing.name}, {renderer}: {figures}")
        if difference.message:
            messages.append(f"{drawing.name}: {renderer} shows other text than outlines: {difference.message}")
        if not compare(other, text, SAME_GLYPHS).message:
            messages.append(f"{drawing.name}: the comparison does not notice other fonts in {renderer}")
    return messages


def main() -> int:
    """Checks the drawings; the exit status is 1 when there is a complaint."""
    parser = argparse.ArgumentParser(description="Compare text with the same glyphs drawn as outlines.")
    parser.add_argument("--hdiplot", type=Path, required=True)
    parser.add_argument("drawings", type=Path, nargs="+")
    arguments = parser.parse_args()
    messages = []
    with Plotter(arguments.hdiplot) as plotter:
        for drawing in arguments.drawings:
            try:
                messages += check_drawing(plotter, drawing)
            except (PlotError, OSError) as error:
                messages.append(f"{drawing.name}: {error}")
    print("\n".join([*messages, f"{len(arguments.drawings)} drawings, {len(messages)} complaints"]))
    return 1 if messages else 0


if __name__ == "__main__":
    sys.exit(main())
