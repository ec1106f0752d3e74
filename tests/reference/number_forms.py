"""Numbers of the reference: single precision, rounding, and the two forms of reals in a page stream.

Python's floats are f64, so every f32 of the driver is held as the f64 that widens it; `f32` narrows.
A sum, difference or quotient of two f32 that is computed in f64 and then narrowed equals the f32 operation.
"""

from __future__ import annotations

import math
import struct
from decimal import Decimal

MAX_F32 = struct.unpack("<f", b"\xff\xff\x7f\x7f")[0]
MAX_F64 = struct.unpack("<d", b"\xff\xff\xff\xff\xff\xff\xef\x7f")[0]

# Two coordinates are the same when they differ by less than this, in dots.
SAME_TOLERANCE = 1e-5

# The largest digit run that the number writer keeps; a longer one loses its last digit.
LARGEST_DIGIT_RUN = 0x9FFFFFF


def f32(value: float) -> float:
    """Narrows to single precision; what lies beyond its range becomes an infinity."""
    try:
        return struct.unpack("<f", struct.pack("<f", value))[0]
    except OverflowError:
        return math.copysign(math.inf, value)


def i32(value: int) -> int:
    """Reduces to a signed 32-bit integer, wrapping around."""
    return (value + 0x80000000) % 0x100000000 - 0x80000000


def divide_toward_zero(dividend: int, divisor: int) -> int:
    """Integer division with the quotient truncated toward zero; the divisor is positive."""
    quotient = abs(dividend) // divisor
    return -quotient if dividend < 0 else quotient


def round_away(value: float) -> float:
    """The nearest whole number, halves away from zero."""
    if not math.isfinite(value):
        return value
    whole = float(math.trunc(value))
    if abs(value - whole) >= 0.5:
        whole += math.copysign(1.0, value)
    return math.copysign(whole, value)


def same(first: float, second: float) -> bool:
    """Whether two coordinates count as one; an infinity is the same as nothing."""
    return abs(first - second) < SAME_TOLERANCE


def write_plain(value: float) -> str:
    """Six significant digits, as a default output stream writes a float, but never an exponent."""
    if math.isnan(value):
        return "0"
    if math.isinf(value):
        value = math.copysign(MAX_F32, value)
    return format(Decimal(f"{value:g}"), "f")


def power_of_ten(exponent: int) -> float:
    """The f64 nearest to 10 to the power `exponent`."""
    return float(f"1e{exponent}")


def write_real(value: float, precision: int) -> str:
    """The number writer: `value` is an f32, `precision` the most decimals or -1 for no limit."""
    if math.isinf(value):
        value = math.copysign(MAX_F32, value)
    if math.isnan(value) or value == 0:
        return "0"
    if precision >= 0 and round_away(power_of_ten(precision) * value) == 0:
        return "0"
    digits, exponent = _significant_digits(abs(value), precision)
    return ("-" if value < 0 else "") + _place_point(digits, exponent)


def _significant_digits(magnitude: float, precision: int) -> tuple[int, int]:
    """The digit run of a positive number and the power of ten of its last digit, without trailing zeros."""
    _, binary_exponent = math.frexp(magnitude)
    scale = math.floor(binary_exponent * 0.3010299956639812)
    exponent = scale - 8
    if precision >= 0:
        exponent = max(exponent, -precision)
    scaled = magnitude * power_of_ten(-exponent)
    digits = int(scaled + 0.5)
    if digits > LARGEST_DIGIT_RUN:
        digits = int(scaled * 0.1 + 0.5)
        exponent = scale - 7
    while digits % 10 == 0:
        digits //= 10
        exponent += 1
    return digits, exponent


def _place_point(digits: int, exponent: int) -> str:
    """Writes `digits` times 10 to the power `exponent`, with no zero before the point."""
    text = str(digits)
    if exponent >= 0:
        return text + "0" * exponent
    text = text.zfill(-exponent)
    return f"{text[:exponent]}.{text[exponent:]}"
