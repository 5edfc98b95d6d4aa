#!/usr/bin/env python3
"""Writes BMP files with nothing but the standard library, and beside each
the pixels it should decode to (raw RGB, top row first), so the reader is
checked against a writer it did not write.

usage: write_bmps.py <folder>
       write_bmps.py --check <file> <width> <height>"""
import struct
import sys


def pixel(x, y):
    return ((x * 37 + y * 11) & 255, (x * 5 + y * 71) & 255, (x * y * 3 + 7) & 255)


def bmp(width, height, bits, core=False, top_down=False, palette=None):
    """The file bytes and the expected RGB bytes."""
    expected = bytearray()
    rows = []
    for y in range(height):
        row = bytearray()
        acc, nbits = 0, 0
        for x in range(width):
            if bits >= 24:
                r, g, b = pixel(x, y)
                row += bytes((b, g, r)) + (b"\x80" if bits == 32 else b"")
                expected += bytes((r, g, b))
                continue
            index = (x * 3 + y) % (1 << bits)
            acc = (acc << bits) | index
            nbits += bits
            if nbits == 8:
                row.append(acc)
                acc, nbits = 0, 0
            if bits == 1:
                expected += b"\xff\xff\xff" if index else b"\x00\x00\x00"
            elif index < len(palette):
                expected += bytes(palette[index])
            else:
                expected += b"\x00\x00\x00"
        if nbits:
            row.append(acc << (8 - nbits))
        row += b"\x00" * ((-len(row)) % 4)
        rows.append(bytes(row))
    stored = rows if top_down else rows[::-1]
    pal = b""
    if palette is not None:
        for r, g, b in palette:
            pal += bytes((b, g, r)) if core else bytes((b, g, r, 0))
    if core:
        header = struct.pack("<IhhHH", 12, width, height, 1, bits)
    else:
        header = struct.pack("<IiiHHIIiiII", 40, width, -height if top_down else height,
                             1, bits, 0, 0, 2835, 2835, 0, 0)
    offset = 14 + len(header) + len(pal)
    pixels = b"".join(stored)
    return (b"BM" + struct.pack("<IHHI", offset + len(pixels), 0, 0, offset) + header + pal
            + pixels, bytes(expected))


def check(path, width, height):
    """Exit status 0 when the 24-bit file holds pixel(x, y) everywhere."""
    data = open(path, "rb").read()
    magic, size, _, _, offset = struct.unpack_from("<2sIHHI", data, 0)
    hsize, w, h, planes, bits = struct.unpack_from("<IiiHH", data, 14)
    assert (magic, size, offset, hsize, w, h, planes, bits) == \
        (b"BM", len(data), 54, 40, width, height, 1, 24), "header"
    stride = (width * 3 + 3) // 4 * 4
    for y in range(height):
        for x in range(width):
            b, g, r = data[offset + (height - 1 - y) * stride + x * 3:][:3]
            assert (r, g, b) == pixel(x, y), f"pixel {x},{y}"


def main():
    if sys.argv[1] == "--check":
        check(sys.argv[2], int(sys.argv[3]), int(sys.argv[4]))
        return
    folder = sys.argv[1]
    grey = [(i, i, i) for i in range(256)]
    colours = [((i * 40) & 255, (i * 90) & 255, (255 - i * 17) & 255) for i in range(16)]
    cases = {
        "bits1": bmp(13, 5, 1, palette=[(9, 9, 9), (200, 0, 0)]),
        "bits4": bmp(7, 6, 4, palette=colours),
        "bits4_short_palette": bmp(9, 3, 4, palette=colours[:5]),
        "bits8": bmp(10, 7, 8, palette=grey),
        "bits8_core": bmp(5, 4, 8, core=True, palette=grey),
        "bits24": bmp(17, 9, 24),
        "bits24_top_down": bmp(6, 5, 24, top_down=True),
        "bits32": bmp(4, 3, 32),
    }
    for name, (data, expected) in cases.items():
        with open(f"{folder}/{name}.bmp", "wb") as f:
            f.write(data)
        with open(f"{folder}/{name}.rgb", "wb") as f:
            f.write(expected)


main()
