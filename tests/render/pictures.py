"""8-bit RGB pictures: reading, writing, averages over blocks, comparison."""

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
    """Reads a binary PPM file as the renderers write it."""
    head = data.split(maxsplit=4)[:4]
    if head[0] != b"P6" or head[3] != b"255":
        raise ValueError("not an 8-bit PPM file")
    width, height = int(head[1]), int(head[2])
    pixels = data[-3 * width * height :]
    if len(pixels) != 3 * width * height:
        raise ValueError("the PPM file is truncated")
    return Picture(width, height, pixels)


def write_png(picture: Picture, path: Path) -> None:
    """Writes a PNG file without filters."""
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
    """Reads a PNG file that `write_png` has written."""
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
                raise ValueError(f"{path}: not 8-bit RGB")
        elif name == b"IDAT":
            packed += content
    rows = zlib.decompress(packed)
    stride = 3 * width + 1
    if any(rows[::stride]):
        raise ValueError(f"{path}: has filters")
    pixels = b"".join(rows[row * stride + 1 : (row + 1) * stride] for row in range(height))
    return Picture(width, height, pixels)


def averages(picture: Picture, size: int) -> Picture:
    """The averages over blocks of `size` by `size` pixels. Incomplete blocks at the right and bottom are dropped."""
    width, height = picture.width // size, picture.height // size
    stride = 3 * picture.width
    area = size * size
    pixels = bytearray(3 * width * height)
    for block_row in range(height):
        start = block_row * size * stride
        # A sequence per pixel of a block, over all blocks of the row, for one component.
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
    """How far two pictures may differ, in levels of 0 to 255.

    Averages over blocks of `block` by `block` pixels are compared by component. A block is off if one component differs
    by more than `level`; at most `blocks` may be off, none by more than `worst`, with a mean difference over all
    components of at most `mean`.
    """

    block: int
    level: int
    blocks: int
    worst: int
    mean: float


@dataclass
class Difference:
    """The result of a comparison. `message` is empty if the pictures agree."""

    off: int
    worst: int
    mean: float
    message: str


def compare(expected: Picture, actual: Picture, tolerance: Tolerance) -> Difference:
    """Compares two pictures. Sizes may differ by a pixel, as renderers round differently."""
    if abs(expected.width - actual.width) > 1 or abs(expected.height - actual.height) > 1:
        sizes = f"{expected.width}x{expected.height} expected, {actual.width}x{actual.height} found"
        return Difference(0, 0, 0.0, f"wrong size: {sizes}")
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
