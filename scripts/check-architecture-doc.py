#!/usr/bin/env python3
"""Checks that docs/architecture.md lists the runtime's layers as declared.

runtime/CMakeLists.txt declares the folders, lowest first, each with the
folders it includes (the build writes them to runtime/layers.txt).  The
table between the "layers: begin" and "layers: end" marks of the document
must name the same folders in the same order with the same declarations.

    check-architecture-doc.py <build dir> <docs/architecture.md>
"""
import pathlib
import sys


def declared(build):
    rows = []
    for line in (build / "runtime" / "layers.txt").read_text().splitlines():
        name, *deps = line.split()
        rows.append((name, sorted(deps)))
    return rows


def documented(doc):
    text = doc.read_text()
    begin, end = text.find("<!-- layers: begin -->"), text.find("<!-- layers: end -->")
    if begin < 0 or end < begin:
        raise SystemExit(f"{doc}: the layers table's marks are missing")
    rows = []
    for line in text[begin:end].splitlines():
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if len(cells) < 2 or not cells[0].startswith("`"):
            continue  # the heading, its rule, the marks
        rows.append((cells[0].strip("`"), sorted(cells[1].split())))
    return rows


def main():
    build = pathlib.Path(sys.argv[1])
    doc = pathlib.Path(sys.argv[2])
    want, have = declared(build), documented(doc)
    faults = 0
    for i in range(max(len(want), len(have))):
        w = want[i] if i < len(want) else None
        h = have[i] if i < len(have) else None
        if w != h:
            print(f"row {i + 1}: runtime/CMakeLists.txt declares "
                  f"{w[0] + ' on ' + (' '.join(w[1]) or 'nothing') if w else 'no folder'}, "
                  f"{doc.name} lists {h[0] + ' on ' + (' '.join(h[1]) or 'nothing') if h else 'no folder'}")
            faults += 1
    print(f"{len(want)} folders declared, {len(have)} documented, {faults} rows differ")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
