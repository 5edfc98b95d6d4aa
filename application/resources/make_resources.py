#!/usr/bin/env python3
"""Draws the drill's pictures and synthesises its sounds.

Writes into OUTDIR: bitmap_6.bmp to bitmap_10.bmp (24-bit BMP), wave_0.wav,
wave_2.wav and wave_3.wav (16-bit mono), the options segment with the
window icons and the version block, and the empty code, data and link segments that let
kelp-image append the resources to a program whose code is linked in.
Nothing but the standard library is used, so the build needs no extra
package; the output is the same on every run.
"""
import math
import os
import struct
import sys
import wave

WHITE = (255, 255, 255)


class Canvas:
    def __init__(self, width, height, colour=WHITE):
        self.width, self.height = width, height
        self.rows = [[colour] * width for _ in range(height)]

    def put(self, x, y, colour):
        if 0 <= x < self.width and 0 <= y < self.height:
            self.rows[y][x] = colour

    def rect(self, left, top, width, height, colour):
        for y in range(max(0, top), min(self.height, top + height)):
            row = self.rows[y]
            for x in range(max(0, left), min(self.width, left + width)):
                row[x] = colour

    def disc(self, cx, cy, radius, colour):
        for y in range(cy - radius, cy + radius + 1):
            for x in range(cx - radius, cx + radius + 1):
                if (x - cx) ** 2 + (y - cy) ** 2 <= radius * radius:
                    self.put(x, y, colour)

    def vertical_gradient(self, top_colour, bottom_colour):
        for y in range(self.height):
            t = y / max(1, self.height - 1)
            c = tuple(int(a + (b - a) * t) for a, b in zip(top_colour, bottom_colour))
            self.rows[y] = [c] * self.width

    def save_bmp(self, path):
        stride = (self.width * 3 + 3) & ~3
        pixels = bytearray()
        for row in reversed(self.rows):  # BMP rows run bottom up
            line = bytearray()
            for r, g, b in row:
                line += bytes((b, g, r))
            line += b"\0" * (stride - len(line))
            pixels += line
        header = struct.pack("<2sIHHI", b"BM", 54 + len(pixels), 0, 0, 54)
        info = struct.pack("<IiiHHIIiiII", 40, self.width, self.height, 1, 24, 0,
                           len(pixels), 2835, 2835, 0, 0)
        with open(path, "wb") as f:
            f.write(header + info + pixels)


# The four operation signs, drawn with bars so that no font is needed.
def plus(c, x, y, size, colour):
    t = max(2, size // 5)
    c.rect(x, y + (size - t) // 2, size, t, colour)
    c.rect(x + (size - t) // 2, y, t, size, colour)


def minus(c, x, y, size, colour):
    t = max(2, size // 5)
    c.rect(x, y + (size - t) // 2, size, t, colour)


def times(c, x, y, size, colour):
    t = max(1, size // 10)
    for i in range(size):
        for d in range(-t, t + 1):
            c.put(x + i + d, y + i, colour)
            c.put(x + size - 1 - i + d, y + i, colour)


def divide(c, x, y, size, colour):
    minus(c, x, y, size, colour)
    r = max(1, size // 8)
    c.disc(x + size // 2, y + r + 1, r, colour)
    c.disc(x + size // 2, y + size - r - 2, r, colour)


SIGNS = (plus, minus, times, divide)
SIGN_COLOURS = ((230, 60, 60), (60, 140, 230), (250, 190, 40), (80, 180, 90))


def strip(width, height, shift):
    """A side strip: a soft gradient with the signs walking down it."""
    c = Canvas(width, height)
    c.vertical_gradient((120, 170, 230), (60, 110, 190))
    for i, y in enumerate(range(12, height - 24, 36)):
        k = (i + shift) % 4
        SIGNS[k](c, (width - 18) // 2, y, 18, SIGN_COLOURS[k])
    return c


def banner():
    """The welcome banner: hills under a sky, signs on the left, and a calm
    panel on the right where the four operation words change colour, so
    that blue, white, yellow and black all read on it."""
    c = Canvas(446, 107)
    c.vertical_gradient((150, 200, 245), (215, 235, 250))
    for x in range(446):
        hill = int(88 + 10 * math.sin(x / 37.0) + 5 * math.sin(x / 13.0))
        c.rect(x, hill, 1, 107 - hill, (90, 170, 90))
    for i, sign in enumerate(SIGNS):
        sign(c, 18 + i * 58, 22, 40, SIGN_COLOURS[i])
    c.rect(268, 6, 172, 50, (150, 150, 150))
    c.rect(270, 8, 168, 46, (128, 128, 140))
    return c


def practice_backdrop():
    """Behind the problem: a light sheet with a blue rule line frame."""
    c = Canvas(390, 220)
    c.vertical_gradient((235, 244, 255), (205, 225, 250))
    for y in range(60, 220, 24):
        c.rect(0, y, 390, 1, (190, 210, 240))
    c.rect(0, 0, 390, 3, (60, 110, 190))
    c.rect(0, 217, 390, 3, (60, 110, 190))
    return c


def results_backdrop():
    """Behind the results: a pale sheet with faint signs strewn over it,
    light enough that text reads on top of them."""
    c = Canvas(500, 460)
    c.vertical_gradient((255, 255, 255), (228, 238, 252))
    pale = [tuple(255 - (255 - v) // 5 for v in colour) for colour in SIGN_COLOURS]
    for row, y in enumerate(range(8, 460, 46)):
        for col, x in enumerate(range(8 + (row % 2) * 23, 500, 46)):
            k = (row + col) % 4
            SIGNS[k](c, x, y, 16, pale[k])
    return c


RATE = 22050


def save_wave(path, samples):
    with wave.open(path, "wb") as w:
        w.setnchannels(1)
        w.setsampwidth(2)
        w.setframerate(RATE)
        w.writeframes(b"".join(struct.pack("<h", max(-32767, min(32767, int(s))))
                               for s in samples))


def tone(frequencies, seconds, volume=0.45, decay=6.0):
    n = int(RATE * seconds)
    out = []
    for i in range(n):
        t = i / RATE
        f = frequencies(t)
        env = min(1.0, i / 200.0) * math.exp(-decay * t)
        out.append(32767 * volume * env * math.sin(2 * math.pi * f * t))
    return out


def click():
    n = int(RATE * 0.025)
    return [32767 * 0.5 * math.exp(-i / 60.0) * math.sin(2 * math.pi * 1800 * i / RATE)
            for i in range(n)]


def right():
    # Two rising notes, a major third apart.
    return tone(lambda t: 660.0, 0.15, decay=4.0) + tone(lambda t: 830.0, 0.3, decay=5.0)


def wrong():
    # A low note that sags.
    return tone(lambda t: 220.0 - 60.0 * t, 0.6, volume=0.5, decay=3.0)


def icon_record(size):
    """A window icon: the four signs on a rounded white tile, RGBA."""
    c = Canvas(size, size, (255, 255, 255))
    half = size // 2
    for k, sign in enumerate(SIGNS):
        sign(c, (k % 2) * half + size // 10, (k // 2) * half + size // 10, half - size // 5,
             SIGN_COLOURS[k])
    pixels = bytearray()
    corner = max(1, size // 8)
    for y, row in enumerate(c.rows):
        for x, (r, g, b) in enumerate(row):
            dx = max(0, corner - x, x - (size - 1 - corner))
            dy = max(0, corner - y, y - (size - 1 - corner))
            alpha = 0 if dx * dx + dy * dy > corner * corner else 255
            pixels += bytes((r, g, b, alpha))
    return b"\x01" + bytes((size % 256, size % 256)) + pixels


def version_block(major, minor, bug, short, long_text, package):
    def pascal(text):
        b = text.encode("utf-8")
        return bytes((len(b),)) + b
    words = struct.pack("<6i", major, minor, bug, 0, 3, 0)  # stage 3: final
    return b"\x02" + words + pascal(short) + pascal(long_text) + pascal(package)


def main(outdir):
    os.makedirs(outdir, exist_ok=True)
    pictures = {6: strip(35, 365, 0), 7: strip(35, 365, 2), 8: banner(),
                9: practice_backdrop(), 10: results_backdrop()}
    for number, picture in pictures.items():
        picture.save_bmp(os.path.join(outdir, "bitmap_%d.bmp" % number))
    for number, samples in {0: wrong(), 2: click(), 3: right()}.items():
        save_wave(os.path.join(outdir, "wave_%d.wav" % number), samples)
    with open(os.path.join(outdir, "options.dat"), "wb") as f:
        for size in (16, 32, 48, 128):
            f.write(icon_record(size))
        f.write(version_block(1, 6, 0, "1.6", "Sumbrook 1.6", "Sumbrook"))
    for name in ("code.dat", "data.dat", "import.dat", "symbols.dat", "rsrc.dat"):
        open(os.path.join(outdir, name), "wb").close()


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit("usage: make_resources.py OUTDIR")
    main(sys.argv[1])
