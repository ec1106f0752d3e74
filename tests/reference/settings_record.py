"""The driver's settings record as bytes, its paper and what a host may ask of the device.

All lengths are in tenths of a millimetre. The host's paper list is known to the reference by one paper, A4.
"""

from __future__ import annotations

import math
import struct
from dataclasses import dataclass

from number_forms import divide_toward_zero, i32

PUBLIC_SIZE = 220
DRIVER_EXTRA = 1024
RECORD_SIZE = PUBLIC_SIZE + DRIVER_EXTRA
NO_BACKGROUND = 0xFFFFFFFF
LANDSCAPE = 2

# Integer fields: byte offset, struct format, default.
FIELDS: dict[str, tuple[int, str, int]] = {
    "dmSpecVersion": (64, "H", 1),
    "dmDriverVersion": (66, "H", 1),
    "dmSize": (68, "H", PUBLIC_SIZE),
    "dmDriverExtra": (70, "H", DRIVER_EXTRA),
    "dmFields": (72, "I", 0x123),
    "dmOrientation": (76, "h", 1),
    "dmPaperSize": (78, "h", 9),
    "dmPaperLength": (80, "h", 2970),
    "dmPaperWidth": (82, "h", 2100),
    "dmScale": (84, "h", 100),
    "dmCopies": (86, "h", 0),
    "dmDefaultSource": (88, "h", 0),
    "dmPrintQuality": (90, "h", 600),
    "dmColor": (92, "h", 2),
    "dmDuplex": (94, "h", 1),
    "dmYResolution": (96, "h", 600),
    "dmTTOption": (98, "h", 1),
    "dmCollate": (100, "h", 0),
    "privateTag": (504, "I", 256),
    "paperId": (508, "i", 9),
    "paperWidth": (512, "i", 2100),
    "paperHeight": (516, "i", 2970),
    "marginLeft": (520, "i", 50),
    "marginTop": (524, "i", 170),
    "marginRight": (528, "i", 50),
    "marginBottom": (532, "i", 170),
    "backgroundColor": (548, "I", NO_BACKGROUND),
    "privateCount": (560, "I", 32),
    "layersEnabled": (600, "i", 1),
    "linksEnabled": (604, "i", 1),
    "textAsGeometry": (608, "i", 0),
    "openAfterPlot": (612, "i", 1),
    "keepFractions": (616, "i", 0),
}

SNAPSHOT = slice(PUBLIC_SIZE, 2 * PUBLIC_SIZE)

# Capabilities that no setting changes; every index that is neither here nor computed gives 0.
FIXED_CAPABILITIES: dict[int, int] = {
    0: 1, 2: 511, 12: 32, 14: 3, 16: 255, 18: 255, 22: 255, 24: 255, 36: 1,
    175: 1, 178: 2, 180: 1, 182: 1, 183: 1, 184: 1, 185: 1, 187: 1, 191: 1,
}  # fmt: skip


@dataclass(frozen=True)
class Paper:
    """A paper as the host's list or the host's custom paper gives it."""

    id: int
    width: int
    height: int
    left: int
    top: int
    right: int
    bottom: int


A4 = Paper(id=9, width=2100, height=2970, left=50, top=170, right=50, bottom=170)
NO_CUSTOM_PAPER = Paper(0, 0, 0, 0, 0, 0, 0)


def custom_paper(values: dict[str, float]) -> Paper:
    """The paper that a host sets by f64 values, each truncated toward zero."""
    lengths = {key: math.trunc(value) for key, value in values.items() if key != "name"}
    return Paper(id=0, **lengths)


class SettingsRecord:
    """The record behind one driver, with the driver's custom paper."""

    def __init__(self) -> None:
        self.bytes = bytearray(RECORD_SIZE)
        self.custom = NO_CUSTOM_PAPER
        self.bytes[0:6] = "PDF".encode("utf-16-le")
        for name, (_, _, default) in FIELDS.items():
            self[name] = default

    def __getitem__(self, name: str) -> int:
        offset, form, _ = FIELDS[name]
        return struct.unpack_from("<" + form, self.bytes, offset)[0]

    def __setitem__(self, name: str, value: int) -> None:
        offset, form, _ = FIELDS[name]
        size = struct.calcsize(form)
        self.bytes[offset : offset + size] = (value % (1 << 8 * size)).to_bytes(size, "little")

    @property
    def dots_per_inch(self) -> int:
        """The resolution; a cleared field or a quality code counts as 300."""
        quality = self["dmPrintQuality"]
        return quality if quality >= 1 else 300

    @property
    def background(self) -> int:
        """The colour word of a page: 0 stands for white."""
        return self["backgroundColor"] or 0xFFFFFF

    def start_page_with(self, replaced: dict[str, int]) -> None:
        """Takes a page's own record, a copy of this one in which some fields are replaced."""
        given = SettingsRecord()
        given.bytes[:] = self.bytes
        for name, value in replaced.items():
            given[name] = value
        size = self["dmSize"]
        if given["dmDriverExtra"] == self["dmDriverExtra"]:
            size += self["dmDriverExtra"]
        self.bytes[:size] = given.bytes[:size]
        self.normalize()

    def normalize(self) -> None:
        """Turns the choice in the public part into sheet and margins, unless nothing has changed."""
        if self.bytes[:PUBLIC_SIZE] == self.bytes[SNAPSHOT]:
            return
        paper_id = self["dmPaperSize"]
        if paper_id == 0:
            # The margins go in turned by a quarter turn, width and height do not, and every query comes here.
            self._take(self.custom, self.custom.width, self.custom.height, quarter_turn=True)
        elif paper_id == A4.id:
            if self["dmOrientation"] == LANDSCAPE:
                self._take(A4, A4.height, A4.width, quarter_turn=True)
            else:
                self._take(A4, A4.width, A4.height, quarter_turn=False)
            self.bytes[SNAPSHOT] = self.bytes[:PUBLIC_SIZE]

    def _take(self, paper: Paper, width: int, height: int, quarter_turn: bool) -> None:
        margins = (paper.left, paper.top, paper.right, paper.bottom)
        if quarter_turn:
            margins = (paper.top, paper.right, paper.bottom, paper.left)
        names = ("marginLeft", "marginTop", "marginRight", "marginBottom")
        self["paperId"] = paper.id
        self["paperWidth"] = width
        self["paperHeight"] = height
        for name, value in zip(names, margins, strict=True):
            self[name] = value

    def capability(self, index: int) -> int:
        """The answer to a capability query, as an unsigned 32-bit integer."""
        self.normalize()
        if not 0 <= index <= 191:
            return 0
        return self._computed_capabilities().get(index, FIXED_CAPABILITIES.get(index, 0)) % 0x100000000

    def _computed_capabilities(self) -> dict[int, int]:
        dpi = self.dots_per_inch
        changed = self.bytes[:PUBLIC_SIZE] != self.bytes[SNAPSHOT]
        public = self["dmPaperSize"] == 0 and not changed
        width = self["dmPaperWidth"] if public else self["paperWidth"]
        height = self["dmPaperLength"] if public else self["paperHeight"]
        printable_width = i32(width - self["marginRight"] - self["marginLeft"])
        printable_height = i32(height - self["marginBottom"] - self["marginTop"])

        def dots(length: int) -> int:
            return divide_toward_zero(i32(length * dpi), 254)

        return {
            4: divide_toward_zero(printable_width, 10),
            6: divide_toward_zero(printable_height, 10),
            8: dots(printable_width),
            10: dots(printable_height),
            88: dpi,
            90: self["dmYResolution"] if self["dmYResolution"] > 0 else dpi,
            110: dots(width),
            111: dots(height),
            112: dots(self["marginLeft"]),
            113: dots(self["marginTop"]),
        }

    def printable_height(self) -> float:
        """The height of the printable area in dots, as an f64."""
        length = i32(self["paperHeight"] - self["marginTop"] - self["marginBottom"])
        return float(i32(length * self.dots_per_inch)) / 254.0
