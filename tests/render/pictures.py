"""Pictures of 8-bit red, green and blue: files, averages over blocks and the comparison of two of them."""

from __future__ import annotations

import struct
import zlib
from dataclasses import dataclass
from pathlib import Path

PNG_SIGNATURE = b"\x89PNG\r\n\x1a\n"


@dataclass
class Picture:
    """Rows from the top, three bytes a pixel, no padding."""

    width: int
    height: int
    pixels: bytes


def read_ppm(data: bytes) -> Picture:
    """A binary PPM file as the renderers write it."""
    head = data.split(maxsplit=4)[:4]
    if head[0] != b"P6" or head[3] != b"255":
        raise ValueError("not a PPM file of 8-bit colours")
    width, height = int(head[1]), int(head[2])
    pixels = data[-3 * width * height :]
    if len(pixels) != 3 * width * height:
        raise ValueError("a PPM file that is too short")
    return Picture(width, height, pixels)


def write_png(picture: Picture, path: Path) -> None:
    """A PNG file, compressed as far as it goes without filters."""
    stride = 3 * picture.width
    rows = [b"\0" + picture.pixels[row * stride :][:stride] for row in range(picture.height)]
    header = struct.pack(">IIBBBBB", picture.width, picture.height, 8, 2, 0, 0, 0)
    chunks = [(b"IHDR", header), (b"IDAT", zlib.compress(b"".join(rows), 9)), (b"IEND", b"")]
    data = PNG_SIGNATURE
    for name, content in chunks:
        data += struct.pack(">I", len(content)) + name + content
        data += struct.pack(">I", zlib.crc32(name + content))
    path.write_bytes(data)


def read_png(path: Path) -> Picture:
    """A PNG file that `write_png` has written."""
    data = path.read_bytes()
    position = len(PNG_SIGNATURE)
    width = height = 0
    packed = b""
    while position < len(data):
        (size,) = struct.unpack_from(">I", data, position)
        name, content = data[position + 4 : position + 8], data[position + 8 : position + 8 + size]
        position += size + 12
        if name == b"IHDR":
            width, height, *form = struct.unpack(">IIBBBBB", content)
            if form != [8, 2, 0, 0, 0]:
                raise ValueError(f"{path}: not of 8-bit red, green and blue")
        elif name == b"IDAT":
            packed += content
    rows = zlib.decompress(packed)
    stride = 3 * width + 1
    if any(rows[::stride]):
        raise ValueError(f"{path}: has filters")
    pixels = b"".join(rows[row * stride + 1 : (row + 1) * stride] for row in range(height))
    return Picture(width, height, pixels)


def averages(picture: Picture, size: int) -> Picture:
    """A picture of the averages over blocks of `size` by `size` pixels; what is left over at the right and at
    the bottom is left out."""
    width, height = picture.width // size, picture.height // size
    stride = 3 * picture.width
    area = size * size
    pixels = bytearray(3 * width * height)
    for block_row in range(height):
        start = block_row * size * stride
        # One sequence for each pixel of a block: every block's red, then every block's green, blue.
        for component in range(3):
            parts = []
            for row in range(size):
                begin = start + row * stride + component
                end = begin + 3 * size * width
                parts += [picture.pixels[begin + 3 * column : end : 3 * size] for column in range(size)]
            sums = map(sum, zip(*parts, strict=False))
            first = 3 * width * block_row + component
            pixels[first : first + 3 * width : 3] = bytes([(total + area // 2) // area for total in sums])
    return Picture(width, height, bytes(pixels))


@dataclass(frozen=True)
class Tolerance:
    """How far two pictures may lie apart, in levels of 256.

    Averages over blocks of `block` pixels are compared, component by component. A block is off when one of
    its components differs by more than `level`; at most `blocks` may be off, none by more than `worst`, and
    the mean difference over all components may be `mean` at most.
    """

    block: int
    level: int
    blocks: int
    worst: int
    mean: float


@dataclass
class Difference:
    """What a comparison found; `message` is empty when the pictures agree."""

    off: int
    worst: int
    mean: float
    message: str


def compare(expected: Picture, actual: Picture, tolerance: Tolerance) -> Difference:
    """Compares two pictures; sizes may differ by a pixel, as renderers round them in their own ways."""
    if abs(expected.width - actual.width) > 1 or abs(expected.height - actual.height) > 1:
        sizes = f"{expected.width}x{expected.height} expected, {actual.width}x{actual.height} found"
        return Difference(0, 0, 0.0, f"the size is wrong: {sizes}")
    one, other = averages(expected, tolerance.block), averages(actual, tolerance.block)
    width, height = min(one.width, other.width), min(one.height, other.height)
    total = off = worst = 0
    place = (0, 0)
    for row in range(height):
        first = one.pixels[3 * one.width * row :][: 3 * width]
        second = other.pixels[3 * other.width * row :][: 3 * width]
        levels = [abs(a - b) for a, b in zip(first, second, strict=True)]
        total += sum(levels)
        blocks = [max(levels[i : i + 3]) for i in range(0, 3 * width, 3)]
        off += sum(level > tolerance.level for level in blocks)
        if max(blocks) > worst:
            worst = max(blocks)
            place = (blocks.index(worst) * tolerance.block, row * tolerance.block)
    mean = total / (3 * width * height)
    message = f"{off} blocks off, the worst by {worst} at pixel {place}, on average {mean:.3f}"
    if off <= tolerance.blocks and worst <= tolerance.worst and mean <= tolerance.mean:
        message = ""
    return Difference(off, worst, mean, message)
