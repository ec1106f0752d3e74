"""Random but meaningful plot traces: short runs of calls over few points, pens and clips, so these meet."""

from __future__ import annotations

import base64
import random
from typing import Any, Callable

Line = dict[str, Any]
Point = list[float]

# Where points fall apart from their places: the near sides of the tolerance and of half dots.
OFFSETS = [0, 0, 0, 0, 0, 1e-6, -9e-6, 2e-5, 0.25, 0.3, -0.3, 0.4999, 0.5, -0.5, 0.75]
FAR_VALUES = [-1e6, 123456.789, 1e7, -3e9, 1e39, -1e300]
# At 254 dots per inch the printable height is whole, so that halves of the trace stay halves.
RESOLUTIONS = [72, 97, 150, 254, 254, 254, 300, 360, 600, 600, 1200, 2400, 32767, 1, 0, -3]
CUSTOM_SIZES = [(1000, 500.5), (9140, 12000), (254, 254), (3000, 100)]
ALPHAS = [0, 1, 100, 128, 128, 254, 255, 255, 255, 256, 300]
FILL_MODES = [0, 1, 1, 2, 2, 3]
LINE_STYLES = [0, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 7, 8]
BACKGROUNDS = [0xFFFFFFFF, 0, 0xFFFFFF, 0x0000FF, 0x8000FF, 0x010203, 0x01000000]
COLORS = [[0, 0, 0], [255, 255, 255], [255, 0, 0], [0, 128, 255], [1, 2, 3], [51, 102, 254]]

FACES = ["DejaVu Sans", "DejaVu Serif", "DejaVu Sans Mono", "Liberation Sans", "Liberation Serif", "Symbol"]
FACES += ["WenQuanYi Zen Hei Mono", "文泉驿正黑", "Wingdings", "No Such Face", ""]
WORDS = ["Plan", "M 1:50", "Ø 12±0.1", "level +3.00", "Ελληνικά", "Кириллица 7", "קומה", "מבט א", "مقطع"]
WORDS += ["ب 12", "平面图", "比例 1:100", "שלום עולם", "\ufe8d\ufb56", " ", "(", "\uf06c\uf0fc", "\xa0-\xad;\u037e"]
# Such as no font has.
WORDS += ["\t", "\x7f", "\U0001d400"]


LAYERS = ["walls", "Walls", "doors", "Türen", "墙", "\uff21", "\U0001d400", "Œ (1)", "a\tb", "", "0"]
TARGETS = ["https://example.org/a?b=(c)", "www.example.org", "wWw.example", "www/x", "C:\\plans\\a b.pdf"]
TARGETS += ["c:", "x:y", "", "mailto:a@example.org", "plan é 平面图 \U0001d400", "1:50", "www"]
COMMENTS = ["words", "Ø 12±0.1", "平面图 \U0001d400", "two\nlines\tand (more)", "Œuvre — €", ""]


class TraceGenerator:
    """Makes one trace from one seed."""

    def __init__(self, seed: int) -> None:
        self._random = random.Random(seed)
        choose = self._random
        self._whole = choose.random() < 0.5
        self._places = [[choose.randint(0, 12) * 10, choose.randint(0, 12) * 10] for _ in range(7)]
        self._pens = [self._new_pen() for _ in range(3)]
        self._clips = [self._new_clip() for _ in range(3)]
        self._brushes = choose.sample(COLORS, 2)
        self._fonts = [self._new_font() for _ in range(2)]
        self._layers = choose.sample(LAYERS, 3)
        self._images = [self._new_image() for _ in range(2)]

    def lines(self) -> list[Line]:
        """The lines of the trace: the job, then pages with calls between and around them."""
        lines: list[Line] = []
        if self._random.random() < 0.85:
            lines.append({"job": self._job()})
        if self._random.random() < 0.15:
            lines += self._calls(4)
        for _ in range(self._random.choice([1, 1, 2, 3])):
            lines.append(self._start_page())
            lines += self._calls(self._random.randint(3, 40))
            if self._random.random() < 0.95:
                lines.append({"call": "DevEndPage"})
            if self._random.random() < 0.15:
                lines += self._calls(4)
        return lines

    def _calls(self, count: int) -> list[Line]:
        lines: list[Line] = []
        while len(lines) < count:
            maker = self._random.choices(MAKERS, WEIGHTS)[0]
            made = maker(self)
            lines += made if isinstance(made, list) else [made]
        return lines

    # Settings and pages.

    def _job(self) -> Line:
        job: Line = {"docName": "random.dwg", "devMode": self._job_settings()}
        if self._random.random() < 0.5:
            width, height = self._random.choice(CUSTOM_SIZES)
            sides = ("left", "right", "top", "bottom")
            margins = {side: self._random.choice([0, 10, 25.9, 127]) for side in sides}
            job["customPaper"] = {"name": "Custom", "width": width, "height": height, **margins}
        if self._random.random() < 0.3:
            job["lineScale"] = self._random.choice([2.5, 0.01, -1, 25.4])
        return job

    def _job_settings(self) -> dict[str, int]:
        settings = {"dmPrintQuality": self._random.choice(RESOLUTIONS)}
        if self._random.random() < 0.3:
            settings["keepFractions"] = 1
        if self._random.random() < 0.3:
            settings["backgroundColor"] = self._random.choice(BACKGROUNDS)
        if self._random.random() < 0.2:
            settings["dmOrientation"] = 2
        if self._random.random() < 0.05:
            settings["textAsGeometry"] = 1
        if self._random.random() < 0.1:
            settings["dmPaperSize"] = self._random.choice([0, 12345])
        if self._random.random() < 0.1:
            settings[self._random.choice(["layersEnabled", "linksEnabled"])] = 0
        return settings

    def _start_page(self) -> Line:
        line: Line = {"call": "DevStartPage"}
        if self._random.random() < 0.35:
            choices = {
                "dmOrientation": self._random.choice([1, 2]),
                "dmPrintQuality": self._random.choice(RESOLUTIONS),
                "keepFractions": self._random.choice([0, 1]),
                "backgroundColor": self._random.choice(BACKGROUNDS),
                "dmPaperSize": self._random.choice([9, 9, 0]),
                "marginLeft": self._random.choice([0, 51]),
                "layersEnabled": self._random.choice([0, 1]),
                "linksEnabled": self._random.choice([0, 1]),
            }
            chosen = self._random.sample(sorted(choices), self._random.randint(0, 2))
            line["devMode"] = {name: choices[name] for name in chosen}
        return line

    # Points.

    def _point(self) -> Point:
        x, y = self._random.choice(self._places)
        if self._random.random() < 0.01:
            x = self._random.choice(FAR_VALUES)
        if self._whole:
            return [x, y]
        return [round(value + self._random.choice(OFFSETS), 6) for value in (x, y)]

    def _points(self, least: int, most: int) -> list[Point]:
        points = [self._point() for _ in range(self._random.randint(least, most))]
        if len(points) > 2 and self._random.random() < 0.2:
            points[-1] = list(points[0])
        return points

    def _rectangle(self) -> list[Point]:
        """An upright rectangle or one that just misses being one."""
        (left, top), (right, bottom) = self._random.sample(self._places, 2)
        if not self._whole:
            left += self._random.choice([0, 0.1])
            right += self._random.choice([0, 0.3, 1000.3])
        corners = [[left, top], [right, top], [right, bottom], [left, bottom], [left, top]]
        flaw = self._random.random()
        if flaw < 0.4:
            corners.pop()
        elif flaw < 0.55:
            corners[self._random.randrange(5)][self._random.randrange(2)] += self._random.choice([1, 0.25])
        elif flaw < 0.65:
            corners[1], corners[2] = corners[2], corners[1]
        return [list(corner) for corner in corners]

    # Geometry.

    def _polyline(self) -> Line:
        most = self._random.choice([1, 2, 3, 6])
        return {"call": "DevPolyline", "points": self._points(0 if most == 1 else 1, most)}

    def _polyline_rectangle(self) -> Line:
        return {"call": "DevPolyline", "points": self._rectangle()}

    def _polygon(self) -> list[Line]:
        points = self._rectangle() if self._random.random() < 0.5 else self._points(1, 6)
        lines: list[Line] = [{"call": "DevPolygon", "points": points}]
        if self._random.random() < 0.8:
            lines.append(self._fill())
        return lines

    def _poly_polygon(self) -> Line:
        polygons = []
        for _ in range(self._random.randint(0, 3)):
            polygons.append(self._rectangle() if self._random.random() < 0.5 else self._points(0, 5))
        return {"call": "DevPolyPolygon", "polygons": polygons}

    def _bezier(self) -> Line:
        count = self._random.choice([0, 1, 3, 4, 4, 4, 5, 7, 8, 10])
        points = [self._point() for _ in range(count)]
        if self._random.random() < 0.1:
            points = [list(points[0]) for _ in points]
        return {"call": "DevPolyBezier", "points": points}

    def _fill(self) -> Line:
        return {"call": self._random.choice(["DevFillPath", "DevStrokeFillPath"])}

    def _path(self) -> list[Line]:
        """The host's way to fill: a path between its brackets, then the paint."""
        lines: list[Line] = [{"call": "DevBeginPath"}]
        for _ in range(self._random.randint(1, 3)):
            lines.append(self._random.choice([self._polyline, self._bezier, self._polyline_rectangle])())
        return lines + [{"call": "DevEndPath"}, self._fill()]

    def _bracket(self) -> Line:
        return {"call": self._random.choice(["DevBeginPath", "DevEndPath"])}

    def _new_clip(self) -> list[list[Point]]:
        if self._random.random() < 0.3:
            return [self._points(0, 5) for _ in range(self._random.randint(1, 3))]
        return [self._rectangle() for _ in range(self._random.randint(1, 2))]

    def _clip(self) -> Line:
        chance = self._random.random()
        if chance < 0.1:
            return {"call": "DevSetClip", "polygons": self._random.choice([None, []])}
        if chance < 0.25:
            return {"call": "DevSetClip", "polygons": [self._points(0, 1)]}
        if chance < 0.35:
            return {"call": "DevSetClip", "polygons": self._new_clip(), "apply": 0}
        return {"call": "DevSetClip", "polygons": self._random.choice(self._clips)}

    # State.

    def _new_pen(self) -> Line:
        choose = self._random
        line_style = choose.choice(LINE_STYLES)
        style = (
            choose.choice([0, 0x10000, 0x10000, 0x10000])
            + choose.choice([0, 0x1000, 0x2000])
            + choose.choice([0, 0x100, 0x200])
            + line_style
        )
        width = choose.choice([0, 1, 2, 2, 7, 25, 16777217])
        pen: Line = {"call": "DevSetPen", "style": style, "width": width, "color": choose.choice(COLORS)}
        if line_style == 7 or choose.random() < 0.1:
            pen["entries"] = [choose.choice([0, 1, 10, 24, 300, 98765]) for _ in range(choose.randint(0, 4))]
        return pen

    def _pen(self) -> Line:
        return dict(self._random.choice(self._pens))

    def _brush(self) -> Line:
        return {"call": "DevSetBrush", "color": self._random.choice(self._brushes)}

    def _alpha(self) -> Line:
        return {"call": "DevSetAlpha", "alpha": self._random.choice(ALPHAS)}

    def _raster_op(self) -> list[Line]:
        lines: list[Line] = [{"call": "DevSetRasterOp", "code": self._random.choice([9, 9, 13])}]
        if self._random.random() < 0.7:
            lines.append(self._random.choice([self._pen, self._brush])())
        return lines

    def _fill_mode(self) -> Line:
        return {"call": "DevSetFillMode", "mode": self._random.choice(FILL_MODES)}

    # Text.

    def _new_font(self) -> Line:
        choose = self._random
        font: Line = {"lfHeight": -20, "lfFaceName": choose.choice(FACES)}
        font["lfEscapement"] = choose.choice([0, 0, 0, 300, 900, 1800, -450, 3601])
        if choose.random() < 0.3:
            font["lfWeight"] = choose.choice([200, 400, 700, 900])
        if choose.random() < 0.3:
            font["lfItalic"] = 1
        return font

    def _text(self) -> Line:
        choose = self._random
        text = "".join(choose.choice(WORDS) for _ in range(choose.choice([0, 1, 1, 2, 3])))
        count = len(text.encode("utf-16-le")) // 2
        advances = [choose.choice([0, 6, 12.5, 1e-3, 7.1]) for _ in range(count)]
        return {
            "call": "DevText",
            "font": dict(choose.choice(self._fonts)),
            "position": self._point(),
            "text": text,
            "advances": choose.choice([None, advances, advances]),
            "textHeight": choose.choice([20, 12.3456, 0.7, 150]),
            "obliqueAngle": choose.choice([0, 0, 0, 0.2617993877991494, -0.5]),
            "trackingFactor": choose.choice([1, 1, 1, 1.000001, 1.2, 0.75]),
            "widthFactor": choose.choice([1, 1, 0.8, 1.5, 0.333]),
        }

    # Images, links, layers and comments.

    def _new_image(self) -> Line:
        choose = self._random
        bits = choose.choice([1, 1, 8, 8, 24, 32, 32])
        width, height = choose.choice([1, 2, 5, 33]), choose.randint(1, 3)
        count = (width * bits + 31) // 32 * 4 * height
        pixels = bytes(choose.choice([0, 1, 2, 0x55, 0xFE, 0xFF]) for _ in range(count))
        if bits == 32:
            # JPEGs keep the colour of what is nearly of one colour.
            color = bytes(choose.choice([0, 60, 128, 255]) for _ in range(3))
            pixels = b"".join(color + fourth.to_bytes(1, "little") for fourth in pixels[::4])
        image: Line = {"width": width, "height": choose.choice([1, -1]) * height, "bitCount": bits}
        if choose.random() < 0.3:
            image["hasAlpha"] = True
        if bits <= 8:
            white, black = [255, 255, 255, 255], [0, 0, 0, choose.choice([255, 255, 255, 0])]
            mixed = [[1, 2, 3, 100], white, [9, 8, 7, 1]][: 2 if bits == 1 else 3]
            image["palette"] = choose.choice([[black, white], [white, black], mixed])
        return image | {"pixels": base64.b64encode(pixels).decode()}

    def _bitmap(self) -> Line:
        x, y = self._random.choice(self._places)
        scales = [self._random.choice([1, 1, 2.5, 40, 0.37, -3, 0.001]) for _ in range(2)]
        place = {"originX": x + 0.3, "originY": y, "scaleX": scales[0], "scaleY": scales[1]}
        return {"call": "DevBitmap", "image": self._random.choice(self._images), **place}

    def _link(self) -> list[Line]:
        """The start of a link, and mostly its end behind some calls."""
        lines: list[Line] = [{"call": "DevBeginLink", "target": self._random.choice(TARGETS)}]
        if self._random.random() < 0.8:
            lines += [*self._calls(self._random.randint(0, 3)), {"call": "DevEndLink"}]
        return lines

    def _layer(self) -> Line:
        return {"call": "DevSetLayer", "name": self._random.choice(self._layers)}

    def _comment(self) -> Line:
        rect = [self._random.randint(-20, 130) for _ in range(4)]
        flags = self._random.choice([0, 4, 66, 0x80000004])
        return {"call": "DevShxComment", "text": self._random.choice(COMMENTS), "rect": rect, "flags": flags}

    def _line_scale(self) -> Line:
        return {"call": "DevSetLineScale", "scale": self._random.choice([1, 0.5, 1000])}

    def _query(self) -> Line:
        index = self._random.choice([4, 6, 8, 10, 88, 90, 110, 111, 112, 113, self._random.randint(-2, 200)])
        return {"call": "DevGetCaps", "index": index}


MAKERS: list[Callable[[TraceGenerator], Line | list[Line]]] = [
    TraceGenerator._polyline,
    TraceGenerator._polyline_rectangle,
    TraceGenerator._polygon,
    TraceGenerator._poly_polygon,
    TraceGenerator._bezier,
    TraceGenerator._fill,
    TraceGenerator._path,
    TraceGenerator._bracket,
    TraceGenerator._clip,
    TraceGenerator._pen,
    TraceGenerator._brush,
    TraceGenerator._alpha,
    TraceGenerator._raster_op,
    TraceGenerator._fill_mode,
    TraceGenerator._query,
    TraceGenerator._text,
    TraceGenerator._bitmap,
    TraceGenerator._link,
    TraceGenerator._layer,
    TraceGenerator._comment,
    TraceGenerator._line_scale,
]
WEIGHTS = [30, 4, 8, 4, 7, 5, 5, 5, 11, 10, 4, 5, 4, 3, 1, 10, 6, 5, 9, 3, 1]
