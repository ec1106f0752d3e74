"""Converts a text DXF to one of the two binary forms."""

import struct

MARK = b"Example Binary DXF\r\n\x1a\0"

# Value types by group code: struct's format character, or None for a chunk of bytes. Others are strings.
FORMS = [
    (range(10, 60), "d"), (range(60, 90), "h"), (range(90, 100), "i"), (range(110, 150), "d"), (range(160, 170), "q"),
    (range(170, 180), "h"), (range(210, 240), "d"), (range(270, 290), "h"), (range(290, 300), "b"),
    (range(310, 320), None), (range(370, 390), "h"), (range(400, 410), "h"), (range(420, 430), "i"),
    (range(440, 460), "i"), (range(460, 470), "d"), (range(1004, 1005), None), (range(1010, 1060), "d"),
    (range(1060, 1071), "h"), (range(1071, 1072), "i"),
]
LETTERS = {code: letter for codes, letter in FORMS for code in codes}


def number(text):
    """0 for an invalid number, which test drawings may have where the reader ignores it."""
    try:
        return float(text)
    except ValueError:
        return 0.0


def value_bytes(code, text):
    letter = LETTERS.get(code, "")
    if letter is None:
        content = bytes.fromhex(text.decode())
        return bytes([len(content)]) + content
    if letter == "":
        return text + b"\0"
    if letter == "d":
        return struct.pack("<d", number(text))
    size = struct.calcsize(letter)
    return int(number(text)).to_bytes(16, "little", signed=True)[:size]


def code_bytes(code, wide):
    if wide:
        return struct.pack("<H", code)
    return bytes([code]) if code < 255 else b"\xff" + struct.pack("<H", code)


def converted(text, wide):
    """`wide`: group codes have two bytes, as since R13."""
    lines = text.removeprefix(b"\xef\xbb\xbf").replace(b"\r\n", b"\n").split(b"\n")
    groups = ((int(code), value) for code, value in zip(lines[::2], lines[1::2]))
    return MARK + b"".join(code_bytes(code, wide) + value_bytes(code, value) for code, value in groups if code != 999)
