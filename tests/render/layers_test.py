"""Switches layers of a plot off and compares what Poppler and MuPDF render."""

from __future__ import annotations

import json
import unittest
from pathlib import Path

from pictures import Picture
from plotting import PlotTestCase

# Each layer of the trace draws in a quarter of the sheet's width, from the left in this order. Two are selected twice,
# and a clip begins on one and ends on another.
TRACE = Path(__file__).resolve().parent / "layers.jsonl"
LAYERS = ("walls", "möbel", "raster", "lettering")


def bands(picture: Picture) -> list[bytes]:
    """The pixels of the quarter of each layer."""
    width, stride = picture.width // len(LAYERS), 3 * picture.width
    lefts = range(0, 3 * width * len(LAYERS), 3 * width)
    rows = [picture.pixels[start : start + stride] for start in range(0, len(picture.pixels), stride)]
    return [b"".join(row[left : left + 3 * width] for row in rows) for left in lefts]


def faults(whole: list[bytes], found: list[bytes], hidden: tuple[str, ...]) -> list[str]:
    """The layers that are hidden but show, or that look different from the whole page."""
    blank = [b"\xff" * len(band) for band in whole]
    wanted = [blank[i] if name in hidden else whole[i] for i, name in enumerate(LAYERS)]
    return [name for i, name in enumerate(LAYERS) if found[i] != wanted[i] or whole[i] == blank[i]]


class LayersTest(PlotTestCase):
    """A layer that is off hides its own objects only."""

    def test_layers_switch(self) -> None:
        """One layer off at a time, then all."""
        self.plotter.plot(TRACE)
        self.plotter.check()
        source = self.plotter.pdf.rename(self.plotter.directory / "layers.pdf")
        shown: dict[str, list[bytes]] = {}
        for hidden in [(), *((name,) for name in LAYERS), LAYERS]:
            self.switch_off(source, hidden)
            for renderer, render in (("Poppler", self.plotter.poppler), ("MuPDF", self.plotter.mupdf)):
                found = bands(render(72))
                whole = shown.setdefault(renderer, found)
                self.assertEqual(faults(whole, found, hidden), [], f"{renderer}, without {hidden}")

    def switch_off(self, source: Path, names: tuple[str, ...]) -> None:
        """Writes the plot as a copy of `source` with only these layers off."""
        plotter = self.plotter
        objects = json.loads(plotter.run("qpdf", "--json=2", "--json-key=qpdf", str(source)))["qpdf"][1]
        values = {name: entry.get("value") for name, entry in objects.items()}
        catalog = values["trailer"]["/Root"]
        properties = values[f"obj:{catalog}"]["/OCProperties"]
        groups = {values[f"obj:{group}"]["/Name"].removeprefix("u:"): group for group in properties["/OCGs"]}
        self.assertEqual(sorted(groups), sorted(LAYERS))
        properties["/D"]["/OFF"] = [groups[name] for name in names]
        head = {"jsonversion": 2, "pdfversion": "1.7", "maxobjectid": len(objects)}
        changed = {f"obj:{catalog}": {"value": values[f"obj:{catalog}"]}}
        update = plotter.directory / "update.json"
        update.write_text(json.dumps({"qpdf": [head, changed]}), encoding="utf-8")
        plotter.run("qpdf", str(source), f"--update-from-json={update}", str(plotter.pdf))


if __name__ == "__main__":
    unittest.main()
