"""A small writer of ASCII DXF files: what the example drawings need and no more.

Lengths are drawing units (millimetres here), angles are degrees and run counter-clockwise. A vertex of a
polyline is (x, y), (x, y, bulge) or (x, y, bulge, start width, end width). The same calls give the same
bytes.
"""

from __future__ import annotations

import math

from dxf_objects import dictionary, field_link, layout

BY_BLOCK = 0  # as a colour
BY_BLOCK_WEIGHT = -2


def real(value: float) -> str:
    """A number to a hundredth of a micrometre, without trailing zeros."""
    text = f"{value:.5f}".rstrip("0")
    text = text + "0" if text.endswith(".") else text
    return "0.0" if text == "-0.0" else text


def point(code: int, p, z: float = 0.0) -> list:
    return [(code, float(p[0])), (code + 10, float(p[1])), (code + 20, z)]


def flat_point(code: int, p) -> list:
    return [(code, float(p[0])), (code + 10, float(p[1]))]


def escaped(text: str) -> str:
    """What is beyond ASCII as \\U+XXXX, which a DXF of any version and code page may hold."""
    return "".join(unit if ord(unit) < 128 else f"\\U+{ord(unit):04X}" for unit in text)


class Entities:
    """A list of entities: the model space or the content of a block. Each method adds one entity.

    Keywords that every method takes: `layer` (default: what `self.layer` says), `color` (index), `rgb`
    (0xRRGGBB), `ltype`, `lts` (line type scale), `lw` (line weight in hundredths of a millimetre), `opacity` (0
    to 1), `link` (the target of a hyperlink) and `field` (the target of one that is a field of a text).
    """

    def __init__(self, layer: str = "0"):
        self.layer = layer
        self.items = []

    def add(
        self,
        kind: str,
        groups: list,
        layer=None,
        color=None,
        rgb=None,
        ltype=None,
        lts=None,
        lw=None,
        opacity=None,
        link=None,
        field=None,
    ):
        common = [(8, layer or self.layer)]
        alpha = None if opacity is None else 0x02000000 | round(255 * opacity)
        for code, value in ((6, ltype), (62, color), (48, lts), (370, lw), (420, rgb), (440, alpha)):
            if value is not None:
                common.append((code, value))
        if link is not None:
            groups = groups + [(1001, "PE_URL"), (1000, link)]
        self.items.append((kind, common, groups, field))

    def line(self, a, b, **style):
        self.add("LINE", [(100, "AcDbLine")] + point(10, a) + point(11, b), **style)

    def point(self, p, **style):
        self.add("POINT", [(100, "AcDbPoint")] + point(10, p), **style)

    def circle(self, center, radius, **style):
        self.add("CIRCLE", [(100, "AcDbCircle")] + point(10, center) + [(40, float(radius))], **style)

    def arc(self, center, radius, start, end, **style):
        groups = [(100, "AcDbCircle")] + point(10, center) + [(40, float(radius)), (100, "AcDbArc")]
        self.add("ARC", groups + [(50, start % 360.0), (51, end % 360.0)], **style)

    def ellipse(self, center, major, ratio, start=0.0, end=360.0, **style):
        groups = [(100, "AcDbEllipse")] + point(10, center) + point(11, major)
        groups += point(210, (0, 0), 1.0)
        groups += [(40, float(ratio)), (41, math.radians(start)), (42, math.radians(end))]
        self.add("ELLIPSE", groups, **style)

    def polyline(self, vertices, closed=False, width=0.0, **style):
        groups = [(100, "AcDbPolyline"), (90, len(vertices)), (70, 1 if closed else 0)]
        if width:
            groups.append((43, float(width)))
        for vertex in vertices:
            groups += flat_point(10, vertex)
            if len(vertex) == 5:
                groups += [(40, float(vertex[3])), (41, float(vertex[4]))]
            if len(vertex) > 2 and vertex[2]:
                groups.append((42, float(vertex[2])))
        self.add("LWPOLYLINE", groups, **style)

    def solid(self, corners, **style):
        """Three or four corners in order around the area."""
        a, b, c = corners[:3]
        d = corners[3] if len(corners) == 4 else c
        third, fourth = (d, c) if len(corners) == 4 else (c, c)  # the file has them in a Z
        groups = point(10, a) + point(11, b) + point(12, third) + point(13, fourth)
        self.add("SOLID", [(100, "AcDbTrace")] + groups, **style)

    def spline(self, controls, closed=False, **style):
        """A cubic B-spline; open ones start and end in their first and last control point."""
        controls, knots = cubic_knots(controls, closed)
        groups = [(100, "AcDbSpline")] + point(210, (0, 0), 1.0)
        groups += [(70, 11 if closed else 8), (71, 3), (72, len(knots)), (73, len(controls)), (74, 0)]
        groups += [(42, 1e-5), (43, 1e-5)] + [(40, knot) for knot in knots]
        for p in controls:
            groups += point(10, p)
        self.add("SPLINE", groups, **style)

    def hatch(self, loops, pattern=None, gradient=None, **style):
        """Fills between `loops`, the first the outermost. `pattern` is None for a solid fill, or
        (name, [(angle, base, offset, dashes), ...]). `gradient` is (name, angle, first colour, last colour)."""
        name, families = pattern or ("SOLID", [])
        groups = [(100, "AcDbHatch")] + point(10, (0, 0)) + point(210, (0, 0), 1.0)
        groups += [(2, name), (70, 0 if families else 1), (71, 0), (91, len(loops))]
        for i, loop in enumerate(loops):
            groups += (
                loop.groups(outermost=i == 0) if isinstance(loop, SplineLoop) else polyline_loop(loop, i == 0)
            )
        groups += [(75, 0), (76, 1 if name in ("SOLID", "ANSI31") else 2)]
        if families:
            groups += [(52, 0.0), (41, 1.0), (77, 0), (78, len(families))]
        for angle, base, offset, dashes in families:
            groups += [(53, float(angle)), (43, float(base[0])), (44, float(base[1]))]
            groups += [(45, float(offset[0])), (46, float(offset[1])), (79, len(dashes))]
            groups += [(49, float(dash)) for dash in dashes]
        groups.append((98, 0))
        if gradient:
            form, angle, first, last = gradient
            groups += [(450, 1), (451, 0), (460, math.radians(angle)), (461, 0.0), (452, 0), (462, 0.0), (453, 2)]
            groups += [(463, 0.0), (421, first), (463, 1.0), (421, last), (470, form)]
        self.add("HATCH", groups, **style)

    def insert(
        self, block, at, scale=(1.0, 1.0), rotation=0.0, columns=1, rows=1, spacing=(0.0, 0.0), **style
    ):
        array = columns > 1 or rows > 1
        groups = [(100, "AcDbMInsertBlock" if array else "AcDbBlockReference"), (2, block)] + point(10, at)
        groups += [(41, float(scale[0])), (42, float(scale[1])), (43, 1.0), (50, float(rotation))]
        if array:
            groups += [(70, columns), (71, rows), (44, float(spacing[0])), (45, float(spacing[1]))]
        self.add("INSERT", groups, **style)

    def dimension(self, block, kind, definition, text_at, measured, groups, **style):
        """`kind` is group 70's type without flags; `groups` is the subclass's part."""
        head = [(100, "AcDbDimension"), (2, block)] + point(10, definition) + point(11, text_at)
        head += [(70, kind | 32), (71, 5), (42, float(measured)), (3, "STANDARD")]
        self.add("DIMENSION", head + groups, **style)


    def text(self, text, at, height, style, align="left", line="base", rotation=0.0, width=1.0, oblique=0.0, **look):
        """`align` is left, center or right; `line`, which lies on `at`, is base, bottom, middle or top."""
        horizontal = ("left", "center", "right").index(align)
        vertical = ("base", "bottom", "middle", "top").index(line)
        groups = [(100, "AcDbText")] + point(10, at) + [(40, float(height)), (1, text), (50, float(rotation))]
        groups += [(41, float(width)), (51, float(oblique)), (7, style), (72, horizontal)]
        if horizontal or vertical:
            groups += point(11, at)
        self.add("TEXT", groups + [(100, "AcDbText"), (73, vertical)], **look)

    def mtext(self, text, at, height, style, width=0.0, attachment=1, rotation=0.0, **look):
        """`text` may hold formatting codes; `attachment` counts from 1, top left, to 9, bottom right."""
        groups = [(100, "AcDbMText")] + point(10, at) + [(40, float(height)), (41, float(width))]
        groups += [(71, attachment), (72, 1)]
        chunks = [text[i : i + 250] for i in range(0, len(text), 250)]
        groups += [(3, chunk) for chunk in chunks[:-1]] + [(1, chunks[-1])]
        self.add("MTEXT", groups + [(7, style), (50, float(rotation))], **look)


    def image(self, definition, at, width, **style):
        """`definition` comes from the drawing's `image`; `at` is the lower left corner."""
        handle, (columns, rows) = definition
        pixel = width / columns
        groups = [(100, "AcDbRasterImage"), (90, 0)] + point(10, at)
        groups += point(11, (pixel, 0)) + point(12, (0, pixel)) + [(13, float(columns)), (23, float(rows))]
        groups += [(340, handle), (70, 7), (280, 1), (281, 50), (282, 50), (283, 0), (71, 1), (91, 2)]
        corners = flat_point(14, (-0.5, -0.5)) + flat_point(14, (columns - 0.5, rows - 0.5))
        self.add("IMAGE", groups + corners, **style)

    def wipeout(self, corner, size, **style):
        """Hides what has been drawn in a rectangle."""
        groups = [(100, "AcDbWipeout"), (90, 0)] + point(10, corner)
        groups += point(11, (size[0], 0)) + point(12, (0, size[1])) + [(13, 1.0), (23, 1.0), (340, "0")]
        groups += [(70, 7), (280, 1), (281, 50), (282, 50), (283, 0), (71, 1), (91, 2)]
        self.add("WIPEOUT", groups + flat_point(14, (-0.5, -0.5)) + flat_point(14, (0.5, 0.5)), **style)


    def viewport(self, center, size, view_center, scale, number=2, frozen=(), **style):
        """Shows the model on a sheet, but for the layers `frozen`; the sheet itself has the number 1."""
        groups = [(100, "AcDbViewport")] + point(10, center) + [(40, float(size[0])), (41, float(size[1]))]
        groups += [(68, number), (69, number)] + flat_point(12, view_center) + flat_point(13, (0, 0))
        groups += flat_point(14, (10, 10)) + flat_point(15, (10, 10)) + point(16, (0, 0), 1.0)
        groups += point(17, (0, 0)) + [(42, 50.0), (43, 0.0), (44, 0.0), (45, size[1] / scale), (50, 0.0), (51, 0.0)]
        groups += [(72, 100)] + [(331, name) for name in frozen] + [(90, 32864)]
        self.add("VIEWPORT", groups, **style)


class SplineLoop:
    """A hatch boundary of one closed cubic B-spline."""

    def __init__(self, controls):
        self.controls, self.knots = cubic_knots(controls, closed=True)

    def groups(self, outermost):
        groups = [(92, 1 if outermost else 16), (93, 1), (72, 4), (94, 3), (73, 0), (74, 1)]
        groups += [(95, len(self.knots)), (96, len(self.controls))] + [(40, knot) for knot in self.knots]
        for p in self.controls:
            groups += flat_point(10, p)
        return groups + [(97, 0)]


def polyline_loop(vertices, outermost):
    has_bulge = any(len(vertex) > 2 and vertex[2] for vertex in vertices)
    groups = [(92, 3 if outermost else 18), (72, int(has_bulge)), (73, 1), (93, len(vertices))]
    for vertex in vertices:
        groups += flat_point(10, vertex)
        if has_bulge:
            groups.append((42, float(vertex[2]) if len(vertex) > 2 else 0.0))
    return groups + [(97, 0)]


def cubic_knots(controls, closed):
    controls = list(controls)
    if closed:
        controls += controls[:3]
        return controls, [float(i) for i in range(len(controls) + 4)]
    inner = len(controls) - 4
    return controls, [0.0] * 4 + [float(i + 1) for i in range(inner)] + [float(inner + 1)] * 4


class Drawing:
    """Tables, blocks and model space. `version` AC1018 is needed for true colours."""

    def __init__(self, size, version="AC1015", line_type_scale=1.0, point_mode=0, point_size=0.0):
        self.size = size
        self.version = version
        self.header = {
            "$LTSCALE": (40, line_type_scale),
            "$PDMODE": (70, point_mode),
            "$PDSIZE": (40, point_size),
        }
        self.line_types = [("ByBlock", "", []), ("ByLayer", "", []), ("Continuous", "Solid line", [])]
        self.layers = []
        self.styles = [("Standard", "txt", "")]
        self.images = []
        self.blocks = {}
        self.model = Entities()
        self.paper = Entities()
        self.sheet_name = None
        self.layer_handles = {}
        self.fields = []
        self.layer("0", 7)
        self.last_handle = 0

    def line_type(self, name, description, dashes):
        self.line_types.append((name, description, dashes))

    def layer(self, name, color, ltype="Continuous", lw=25, rgb=None, frozen=False, off=False, plots=True):
        self.layers.append((name, color, ltype, lw, rgb, frozen, off, plots))

    def style(self, name, file, family=""):
        """A text style: a stroke font (.shx) or a TrueType file, by its family where that is given."""
        self.styles.append((name, file, family))

    def image(self, file, size):
        """An image file beside the drawing, of `size` pixels, for `Entities.image`."""
        self.images.append((f"F{len(self.images):02X}", file, size))
        return self.images[-1][0], size

    def sheet(self, name):
        """Gives the drawing a layout, as large as itself; what it returns is to hold its entities."""
        width, height = self.size
        self.sheet_name = name
        self.paper.viewport((width / 2, height / 2), self.size, (width / 2, height / 2), 1, number=1)
        return self.paper

    def block(self, name, layer="0"):
        self.blocks[name] = Entities(layer)
        return self.blocks[name]

    def anonymous_block(self, layer="0"):
        name = f"*D{sum(block.startswith('*D') for block in self.blocks) + 1}"
        return name, self.block(name, layer)

    def save(self, path):
        self.last_handle = 0x20
        self.records = {name: self.handle() for name in ["*Model_Space", "*Paper_Space", *self.blocks]}
        body = self.tables() + self.block_section() + self.entity_section() + self.objects()
        groups = self.header_section() + body + [(0, "EOF")]
        lines = []
        for code, value in groups:
            lines.append(f"{code:>3}\n{real(value) if isinstance(value, float) else value}\n")
        with open(path, "w", encoding="ascii", newline="\n") as file:
            file.write(escaped("".join(lines)))

    def handle(self):
        self.last_handle += 1
        return f"{self.last_handle:X}"

    def header_section(self):
        width, height = self.size
        variables = {
            "$ACADVER": [(1, self.version)],
            "$DWGCODEPAGE": [(3, "ANSI_1252")],
            "$INSBASE": point(10, (0, 0)),
            "$EXTMIN": point(10, (0, 0)),
            "$EXTMAX": point(10, (width, height)),
            "$LIMMIN": flat_point(10, (0, 0)),
            "$LIMMAX": flat_point(10, (width, height)),
            "$INSUNITS": [(70, 4)],
            "$MEASUREMENT": [(70, 1)],
            "$LWDISPLAY": [(290, 1)],
            "$HANDSEED": [(5, f"{self.last_handle + 1:X}")],
        }
        variables.update({name: [group] for name, group in self.header.items()})
        groups = [(0, "SECTION"), (2, "HEADER")]
        for name, value in variables.items():
            groups += [(9, name)] + value
        return groups + [(0, "ENDSEC")]

    def table(self, name, entries):
        """`entries` are (type, subclass, groups)."""
        owner = self.handle()
        groups = [
            (0, "TABLE"),
            (2, name),
            (5, owner),
            (330, "0"),
            (100, "AcDbSymbolTable"),
            (70, len(entries)),
        ]
        if name == "DIMSTYLE":
            groups.append((100, "AcDbDimStyleTable"))
        for subclass, handle, content in entries:
            code = 105 if name == "DIMSTYLE" else 5
            handle = handle or self.handle()
            if name == "LAYER":
                self.layer_handles[content[0][1]] = handle
            groups += [(0, name), (code, handle), (330, owner)]
            groups += [(100, "AcDbSymbolTableRecord"), (100, subclass)] + content
        return groups + [(0, "ENDTAB")]

    def tables(self):
        width, height = self.size
        viewport = [(2, "*Active"), (70, 0)] + flat_point(10, (0, 0)) + flat_point(11, (1, 1))
        viewport += (
            flat_point(12, (width / 2, height / 2)) + flat_point(13, (0, 0)) + flat_point(14, (10, 10))
        )
        viewport += flat_point(15, (10, 10)) + point(16, (0, 0), 1.0) + point(17, (0, 0))
        viewport += [(40, height * 1.05), (41, 1.6), (42, 50.0), (43, 0.0), (44, 0.0), (50, 0.0), (51, 0.0)]
        viewport += [(71, 0), (72, 1000), (73, 1), (74, 3), (75, 0), (76, 0), (77, 0), (78, 0)]
        records = [("AcDbBlockTableRecord", handle, [(2, name)]) for name, handle in self.records.items()]
        groups = [(0, "SECTION"), (2, "TABLES")]
        groups += self.table("VPORT", [("AcDbViewportTableRecord", None, viewport)])
        groups += self.table(
            "LTYPE", [("AcDbLinetypeTableRecord", None, line_type(*t)) for t in self.line_types]
        )
        groups += self.table(
            "LAYER", [("AcDbLayerTableRecord", None, layer(*entry)) for entry in self.layers]
        )
        groups += self.table(
            "STYLE", [("AcDbTextStyleTableRecord", None, text_style(*entry)) for entry in self.styles]
        )
        groups += self.table("VIEW", []) + self.table("UCS", [])
        groups += self.table("APPID", [
                ("AcDbRegAppTableRecord", None, [(2, name), (70, 0)]) for name in ("ACAD", "PE_URL")
            ])
        groups += self.table("DIMSTYLE", [("AcDbDimStyleTableRecord", None, [(2, "STANDARD"), (70, 0)])])
        return groups + self.table("BLOCK_RECORD", records) + [(0, "ENDSEC")]

    def entity_groups(self, entities, owner):
        groups = []
        for kind, common, own, field in entities.items:
            handle = self.handle()
            groups += [(0, kind), (5, handle)]
            if field:
                extension = self.handle()
                self.fields.append((extension, handle, field))
                groups += [(102, "{ACAD_XDICTIONARY"), (360, extension), (102, "}")]
            groups += [(330, owner), (100, "AcDbEntity")] + ([(67, 1)] if entities is self.paper else [])
            if kind == "VIEWPORT":
                own = [(code, self.layer_handles[value] if code == 331 else value) for code, value in own]
            groups += common + own
        return groups

    def block_section(self):
        groups = [(0, "SECTION"), (2, "BLOCKS")]
        for name, owner in self.records.items():
            content = self.blocks.get(name, Entities())
            head = [(0, "BLOCK"), (5, self.handle()), (330, owner), (100, "AcDbEntity"), (8, "0")]
            head += [(100, "AcDbBlockBegin"), (2, name), (70, 1 if name.startswith("*D") else 0)]
            groups += head + point(10, (0, 0)) + [(3, name), (1, "")] + self.entity_groups(content, owner)
            groups += [(0, "ENDBLK"), (5, self.handle()), (330, owner), (100, "AcDbEntity"), (8, "0")]
            groups.append((100, "AcDbBlockEnd"))
        return groups + [(0, "ENDSEC")]

    def entity_section(self):
        entities = self.entity_groups(self.model, self.records["*Model_Space"])
        entities += self.entity_groups(self.paper, self.records["*Paper_Space"])
        return [(0, "SECTION"), (2, "ENTITIES")] + entities + [(0, "ENDSEC")]

    def objects(self):
        root, group = self.handle(), self.handle()
        layouts = self.handle() if self.sheet_name else None
        groups = [(0, "SECTION"), (2, "OBJECTS")]
        groups += dictionary(
            root, "0", [("ACAD_GROUP", group)] + ([("ACAD_LAYOUT", layouts)] if layouts else [])
        )
        groups += dictionary(group, root, [])
        if layouts:
            names = (("Model", "*Model_Space"), (self.sheet_name, "*Paper_Space"))
            handles = [self.handle() for _ in names]
            groups += dictionary(layouts, root, [(name, handle) for (name, _), handle in zip(names, handles)])
            for tab, ((name, block), handle) in enumerate(zip(names, handles)):
                groups += layout(handle, layouts, name, tab, self.size, self.records[block])
        for extension, owner, target in self.fields:
            groups += field_link(self.handle, extension, owner, target)
        for handle, file, (columns, rows) in self.images:
            groups += [(0, "IMAGEDEF"), (5, handle), (330, root), (100, "AcDbRasterImageDef"), (90, 0), (1, file)]
            groups += flat_point(10, (columns, rows)) + flat_point(11, (1, 1)) + [(280, 1), (281, 0)]
        return groups + [(0, "ENDSEC")]


def line_type(name, description, dashes):
    length = float(sum(abs(dash) for dash in dashes))
    groups = [(2, name), (70, 0), (3, description), (72, 65), (73, len(dashes)), (40, length)]
    for dash in dashes:
        groups += [(49, float(dash)), (74, 0)]
    return groups


def text_style(name, file, family):
    groups = [(2, name), (70, 0), (40, 0.0), (41, 1.0), (50, 0.0), (71, 0), (42, 2.5), (3, file), (4, "")]
    return groups + ([(1001, "ACAD"), (1000, family), (1071, 0)] if family else [])


def layer(name, color, ltype, lw, rgb, frozen, off, plots):
    groups = [(2, name), (70, 1 if frozen else 0), (62, -color if off else color)]
    if rgb is not None:
        groups.append((420, rgb))
    return groups + [(6, ltype), (290, int(plots)), (370, lw)]
