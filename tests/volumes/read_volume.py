#!/usr/bin/env python3
"""Reads a volume file with nothing but struct, as the format describes it,
and prints what it holds as JSON: blocks, file 1, the saved map, the tree.
With "--version N" it first rewrites a version 3 volume in place into the
byte order of version N (1 or 2)."""
import hashlib, json, struct, sys

def blocks(data, dbl):
    out, pos = [], 8
    while pos < len(data):
        magic, idnum, seq = struct.unpack_from(">4sII", data, pos)
        length, nxt = struct.unpack_from(dbl + "dd", data, pos + 12)
        assert magic == b"BlkS" and data[pos + int(length) - 4:pos + int(length)] == b"BlkE", pos
        out.append((pos, idnum, seq, int(length), int(nxt)))
        pos += int(length)
    assert pos == len(data), "blocks end at the end of the file"
    return out

def chain(data, blist, idnum):
    """Data ranges of a file, in chain order: [(file offset, size)]."""
    by_pos = {b[0]: b for b in blist}
    first = [b for b in blist if b[1] == idnum and b[2] == 0]
    ranges, b = [], first[0] if first else None
    while b:
        ranges.append((b[0] + 28, b[3] - 32))
        b = by_pos.get(b[4]) if b[4] else None
    return ranges

def content(data, ranges):
    return b"".join(data[p:p + n] for p, n in ranges)

def read(path, convert=None):
    data = bytearray(open(path, "rb").read())
    magic, version = struct.unpack_from(">4sI", data, 0)
    assert magic == b"VFSv"
    dbl = "<" if version == 1 else ">"
    blist = blocks(data, dbl)
    meta = content(data, chain(data, blist, 1))
    counter, size = struct.unpack_from(">II", meta, 0)
    saved = []
    if size:
        assert meta[8:12] == b"BMap"
        (count,) = struct.unpack_from(">I", meta, 12)
        saved = [list(struct.unpack_from(">III", meta, 16 + 12 * i)) for i in range(count)]
    num = ">" if version >= 3 else "<"
    tree, fixes = {}, []

    def walk(idnum, path):
        ranges = chain(data, blist, idnum)
        body = content(data, ranges)
        length, kind, parent, created, modified = struct.unpack_from(num + "dIIdd", body, 0)
        name = body[32:256].split(b"\0")[0].decode()
        here = path + "/" + name if path else name
        entry = {"type": struct.pack(">I", kind).decode("latin-1"), "parent": parent,
                 "length": length, "created": created, "modified": modified}
        fixes.append((ranges, "dIIdd", 0))
        if kind == 0x666F6C64:
            (count,) = struct.unpack_from(num + "I", body, 256)
            fixes.append((ranges, "I" * (count + 1), 256))
            kids = struct.unpack_from(num + "I" * count, body, 260)
            entry["children"] = len(kids)
            tree[here] = entry
            for kid in kids:
                walk(kid, here)
        else:
            entry["sha1"] = hashlib.sha1(body[256:256 + int(length)]).hexdigest()
            tree[here] = entry
    if any(b[1] == 2 for b in blist):
        walk(2, "")
    if convert:
        for ranges, fmt, at in fixes:  # numbers in content, then block doubles
            flat = bytearray(content(data, ranges))
            flat[at:at + struct.calcsize(">" + fmt)] = struct.pack(
                "<" + fmt, *struct.unpack_from(">" + fmt, flat, at))
            for p, n in ranges:
                data[p:p + n], flat = flat[:n], flat[n:]
        if convert == 1:
            for b in blist:
                struct.pack_into("<dd", data, b[0] + 12, *struct.unpack_from(">dd", data, b[0] + 12))
        struct.pack_into(">I", data, 4, convert)
        open(path, "wb").write(data)
    return {"version": version, "blocks": blist, "counter": counter, "map": saved, "tree": tree}

if __name__ == "__main__":
    convert = int(sys.argv[3]) if len(sys.argv) > 3 and sys.argv[2] == "--version" else None
    print(json.dumps(read(sys.argv[1], convert)))
