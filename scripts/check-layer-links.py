#!/usr/bin/env python3
"""Checks the runtime's layers at the link level.

The include views make an include of an undeclared folder fail to compile,
but a call through a public header of include/kelp (declared for compiled
code) would still reach any folder.  This reads the folders and their
declared dependencies from the build tree (runtime/layers.txt, written at
configure time), lists what each folder's object files define and use
(nm), and fails when a folder uses a function that only a folder outside
its declared closure defines.

    check-layer-links.py <build dir>
"""
import pathlib
import subprocess
import sys


def symbols(objects, undefined):
    found = set()
    for obj in objects:
        args = ["nm", "-C", "--undefined-only" if undefined else "--defined-only", str(obj)]
        for line in subprocess.run(args, capture_output=True, text=True, check=True).stdout.splitlines():
            parts = line.split(None, 2) if not undefined else line.split(None, 1)
            if undefined:
                found.add(parts[-1].strip())
            elif len(parts) == 3 and parts[1] in "TDBRVW":
                found.add(parts[2])
    return found


def main():
    build = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "build")
    layers = {}
    order = []
    for line in (build / "runtime" / "layers.txt").read_text().splitlines():
        name, *deps = line.split()
        layers[name] = deps
        order.append(name)

    def closure(name):
        seen, pending = set(), [name]
        while pending:
            folder = pending.pop()
            if folder not in seen:
                seen.add(folder)
                pending += layers[folder]
        return seen

    defined, used = {}, {}
    for name in order:
        objects = sorted((build / "runtime" / "CMakeFiles" / f"kelp_{name}.dir").rglob("*.o"))
        defined[name] = symbols(objects, False)
        used[name] = symbols(objects, True)
    owner = {}
    for name in order:
        for symbol in defined[name]:
            owner.setdefault(symbol, name)

    faults = 0
    for name in order:
        below = closure(name)
        for symbol in sorted(used[name]):
            if symbol in owner and not any(symbol in defined[f] for f in below):
                print(f"runtime/{name} uses {symbol}, defined in runtime/{owner[symbol]}, "
                      f"which it does not declare")
                faults += 1
    print(f"{len(order)} folders, {faults} undeclared uses")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
