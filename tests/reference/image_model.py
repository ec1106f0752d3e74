"""From a host's raster to the image that a page holds, by bit count, palette and opacity."""

from __future__ import annotations

import base64
import re
from typing import Any

from plotted_job import PageImage, parse_job_text

Raster = dict[str, Any]
BLACK, WHITE = [0, 0, 0, 255], [255, 255, 255, 255]
PLOTTED_JPEG = re.compile(r"image (\w+): \d+ x \d+ jpeg (\w{6})\b")
# How far the mean colour may lie from that of the pixels, in each channel: small images lose much in a JPEG.
JPEG_TOLERANCE = 24


def page_image(raster: Raster, alpha: int) -> PageImage | None:
    """What a page holds of a raster, or None where not even an empty image is placed."""
    width, height, bits = raster["width"], abs(raster["height"]), raster["bitCount"]
    data = base64.b64decode(raster["pixels"])
    if not data or bits == 24:
        return None
    length = (width * bits + 31) // 32 * 4
    rows = [data[row * length : (row + 1) * length] for row in range(height)]
    if bits == 32:
        needs_mask = raster.get("hasAlpha", False) or alpha != 255
        pixels = [row[4 * column : 4 * column + 4] for row in rows for column in range(width)]
        return _jpeg(width, height, pixels, alpha if needs_mask else None) if pixels else None
    palette = [*raster.get("palette", []), *[[0, 0, 0, 0]] * 256]
    if bits == 8:
        return _colors(width, height, [palette[value] for row in rows for value in row[:width]], alpha)
    values = [row[column // 8] >> 7 - column % 8 & 1 for row in rows for column in range(width)]
    if alpha == 255 and palette[:2] in ([BLACK, WHITE], [WHITE, BLACK]):
        white = palette.index(WHITE)
        return PageImage(width, height, "bits", "".join(str(int(value == white)) for value in values))
    return _colors(width, height, [palette[value] for value in values], alpha)


def _scaled(fourth: int, alpha: int) -> int:
    return int(float(fourth) * (alpha / 255.0) + 0.5)


def _colors(width: int, height: int, pixels: list[list[int]], alpha: int) -> PageImage:
    colors = "".join(bytes(pixel[2::-1]).hex() for pixel in pixels)
    return PageImage(width, height, "rgb", colors, bytes(_scaled(pixel[3], alpha) for pixel in pixels).hex())


def _jpeg(width: int, height: int, pixels: list[bytes], alpha: int | None) -> PageImage:
    mask = "" if alpha is None else bytes(_scaled(pixel[3], alpha) for pixel in pixels).hex()
    return PageImage(width, height, "jpeg", mean_color(b"".join(pixel[2::-1] for pixel in pixels)), mask)


def mean_color(channels: bytes) -> str:
    """The mean of some colours of three bytes, in six digits."""
    return bytes(round(sum(channels[i::3]) / len(channels[i::3])) for i in range(3)).hex()


class JpegColors:
    """The colours of a job's JPEGs as a plot of it shows them: their encoder is the host's affair."""

    def __init__(self, plotted: str) -> None:
        pages = parse_job_text(plotted)[1:]
        self._pages = [dict(PLOTTED_JPEG.findall("\n".join(lines))) for _, lines in pages]

    def expected(self, page: int, name: str, image: PageImage) -> PageImage:
        """An image of a page, counted from 0, with the colour that was plotted if that comes near."""
        plotted = self._pages[page].get(name) if page < len(self._pages) else None
        if image.form != "jpeg" or plotted is None:
            return image
        pairs = zip(bytes.fromhex(plotted), bytes.fromhex(image.pixels), strict=True)
        near = all(abs(one - other) <= JPEG_TOLERANCE for one, other in pairs)
        return image._replace(pixels=plotted) if near else image
