#!/usr/bin/env python3
"""Writes the seed inputs of the image fuzz target into fuzz/corpus/image.

Each seed is one input of the layout fuzz/image_input.h describes: images
behind a stand-in executable, and loose segment files some of which are
folders or FIFOs.  Run again after changing the image rules; the fuzzer adds
its own finds beside these.
"""
import os
import struct
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(HERE, "corpus", "image")
MAGIC = b"CehNehDeh"


def u32(v):
    return struct.pack("<I", v & 0xFFFFFFFF)


def name(text):
    b = text.encode()
    return bytes([len(b)]) + b + b"\0"


def literal(text):
    b = text.encode()
    record = struct.pack("<i4xQIiI4x", 1, 0, len(b) + 2, len(b), 0x08000100)
    body = record + bytes([min(len(b), 255)]) + b + b"\0"
    return body + b"\0" * (-len(body) % 8)


def sample():
    """Code with two relative holes of one chain, an absolute hole, a data,
    code and string word, a soft import; data with a literal; all segments."""
    code = bytearray(b"\x55\x48\x89\xe5")  # push rbp; mov rbp, rsp
    code += b"\xe8" + u32(11)  # call; its hole at 5 links to the one at 11
    code += b"\x90"
    code += b"\xe8" + u32(0)  # hole at 11, last of its chain
    code += b"\x48\xb8" + u32(0) + u32(0)  # movabs rax: absolute hole at 17
    code += b"\x48\xbf" + u32(0) + u32(0)  # data word at 27
    code += b"\x48\xbe" + u32(0) + u32(0)  # code word at 37
    code += b"\x48\xba" + u32(0) + u32(0)  # string word at 47
    code += b"\xe8" + u32(0)  # soft import hole at 56
    code += b"\x5d\xc3"
    data = literal("hello, image") + b"\x2a" + b"\0" * 7
    link = b"\x01\x01" + u32(5) + name("RuntimeLockString")
    link += b"\x01\x00" + u32(17) + name("RuntimeAddString")
    link += b"\x02" + u32(27) + b"\x03" + u32(37) + b"\x05" + u32(47)
    link += b"\x04" + u32(56) + name("strlen") + name("libc.so.6")
    link += b"\x00\x09"  # padding and an unknown type
    symbols = u32(2) + u32(0) + u32(0) + u32(20) + u32(6) + b"entry\0helper\0"
    rsrc = u32(0x54455854) + b"\x80\x00" + u32(0) + u32(2) + b"hi"
    icon = b"\x01\x02\x02" + bytes(range(16))
    version = b"\x02" + b"".join(u32(v) for v in (1, 2, 3, 0, 4, 0))
    version += b"\x031.2" + b"\x05long." + b"\x00"
    options = icon + version
    return [bytes(code), data, link, symbols, rsrc, options]


def appended(segments, sizes=None, extra=b"", length=None, head=b"\x7fELF stand-in"):
    body = b""
    for i, seg in enumerate(segments):
        body += u32(sizes[i] if sizes and sizes[i] is not None else len(seg)) + seg
    body += extra
    return head + body + u32(len(body) if length is None else length) + MAGIC


def loose(segments, kinds=(0, 0, 0, 0, 0, 0)):
    out = bytes([1]) + bytes(kinds)
    for seg in segments:
        out += u32(len(seg)) + seg
    return out


def seeds():
    s = sample()
    yield "appended-whole", b"\x00" + appended(s)
    yield "appended-as-folder", b"\x04" + appended(s)
    yield "appended-as-fifo", b"\x06" + appended(s)
    yield "appended-no-trailer", b"\x00" + appended(s)[:-1]
    yield "appended-length-past-file", b"\x00" + appended(s, length=0x7FFFFFFF)
    yield "appended-length-short", b"\x00" + appended(s, length=10)
    yield "appended-bytes-behind", b"\x00" + appended(s, extra=b"xyz")
    yield "appended-absent-top-bit", b"\x00" + appended(
        s[:3] + [b"", b"", b""], sizes=[None, None, None, 0x80000010, 0x80000001, 0x80000005])
    yield "appended-segment-too-big", b"\x00" + appended(s, sizes=[None, 0x7FFFFFF0, None, None, None, None])
    yield "appended-trailer-only", b"\x00" + u32(0) + MAGIC
    yield "appended-empty-code", b"\x00" + appended([b"", b"", s[2], b"", b"", b""])
    yield "loose-whole", loose(s)
    yield "loose-code-folder", loose(s, (2, 0, 0, 0, 0, 0))
    yield "loose-code-fifo", loose(s, (3, 0, 0, 0, 0, 0))
    yield "loose-code-missing", loose(s, (1, 0, 0, 0, 0, 0))
    yield "loose-odd-rest", loose(s, (0, 3, 2, 3, 2, 3))
    yield "loose-link-missing", loose(s, (0, 0, 1, 0, 0, 0))
    yield "loose-data-fifo", loose(s, (0, 3, 0, 0, 0, 0))
    # The binder's faults.
    c = bytearray(s[0])
    c[11:15] = u32(5)  # the last hole links back to the first
    yield "chain-ring", loose([bytes(c)] + s[1:])
    c = bytearray(s[0])
    c[11:15] = u32(0x100000)
    yield "chain-outside", loose([bytes(c)] + s[1:])
    yield "word-on-hole", loose(s[:2] + [s[2] + b"\x02" + u32(7)] + s[3:])
    yield "word-twice", loose(s[:2] + [s[2] + b"\x03" + u32(27)] + s[3:])
    yield "two-chains-one-hole", loose(s[:2] + [s[2] + b"\x01\x01" + u32(11) + name("RuntimeUnlockString")] + s[3:])
    d = bytearray(s[1])
    d[20:24] = u32(0x7FFFFF00)
    yield "literal-too-long", loose([s[0], bytes(d)] + s[2:])
    d = bytearray(s[1])
    d[8:16] = struct.pack("<Q", 0x1234)
    yield "literal-foreign-buffer", loose([s[0], bytes(d)] + s[2:])
    c = bytearray(s[0])
    c[47:55] = struct.pack("<Q", 0xFFFF0)
    yield "literal-outside", loose([bytes(c)] + s[1:])
    yield "missing-exports", loose(s[:2] + [b"".join(b"\x01\x01" + u32(0) + name("NoSuch%d" % i) for i in range(50))] + s[3:])
    yield "link-cut-off", loose(s[:2] + [s[2] + b"\x01\x01\x03"] + s[3:])
    yield "junk-options", loose(s[:5] + [bytes([0x55]) * 4096])
    yield "options-cut-icon", loose(s[:5] + [b"\x01\x10\x10\x00"])
    yield "options-cut-version", loose(s[:5] + [b"\x02" + u32(1)])
    yield "resource-too-long", loose(s[:4] + [u32(0x54455854) + b"\x01\x00" + u32(0) + u32(0xFF) + b"x"] + s[5:])
    yield "symbols-damaged", loose(s[:3] + [u32(1000) + u32(0)] + s[4:])
    yield "soft-import-missing", loose(s[:2] + [b"\x04" + u32(56) + name("nothing_here") + name("libkelp-none")] + s[3:])


def main():
    os.makedirs(OUT, exist_ok=True)
    for label, data in seeds():
        with open(os.path.join(OUT, "seed-" + label), "wb") as f:
            f.write(data)
    return 0


if __name__ == "__main__":
    sys.exit(main())
