#!/usr/bin/env python3
"""A host in Python: loads the driver PDF.hdi through ctypes and plots a line, a linked text and an image.

    plot.py MODULE OUTPUT.pdf

The interface needs no compiler: operations are called by slot, entry points by position, settings by offset.
"""
import ctypes
import struct
import sys
from ctypes import CFUNCTYPE, POINTER, c_char_p, c_double, c_int32, c_int64, c_uint32, c_uint64, c_void_p

DOTS_PER_INCH = 600

# Slots of a driver, positions in the device's table, and offsets in the settings record.
SLOT_OPEN_DEVICE, SLOT_CLOSE_DEVICE, SLOT_NORMALIZE, SLOT_SETTINGS = 10, 11, 22, 24
START_DOC, END_DOC, START_PAGE, END_PAGE, POLYLINE = 19, 20, 21, 22, 26
BEGIN_LINK, END_LINK, SET_PEN, SET_BRUSH, TEXT, BITMAP = 35, 36, 38, 39, 48, 51
PRINT_QUALITY, OPEN_AFTER_PLOT = 90, 612
CREATE_DRIVERS, RELEASE_DRIVER = 2, 3


def dots(millimetres):
    """Coordinates are dots from the upper left corner of the printable area."""
    return millimetres * DOTS_PER_INCH / 25.4


def wide(text):
    """Zero-terminated 16-bit units."""
    return ctypes.create_string_buffer(text.encode("utf-16-le") + b"\0\0")


def virtual(obj, slot, result, *types):
    """The virtual operation of a C++ object."""
    table = ctypes.cast(obj, POINTER(POINTER(c_void_p)))[0]
    return lambda *arguments: CFUNCTYPE(result, c_void_p, *types)(table[slot])(obj, *arguments)


class Object:
    """An object with virtual operations that the driver calls. Keep it alive as long as the driver may."""

    def __init__(self, *operations):
        self.functions = operations
        self.table = (c_void_p * len(operations))(*(ctypes.cast(f, c_void_p).value for f in operations))
        self.pointer = c_void_p(ctypes.addressof(self.table))
        self.address = ctypes.addressof(self.pointer)


class Device:
    """An open device: driver, default output, job, table, started."""

    def __init__(self, driver):
        self.driver = driver
        self.record = (c_uint64 * 8)(driver)
        if virtual(driver, SLOT_OPEN_DEVICE, c_int32, c_void_p)(ctypes.addressof(self.record)) != 1:
            raise RuntimeError("the device cannot be opened")

    def call(self, position, *arguments):
        """Entries take the device first; a float is passed as f64, everything else as an integer or an address."""
        kinds = [c_double if isinstance(a, float) else c_int32 if isinstance(a, int) else c_void_p for a in arguments]
        values = [ctypes.cast(a, c_void_p) if isinstance(a, ctypes.Array) else a for a in arguments]
        entry = ctypes.cast(self.record[3], POINTER(c_void_p))[position]
        return CFUNCTYPE(c_int32, c_void_p, *kinds)(entry)(ctypes.addressof(self.record), *values)

    def close(self):
        virtual(self.driver, SLOT_CLOSE_DEVICE, c_int32, c_void_p)(ctypes.addressof(self.record))


def checkers():
    """A raster of 8 by 8 pixels: BITMAPINFOHEADER, a palette of blue, green, red, alpha, and the pixels."""
    header = struct.pack("<IiiHHIIiiII", 40, 8, 8, 1, 8, 0, 0, 0, 0, 0, 0)
    block = ctypes.create_string_buffer(header + struct.pack("<2I", 0xFFD7E3F4, 0xFF2F5D9B) + bytes(254 * 4))
    pixels = ctypes.create_string_buffer(bytes((row + column) % 2 for row in range(8) for column in range(8)))
    number, address = CFUNCTYPE(c_int32, c_void_p), CFUNCTYPE(c_void_p, c_void_p)
    raster = Object(
        address(lambda _: ctypes.addressof(block)), number(lambda _: 8), number(lambda _: 8), number(lambda _: 0),
        address(lambda _: ctypes.addressof(pixels)),
        CFUNCTYPE(c_void_p, c_void_p, c_char_p, c_int32, c_void_p)(lambda *_: None),
        CFUNCTYPE(None, c_void_p, c_void_p)(lambda *_: None))
    raster.memory = block, pixels
    return raster


def plot(device, settings, output):
    name, target, title = wide(output), wide("https://example.org/"), wide("Example")
    document = ctypes.create_string_buffer(
        struct.pack("<i4xQQQI4x", 40, ctypes.addressof(title), ctypes.addressof(name), 0, 0))
    if device.call(START_DOC, document) != 1:
        return False
    device.call(START_PAGE, c_void_p(settings))

    pen = struct.pack("<5IiI", 0x10000, round(dots(0.5)), 0, 0x00A05020, 0, 0, 0)  # geometric, solid, round
    device.call(SET_PEN, ctypes.create_string_buffer(pen))
    device.call(POLYLINE, (c_double * 4)(dots(20), dots(50), dots(120), dots(50)), 2)

    text, height = "A linked text", dots(8)
    font = struct.pack("<5i8B", -int(height), 0, 0, 0, 400, *bytes(8)) + "Liberation Mono".encode("utf-16-le").ljust(64, b"\0")
    advances = (c_double * len(text))(*[0.6 * height] * len(text))
    device.call(SET_BRUSH, ctypes.create_string_buffer(struct.pack("<IIQ", 0, 0, 0)))
    device.call(BEGIN_LINK, target)
    device.call(TEXT, ctypes.create_string_buffer(font), (c_double * 2)(dots(20), dots(40)), wide(text), len(text),
                advances, height, 0.0, 1.0, 1.0)
    device.call(END_LINK)

    image = checkers()  # must live until END_DOC has returned, like its record
    record = ctypes.create_string_buffer(
        struct.pack("<Q6d", image.address, dots(20), dots(60), dots(5), 0, 0, dots(5)))
    device.call(BITMAP, record)
    device.call(END_PAGE)
    return device.call(END_DOC) == 1


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: plot.py MODULE OUTPUT.pdf")
    it_driver = ctypes.CDLL(sys.argv[1]).IT_Driver
    it_driver.argtypes, it_driver.restype = [c_uint64, c_void_p], c_int64
    drivers = []
    receive = CFUNCTYPE(None, c_void_p, c_void_p)
    drivers_list = Object(CFUNCTYPE(None, c_void_p)(lambda _: None), receive(lambda _, driver: drivers.append(driver)),
                          receive(lambda _, driver: None))
    it_driver(CREATE_DRIVERS, drivers_list.address)
    if not drivers:
        sys.exit("plot.py: pdf.ini names no device; set HDI_APP_DIR")

    settings = virtual(drivers[0], SLOT_SETTINGS, c_void_p)()
    ctypes.c_int16.from_address(settings + PRINT_QUALITY).value = DOTS_PER_INCH
    virtual(drivers[0], SLOT_NORMALIZE, None, c_void_p)(settings)
    c_uint32.from_address(settings + OPEN_AFTER_PLOT).value = 0
    device = Device(drivers[0])
    done = plot(device, settings, sys.argv[2])
    device.close()
    for driver in drivers:
        it_driver(RELEASE_DRIVER, ctypes.addressof((c_uint64 * 2)(drivers_list.address, driver)))
    if not done:
        sys.exit(f"plot.py: {sys.argv[2]} could not be plotted")


main()
