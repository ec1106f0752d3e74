"""Switches layers of a plot off and looks at what Poppler and MuPDF still render.

check_layers.py --hdiplot PATH
"""

from __future__ import annotations

import argparse
import json
import sys
from pathlib import Path

from made_traces import Raster, dots, points, trace_of
from pictures import Picture
from plotting import PlotError, Plotter

# Layers: each draws in a band of the sheet of its own, from the left in this order.
LAYERS = ("walls", "möbel", "raster", "lettering")
BAND = 38.1  # millimetres


def layers_trace() -> str:
    """Layers that are left and come back, with a clip that begins on one and ends on another."""

    def rectangle(left: float, top: float, right: float, bottom: float) -> list[list[float]]:
        return points((left, top), (right, top), (right, bottom), (left, bottom))

    def layer(index: int) -> dict:
        return {"call": "DevSetLayer", "name": LAYERS[index]}

    def line(y: float) -> dict:
        return {"call": "DevPolyline", "points": points((5, y), (33, y))}

    text, height = "MAIN", round(dots(8))
    font = {"lfFaceName": "DejaVu Sans", "lfHeight": -height}
    form = {"textHeight": height, "obliqueAngle": 0, "trackingFactor": 1, "widthFactor": 1}
    place = {"originX": dots(2 * BAND + 5), "originY": dots(20), "scaleX": dots(10), "scaleY": dots(10)}
    return trace_of(
        [
            {"call": "DevSetClip", "polygons": [rectangle(0, 0, 152, 101)]},  # the page's own
            layer(0),
            {"call": "DevSetPen", "style": 65536, "width": 20, "color": [200, 0, 0]},
            line(20),
            {"call": "DevSetClip", "polygons": [rectangle(2, 10, 74, 90)]},
            layer(1),
            {"call": "DevSetBrush", "color": [0, 120, 0]},
            {"call": "DevSetFillMode", "mode": 1},
            {"call": "DevPolygon", "points": rectangle(BAND + 5, 20, BAND + 100, 60)},
            {"call": "DevFillPath"},
            layer(0),
            line(60),
            layer(2),
            {"call": "DevSetClip", "polygons": [rectangle(0, 0, 152, 101)]},
            {"call": "DevBitmap", "image": Raster(2, 2, 8, seed=1).in_trace, **place},
            layer(3),
            {"call": "DevText", "font": font, "position": points((3 * BAND + 3, 40))[0], "text": text}
            | {"advances": [dots(7.5)] * len(text), **form},
            layer(0),
            line(80),
        ]
    )


def bands(picture: Picture) -> list[bytes]:
    """What lies on the band of each layer."""
    width, stride = picture.width // len(LAYERS), 3 * picture.width
    lefts = range(0, 3 * width * len(LAYERS), 3 * width)
    rows = [picture.pixels[start : start + stride] for start in range(0, len(picture.pixels), stride)]
    return [b"".join(row[left : left + 3 * width] for row in rows) for left in lefts]


def switch_off(plotter: Plotter, source: Path, names: set[str]) -> None:
    """Makes the plot a copy of `source` in which these layers, and no others, are off."""
    objects = json.loads(plotter.run("qpdf", "--json=2", "--json-key=qpdf", str(source)))["qpdf"][1]
    values = {name: entry.get("value") for name, entry in objects.items()}
    catalog = next(name for name, value in values.items() if isinstance(value, dict) and "/OCProperties" in value)
    properties = values[catalog]["/OCProperties"]
    groups = {values[f"obj:{group}"]["/Name"].removeprefix("u:"): group for group in properties["/OCGs"]}
    if set(groups) != set(LAYERS):
        raise PlotError(f"the layers are {sorted(groups)}")
    properties["/D"]["/OFF"] = [groups[name] for name in names]
    head = {"jsonversion": 2, "pdfversion": "1.7", "maxobjectid": len(objects)}
    update = plotter.directory / "update.json"
    update.write_text(json.dumps({"qpdf": [head, {catalog: {"value": values[catalog]}}]}), encoding="utf-8")
    plotter.run("qpdf", str(source), f"--update-from-json={update}", str(plotter.pdf))


def check_layers(plotter: Plotter) -> list[str]:
    """A layer that is off takes its objects along and no others."""
    plotter.plot_text(layers_trace(), ".jsonl")
    plotter.check()
    source = plotter.pdf.rename(plotter.directory / "layers.pdf")

    def render(*off: str) -> dict[str, list[bytes]]:
        switch_off(plotter, source, set(off))
        return {name: bands(page(72)) for name, page in (("Poppler", plotter.poppler), ("MuPDF", plotter.mupdf))}

    shown, messages = render(), []
    for off in [(), *((name,) for name in LAYERS), LAYERS]:
        for renderer, found in render(*off).items():
            for name, whole, band in zip(LAYERS, shown[renderer], found, strict=True):
                blank = band.count(255) == len(band)
                if blank != (name in off) or not (blank or band == whole):
                    messages.append(f"{renderer}: without {list(off)}, {name} is not as it should be")
    return messages


def main() -> int:
    """Makes the check; the exit status is 1 when there is a complaint."""
    parser = argparse.ArgumentParser(description="Switch layers off and look at what is left.")
    parser.add_argument("--hdiplot", type=Path, required=True)
    with Plotter(parser.parse_args().hdiplot) as plotter:
        try:
            messages = check_layers(plotter)
        except (PlotError, OSError) as error:
            messages = [str(error)]
    print("\n".join([*messages, f"{len(messages)} complaints"]))
    return 1 if messages else 0


if __name__ == "__main__":
    sys.exit(main())
